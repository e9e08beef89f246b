// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELMODEL_H
#define TIDEL_CHANNELMODEL_H

#include "messagemodel.h"

#include <TidelReader/error.h>

#include <QAbstractItemModel>

#include <memory>
#include <optional>

namespace Tidel {

class ChannelModelPrivate;
struct ChannelSearch;

/**
 * The folders and channels of an Archive as a tree for views, with which it changes. Folders come before
 * channels, both by their titles as the user's language orders them.
 *
 * \code
 * ChannelModel channels(&archive);
 * view->setModel(&channels);
 * connect(view, &QTreeView::clicked, this,
 *         [this](const QModelIndex &index) { messages.setQuery(channels.query(index)); });
 * \endcode
 */
class TIDELREADER_EXPORT ChannelModel : public QAbstractItemModel
{
    Q_OBJECT
    Q_PROPERTY(Tidel::Archive *archive READ archive WRITE setArchive NOTIFY archiveChanged)
    Q_PROPERTY(bool showsLists READ showsLists WRITE setShowsLists NOTIFY showsListsChanged)
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorChanged)

public:
    /// What a row is, in the order of the rows.
    enum Kind {
        AllKind, ///< The list of all messages.
        UnreadKind, ///< The list of unread messages.
        FavoritesKind, ///< The list of favorites.
        SearchKind, ///< A ChannelSearch.
        FolderKind,
        ChannelKind
    };
    Q_ENUM(Kind)

    /// What a row shows. Qt::DisplayRole is the title, too.
    enum Role {
        KindRole = Qt::UserRole, ///< Kind.
        UriRole, ///< QString: the URI of a channel or a search; empty if it is neither.
        TitleRole, ///< QString.
        /// QString: the path of the folder, or of the folder that the channel is in; see Folders.
        FolderRole,
        LinkRole, ///< QString; empty if it is no channel.
        UnreadRole, ///< int: the number of unread messages; of a folder, the sum of its channels.
        MessagesRole, ///< int: the number of messages; of a folder, the sum of its channels.
        IconRole, ///< QString: the address of the image, on the network or of a file; empty if there is none.
        ErrorRole ///< QString: why the last refresh failed; empty if it did not.
    };
    Q_ENUM(Role)

    /// Shows the channels of \a archive, which may go earlier.
    explicit ChannelModel(Archive *archive = nullptr, QObject *parent = nullptr);
    ~ChannelModel() override;

    /// Whose channels are shown. The tree is empty if it is null.
    Archive *archive() const;
    /// Removes all rows and shows the channels of \a archive, which may go earlier.
    void setArchive(Archive *archive);

    /// Returns true if lists of all messages, unread ones and favorites stand before the folders; otherwise
    /// returns false, which is the default.
    bool showsLists() const;
    /// Sets showsLists().
    void setShowsLists(bool showsLists);
    /// Shows \a searches between the lists and the folders, in place of those before.
    void setSearches(const QList<ChannelSearch> &searches);
    /// Returns true if the channels were not read yet; otherwise returns false.
    bool isLoading() const;
    /// Why the channels could not be read the last time; nothing if they could.
    std::optional<Error> error() const;
    /// The text of error(); empty if there is none.
    QString errorText() const;
    /// The messages of the row \a index; of a folder, those of all channels in it and below it. All messages
    /// if \a index is invalid. A search in a folder or a channel that is gone finds nothing.
    Q_INVOKABLE Tidel::MessageQuery query(const QModelIndex &index = QModelIndex()) const;
    /// The row of the channel \a uri; invalid if there is none.
    Q_INVOKABLE QModelIndex indexOf(const QString &uri) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void archiveChanged();
    void showsListsChanged();
    void loadingChanged();
    void errorChanged();

private:
    friend ChannelModelPrivate;
    friend class ChannelTree;

    std::unique_ptr<ChannelModelPrivate> d;
};

/// A search that a ChannelModel shows as a row.
struct ChannelSearch
{
    QString uri; ///< Names the search; no other search or channel has it.
    QString title; ///< What the user calls it.
    QString words; ///< What is searched for, see MessageQuery::words.
    /// Where it is searched for: in a list, a folder or a channel.
    ChannelModel::Kind placeKind = ChannelModel::AllKind;
    QString place; ///< The path of the folder or the URI of the channel; empty if it is a list.
};

} // namespace Tidel

#endif
