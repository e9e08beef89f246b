// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEWRITER_H
#define TIDEL_MESSAGEWRITER_H

#include "error.h"
#include "feeds.h"
#include "knownitems.h"
#include "linkuse.h"
#include "storablemessage.h"
#include "store.h"

#include <QList>
#include <QStringList>

namespace Tidel {

/// The links of messages that were written, in the order in which they were handed over.
struct WrittenMessages
{
    QStringList added; ///< Messages that are new to their channel.
    QStringList changed; ///< Messages of the channel that a person finds changed.
};

/**
 * Stores the messages of a feed under its channel, up to a hundred with one update.
 *
 * - A message is stored together with its enclosures or not at all.
 * - A message of another channel becomes a message of this channel too, and gets the enclosures that it
 * lacks. Its text stays that of the other channel. An enclosure that the store has already becomes an
 * enclosure of the message too.
 * - A message of this channel that says something else than the store has is changed in place. Its earlier
 *   texts are kept, see Messages::earlierVersions(). Enclosures that it does not name any more are taken from
 *   it, except downloaded ones. Nothing is written if a person reads the same as before: markup, addresses in
 *   texts, and counters such as "12 comments" do not count.
 * - A message that the store refuses does not keep the other messages from being stored.
 */
class TIDELREADER_EXPORT MessageWriter
{
public:
    /// Works on \a store.
    explicit MessageWriter(const Store &store);

    /// The number of \a messages from \a from on that write() stores with one update: at most a hundred, and
    /// fewer if the statement would become long, but at least one.
    static int groupSize(const QList<StorableMessage> &messages, int from);
    /// Returns true if the channel \a channelUri has \a message as \a use and \a items say, so that write()
    /// would change nothing; otherwise returns false. Sets \a isOwn to true if the channel has brought the
    /// text, so that no other channel replaces it as long as this one has the message.
    static bool isStored(const StorableMessage &message, const QString &channelUri, const LinkUse &use,
                         const KnownItems &items, bool *isOwn = nullptr);

    /// Stores \a messages under the channel \a channelUri; of several with the same link the texts of the
    /// first one. \a use says what their links are used for. \a items says which keys the store knows; a
    /// message with such a key has the link of \a items, and \a use need not know it. The caller has its
    /// WriteTurn since before it asked for both. Fails with the first error if a message was not stored;
    /// writing it again is safe. Sets \a written to what was done, also after a failure.
    Result<void> write(const QList<StorableMessage> &messages, const QString &channelUri, const LinkUse &use,
                       const KnownItems &items = KnownItems(), WrittenMessages *written = nullptr);
    /// Stores the last messages of a document, one group of them, and notes \a reading with the same update,
    /// see Feeds::noteReading(). The other arguments are as for write(). Stores nothing if it fails: use
    /// write() then, which leaves out only what the store refuses.
    Result<void> writeLast(const QList<StorableMessage> &messages, const QString &channelUri,
                           const Reading &reading, const LinkUse &use, const KnownItems &items,
                           WrittenMessages *written);

private:
    /// The messages of one call.
    class Groups;

    Store m_store;
};

} // namespace Tidel

#endif
