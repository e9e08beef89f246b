// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_MESSAGEVIEW_H
#define TIDEL_DESKTOP_MESSAGEVIEW_H

#include <TidelReader/messagemodel.h>

#include <QFuture>
#include <QTreeView>

namespace Tidel {

class Archive;
class MessageColumns;

/// A list of messages of an archive.
class MessageView : public QTreeView
{
    Q_OBJECT

public:
    explicit MessageView(Archive *archive, QWidget *parent = nullptr);

    /// Shows other messages, and selects none.
    void setQuery(const MessageQuery &query);
    MessageQuery query() const { return m_messages->query(); }
    const MessageModel *messages() const { return m_messages; }

    /// The URI of the current message; empty if there is none.
    QString message() const;
    /// The URIs of the selected messages.
    QStringList selected() const;
    /// The value of \a role of the current message.
    QVariant current(MessageModel::Role role) const;

    /// Hides the messages \a uris, and shows all others. If the current one goes, the next one follows it.
    void setHidden(const QSet<QString> &uris);

    /// Makes the message before the current one the current one.
    void selectPrevious();
    /// Makes the first message the current one, unless there is a current one.
    void selectFirst();
    /// Makes the next unread message the current one, as soon as it is found. Begins again at the top. Emits
    /// allRead() if there is none.
    void selectNextUnread();

Q_SIGNALS:
    /// Another message, or none, is the current one.
    void currentMessageChanged();
    /// The user wants to mark the message \a uri.
    void readWanted(const QString &uri, bool isRead);
    void favoriteWanted(const QString &uri, bool isFavorite);
    /// There is no unread message in the list.
    void allRead();

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void focusInEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void selectRow(int row);
    void toggle(const QModelIndex &index);
    void findNextUnread();

    Archive *const m_archive;
    MessageModel *const m_messages;
    MessageColumns *const m_columns;
    int m_channelWidth; // as long as the user has not chosen another one
    QFuture<Result<QString>> m_nextUnread;
};

} // namespace Tidel

#endif
