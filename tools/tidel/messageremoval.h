// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEREMOVAL_H
#define TIDEL_MESSAGEREMOVAL_H

#include <QString>
#include <QStringList>

namespace Tidel {

class FeedStore;

/**
 * Removes \a messages from the channel: those that other channels hold too are taken out of this one, the
 * others are deleted, and with them the enclosures that belong to nothing else. The library tells of the
 * enclosures' files.
 *
 * What it costs depends on how much is removed; the library's own deletion of messages reads the whole store
 * for each. False when the store fails: what is left of the messages can be removed again, and enclosures may
 * be left that belong to nothing.
 */
bool removeMessages(FeedStore &store, const QString &channelUri, const QStringList &messages);

} // namespace Tidel

#endif
