// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEMODEL_H
#define TIDEL_MESSAGEMODEL_H

#include "archive.h"

#include <TidelReader/error.h>
#include <TidelReader/messagelist.h>

#include <QAbstractListModel>
#include <QSet>

#include <memory>
#include <optional>

namespace Tidel {

class MessageModelPrivate;

/**
 * A list of messages of an Archive for views, with which it changes.
 *
 * \code
 * MessageModel messages(&archive);
 * view->setModel(&messages);
 * messages.setQuery(channels.query(index));
 * \endcode
 *
 * The first rows come first, the others soon after. The titles and all else that a row shows are read when
 * the view asks for them, and only those of about 2,000 rows are kept, so that a list of 100,000 messages
 * costs little more than what is shown of it.
 *
 * Rows come, go and move while the others stay what they are. In a list of unread messages, a message that
 * the user reads stays until setQuery() is called.
 */
class TIDELREADER_EXPORT MessageModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(Tidel::Archive *archive READ archive WRITE setArchive NOTIFY archiveChanged)
    Q_PROPERTY(Tidel::MessageQuery query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorChanged)

public:
    /// What a row shows. The names for QML are those of MessageHeadline; Qt::DisplayRole is the title, too.
    enum Role {
        UriRole = Qt::UserRole, ///< QString.
        LinkRole, ///< QString.
        TitleRole, ///< QString.
        ChannelsRole, ///< QStringList: the titles of the channels.
        PublishedRole, ///< QDateTime; invalid if the message has no date.
        IsReadRole, ///< bool.
        IsFavoriteRole ///< bool.
    };
    Q_ENUM(Role)

    /// Shows messages of \a archive, and none before setQuery() is called. \a archive may go earlier.
    explicit MessageModel(Archive *archive = nullptr, QObject *parent = nullptr);
    ~MessageModel() override;

    /// Whose messages are shown. The list is empty if it is null.
    Archive *archive() const;
    /// Removes all rows and shows what query() asks for of \a archive, which may go earlier.
    void setArchive(Archive *archive);

    /// What is shown.
    MessageQuery query() const;
    /// Removes all rows and shows what \a query asks for.
    void setQuery(const MessageQuery &query);
    /// The messages that the model leaves out, whatever the query asks for.
    QSet<QString> hidden() const;
    /// Sets hidden(). Rows go at once, and come back as soon as they are read.
    void setHidden(const QSet<QString> &uris);
    /// Returns true if rows of the query are missing because they are not read yet; otherwise returns false.
    bool isLoading() const;
    /// Why the list could not be read the last time; nothing if it could.
    std::optional<Error> error() const;
    /// The text of error(); empty if there is none.
    QString errorText() const;
    /// The URI of the message in \a row; empty if there is no such row.
    Q_INVOKABLE QString uriAt(int row) const;
    /// The row of the message \a uri; -1 if it is not in the list.
    Q_INVOKABLE int rowOf(const QString &uri) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void archiveChanged();
    void queryChanged();
    void loadingChanged();
    void errorChanged();

private:
    friend MessageModelPrivate;

    std::unique_ptr<MessageModelPrivate> d;
};

} // namespace Tidel

Q_DECLARE_METATYPE(Tidel::MessageQuery)

#endif
