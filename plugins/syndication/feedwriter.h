// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDWRITER_H
#define TIDEL_FEEDWRITER_H

#include "validators.h"

#include <QHash>

#include <TidelReader/feeds.h>
#include <TidelReader/knownitems.h>
#include <TidelReader/messagewriter.h>

#include <vector>

namespace Tidel {

class ParsedFeed;
struct ClaimedItem;
struct NamedItem;

/**
 * Stores what a feed says under its channel.
 *
 * An item is known by its identifier if no other item of the document has the same, otherwise by its link.
 * The store identifies messages by their links, so that an item keeps the link under which it was stored.
 */
class FeedWriter
{
public:
    /// Writes to the channel \a channelUri, which exists. If \a isNewChannel is true, it has no messages.
    FeedWriter(const Store &store, const QString &channelUri, bool isNewChannel);

    /// Stores the messages of \a feed that the channel neither has nor has dropped, changes those that say
    /// something else, and then stores \a validators. \a memory is what the store remembers of the channel.
    /// Takes a WriteTurn for each hundred messages; the last turn of this process was the one in which
    /// \a memory was read. Fails with Error::NotFound if the channel is deleted in the meantime.
    Result<void> write(const ParsedFeed &feed, const Validators &validators, const FeedMemory &memory);

    /// The links of the messages that are new to the channel or changed, the oldest first.
    const WrittenMessages &written() const { return m_written; }
    /// The notes about the document of a kind that the document before it did not have.
    const QStringList &newNotes() const { return m_newNotes; }

private:
    /// The items of a feed with their links, and how the store uses these links.
    struct Claims;

    /// The key of \a item; empty if it has none.
    QString keyOf(const NamedItem &item) const;
    bool isDropped(const ClaimedItem &claimed, const FeedMemory &memory) const;
    /// Gives each item a link: the one under which it is stored, or one that nothing else has.
    Result<Claims> claim(const ParsedFeed &feed, const KnownItems &known, const FeedMemory &memory) const;
    /// Asks about the links of those \a items that are not \a known.
    Result<LinkUse> askAbout(const std::vector<ClaimedItem> &items, const KnownItems &known) const;
    /// Asks about the links of their own that \a items may have in a store without keys.
    Result<LinkUse> askAboutOwnLinks(const std::vector<ClaimedItem> &items, const LinkUse &use) const;
    /// Returns true if the link of \a claimed may be that of another item in a store without keys; otherwise
    /// returns false.
    bool mayBeOfOlderItem(const ClaimedItem &claimed, const LinkUse &use) const;
    /// Stores the messages of \a claims.
    Result<void> writeMessages(const ParsedFeed &feed, const Claims &claims, const KnownItems &known,
                               const FeedMemory &memory);
    /// Stores some messages, at most a hundred, in one turn.
    Result<void> writeGroup(const QList<StorableMessage> &messages, const LinkUse &use,
                            const KnownItems &known);
    /// As writeGroup(), after another process may have changed the store: asks again about \a messages.
    Result<void> writeAfterOthers(const QList<StorableMessage> &messages);
    /// Stores \a messages in the turn of the caller.
    Result<void> store(const QList<StorableMessage> &messages, const LinkUse &use, const KnownItems &known);
    /// Notes what \a feed says of itself, and forgets the dropped messages that it no longer contains.
    Result<void> writeChannel(const ParsedFeed &feed, const Validators &validators, const Claims &claims,
                              const FeedMemory &memory);
    /// Forgets the dropped messages that the feed no longer contains.
    Result<void> forgetDropped(const Claims &claims, const FeedMemory &memory);

    Store m_store;
    const QString m_channelUri;
    const bool m_isNewChannel;
    QHash<QString, QString> m_keys; ///< By the identifiers that are unique in the document.
    WrittenMessages m_written;
    bool m_isAlone = true; // No other process had a turn since the first one of this writer.
    QStringList m_newNotes;
};

} // namespace Tidel

#endif
