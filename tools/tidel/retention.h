// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RETENTION_H
#define TIDEL_RETENTION_H

#include <QDateTime>
#include <QList>
#include <QStringList>

namespace Tidel {

class FeedStore;

/// A message that a channel may drop.
struct DroppableMessage
{
    QString uri;
    QString link;
    QString title;
    QDateTime date;
};

/// Whether the channel has a message that is no favorite; not when the store fails.
bool hasDroppableMessages(const FeedStore &store, const QString &channelUri);

/// The messages \a uris in their order; fewer where the store has not all of them.
QList<DroppableMessage> droppableMessages(const FeedStore &store, const QStringList &uris);

/// How many of \a uris are messages of the channel; all of them where the store fails.
int messagesOf(const FeedStore &store, const QString &channelUri, const QStringList &uris);

/// Removes messages from the channel and remembers their links with it. False when the store fails.
bool dropMessages(FeedStore &store, const QString &channelUri, const QList<DroppableMessage> &messages);

} // namespace Tidel

#endif
