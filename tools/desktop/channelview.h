// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_CHANNELVIEW_H
#define TIDEL_DESKTOP_CHANNELVIEW_H

#include <TidelReader/channelmodel.h>

#include <QSet>
#include <QTimer>
#include <QTreeView>

QT_FORWARD_DECLARE_CLASS(QSettings)

namespace Tidel {

class ChannelIcons;
class ChannelRows;

/// The lists, folders and channels of an archive.
class ChannelView : public QTreeView
{
    Q_OBJECT

public:
    explicit ChannelView(Archive *archive, QWidget *parent = nullptr);

    /// The messages of the current row, without those of hidden channels; all messages if there is none.
    MessageQuery query() const;
    /// The title of the current row.
    QString title() const;
    /// The URI of the current channel; empty if the current row is none.
    QString channel() const;
    /// The URI of the current search; empty if the current row is none.
    QString search() const;
    /// What the current row is.
    ChannelModel::Kind kind() const;
    /// The path of the folder of the current row; empty if it is in none.
    QString folder() const;
    /// The paths of all folders.
    QStringList folders() const;
    /// Returns true if there are channels or folders; otherwise returns false.
    bool hasChannels() const;
    /// The rows of the tree, for those who look for one.
    const ChannelModel *channels() const { return m_channels; }
    /// The icons of the channels.
    ChannelIcons *icons() const { return m_icons; }

    /// Shows \a searches, in place of those before.
    void setSearches(const QList<ChannelSearch> &searches) { m_channels->setSearches(searches); }
    /// Makes the channel or search \a uri the current one, as soon as it is there.
    void select(const QString &uri);
    /// Makes the next row with unread messages, of a channel, the current one. Begins again at the top.
    /// Returns false if there is none.
    bool selectNextUnread();
    /// Hides the channels \a uris, and shows all others. The current row is the neighbor of one that goes, or
    /// the one that comes back.
    void setHidden(const QSet<QString> &uris);

    /// Remembers the current row and the closed folders.
    void save(QSettings *settings) const;
    /// Restores them as soon as the channels are read.
    void restore(const QSettings &settings);

Q_SIGNALS:
    /// Another row is the current one, or query() is another one.
    void currentRowChanged();
    /// As those of ChannelRows.
    void renamed(const QString &uri, const QString &title);
    void searchRenamed(const QString &uri, const QString &title);
    void moved(const QStringList &uris, const QString &path);

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void rowsInserted(const QModelIndex &parent, int start, int end) override;

private:
    /// Calls \a visit for each row below \a parent, in their order.
    template <typename Visit> void visitRows(const QModelIndex &parent, const Visit &visit) const;
    void arrange();
    void tellRow();
    QSet<QString> channelsOfRow() const;
    QString nameOf(const QModelIndex &index) const;
    QString uriOf(ChannelModel::Kind wanted) const;

    ChannelModel *const m_channels;
    ChannelIcons *const m_icons;
    ChannelRows *const m_rows;
    QString m_wanted; // The name of the row that becomes the current one when it is there.
    QSet<QString> m_toldChannels; // Those of the query when the row was told last.
    QTimer m_change; // Runs while channels come, go or move, which may change the query.
    QSet<QString> m_closedFolders;
    QSet<QString> m_hidden;
    bool m_isArranging = false; // What is closed or opened now was not closed by the user.
};

} // namespace Tidel

#endif
