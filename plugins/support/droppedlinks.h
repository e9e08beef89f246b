// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DROPPEDLINKS_H
#define TIDEL_DROPPEDLINKS_H

#include <QSet>
#include <QString>
#include <QStringList>

namespace Tidel {

class FeedStore;

// The links of messages that were dropped from a channel. They are kept with the channel for as long as its
// feed shows them, so that a refresh does not take such a message for a new one.

/// The dropped links of the channel.
QSet<QString> droppedLinks(const FeedStore &store, const QString &channelUri);

/// Adds \a links to them; false when the store fails.
bool rememberDropped(FeedStore &store, const QString &channelUri, const QStringList &links);

/// Takes \a links out of them; false when the store fails.
bool forgetDropped(FeedStore &store, const QString &channelUri, const QStringList &links);

} // namespace Tidel

#endif
