// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEWRITER_H
#define TIDEL_MESSAGEWRITER_H

#include "error.h"
#include "linkuse.h"
#include "storablemessage.h"
#include "store.h"

#include <QList>

namespace Tidel {

/**
 * Stores the messages of a feed under its channel, a hundred with one question and one update.
 *
 * - A message is stored together with its enclosures or not at all.
 * - A message that the store has already becomes a message of this channel too, and gets the enclosures that
 *   it lacks. An enclosure that the store has already becomes an enclosure of the message too.
 * - A message that the store refuses does not keep the other messages from being stored.
 */
class TIDELREADER_EXPORT MessageWriter
{
public:
    /// Works on \a store.
    explicit MessageWriter(const Store &store);

    /// Stores \a messages under the channel \a channelUri; of several with the same link the texts of the
    /// first one. \a use says what their links are used for. The caller has its WriteTurn since before it
    /// asked for \a use. Fails with the first error if a message was not stored; writing it again is safe.
    Result<void> write(const QList<StorableMessage> &messages, const QString &channelUri, const LinkUse &use);

private:
    Store m_store;
};

} // namespace Tidel

#endif
