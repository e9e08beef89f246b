// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_CHANNELEDITING_H
#define TIDEL_DESKTOP_CHANNELEDITING_H

#include <TidelReader/error.h>
#include <TidelReader/store.h>

#include <QObject>
#include <QStringList>

#include <functional>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace Tidel {

class Archive;
class PendingRemovals;
struct ChannelProperties;

/// Renames, moves and unsubscribes channels.
class ChannelEditing : public QObject
{
    Q_OBJECT

public:
    /// What is unsubscribed goes to \a removals. Questions stand before \a window.
    ChannelEditing(Archive *archive, PendingRemovals *removals, QWidget *window);

    void rename(const QString &uri, const QString &title);
    /// Puts the channels \a uris into the folder \a path, or out of folders if it is empty.
    void move(const QStringList &uris, const QString &path);
    /// Asks the user for one of \a folders or a new one, and puts the channel \a uri there.
    void askWhereTo(const QString &uri, const QStringList &folders, const QString &current);
    /// Stores what the user wants of a channel, and drops the messages that he does not want to keep.
    void setProperties(const ChannelProperties &properties);
    /// Drops from the channels \a uris what the user does not want to keep.
    void prune(const QStringList &uris);
    /// Says what goes with the channel \a uri, which is called \a title, and asks before it is unsubscribed.
    void askToUnsubscribe(const QString &uri, const QString &title);

Q_SIGNALS:
    /// The archive could not be changed; \a text is for the user.
    void failed(const QString &text);

private:
    void ask(const QString &uri, const QString &title, const QString &loss, int favorites);
    void change(const std::function<Result<void>(const Store &)> &work);

    Archive *const m_archive;
    PendingRemovals *const m_removals;
    QWidget *const m_window;
};

} // namespace Tidel

#endif
