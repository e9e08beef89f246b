// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_PENDINGREMOVALS_H
#define TIDEL_DESKTOP_PENDINGREMOVALS_H

#include <TidelReader/channels.h>
#include <TidelReader/error.h>

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>

QT_FORWARD_DECLARE_CLASS(QUndoStack)

namespace Tidel {

class Archive;

/// The channels and messages that the user has deleted. They are hidden, and deleted when the program ends.
/// Until then this can be undone, and nothing is lost if the program does not end well.
class PendingRemovals : public QObject
{
    Q_OBJECT

public:
    /// What can be undone goes to \a undoStack.
    PendingRemovals(Archive *archive, QUndoStack *undoStack, QObject *parent = nullptr);

    /// Unsubscribes the channel \a uri, which is called \a title.
    void removeChannel(const QString &uri, const QString &title, Channels::Favorites favorites);
    /// Deletes the messages \a uris. They are marked as read at once, so that no number counts them.
    void removeMessages(const QStringList &uris);

    QSet<QString> channels() const;
    QSet<QString> messages() const { return m_messages; }
    /// Deletes them.
    void carryOut();

Q_SIGNALS:
    void channelsChanged();
    void messagesChanged();
    /// The archive could not be changed; \a text is for the user.
    void failed(const QString &text);

private:
    void change(const std::function<Result<void>(const Store &)> &work);

    Archive *const m_archive;
    QUndoStack *const m_undoStack;
    QHash<QString, Channels::Favorites> m_channels;
    QSet<QString> m_messages;
};

} // namespace Tidel

#endif
