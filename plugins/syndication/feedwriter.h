// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDWRITER_H
#define TIDEL_FEEDWRITER_H

#include "feeddocument.h"
#include "itemdigests.h"

#include <QHash>

#include <TidelReader/feeds.h>
#include <TidelReader/knownitems.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/writeturn.h>

#include <memory>
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

    /// Destroys the writer. What is not written yet is not stored.
    ~FeedWriter();

    /// Finds out which messages of \a feed the channel lacks and which say something else. \a feed must
    /// outlive this object. \a document is what it was read from. \a memory is what the store remembers of
    /// the channel, and \a note what it has noted of its items; both were read in the last turn of this
    /// process.
    void begin(const ParsedFeed &feed, const FeedDocument &document, const FeedMemory &memory,
               const ItemNote &note);
    /// Stores the next messages in one WriteTurn, and with or after the last ones what the feed says of
    /// itself, with the validators. The process may do something else between two calls.
    void writeNext();
    /// Returns true if everything is written or the store has failed; otherwise returns false.
    bool isOver() const { return m_isOver; }
    /// The first failure. The kind is Error::NotFound if the channel was deleted in the meantime.
    const Result<void> &result() const { return m_result; }

    /// The links of the messages that are new to the channel or changed, the oldest first.
    const WrittenMessages &written() const { return m_written; }
    /// Link, title and date of those new messages whose titles the store has from this feed, the oldest
    /// first.
    QList<FeedMessage> headlines() const;
    /// The notes about the document of a kind that the document before it did not have.
    const QStringList &newNotes() const { return m_newNotes; }

private:
    /// The items of a feed with their links, and how the store uses these links.
    struct Claims;

    /// The key of \a item; empty if it has none.
    QString keyOf(const NamedItem &item) const;
    bool isDropped(const ClaimedItem &claimed) const;
    /// Returns true if the channel had the message of \a link and \a key before; otherwise returns false.
    bool isKnown(const Link &link, const QString &key) const;
    /// Gives each item a link: the one under which it is stored, or one that nothing else has.
    Result<Claims> claim() const;
    /// Asks about the links of those \a items that are not known.
    Result<LinkUse> askAbout(const std::vector<ClaimedItem> &items) const;
    /// Asks about the links of their own that \a items may have in a store without keys.
    Result<LinkUse> askAboutOwnLinks(const std::vector<ClaimedItem> &items, const LinkUse &use) const;
    /// Returns true if the link of \a claimed may be that of another item in a store without keys; otherwise
    /// returns false.
    bool mayBeOfOlderItem(const ClaimedItem &claimed, const LinkUse &use) const;
    /// Chooses the messages that the channel lacks or has otherwise. If there are more than one refresh
    /// stores, chooses the newest ones.
    void choose();
    /// Takes a turn in which the channel exists.
    Result<WriteTurn> takeTurn();
    /// Stores \a messages in one turn.
    Result<void> writeGroup(const QList<StorableMessage> &messages);
    /// As writeGroup(), after another process may have changed the store: asks again about \a messages.
    Result<void> writeAfterOthers(const QList<StorableMessage> &messages);
    /// Stores \a messages, which are the last ones, and notes the reading with the same update. Returns false
    /// if nothing is stored: they have to be stored as others change the store or without what it refuses.
    Result<bool> writeLast(const QList<StorableMessage> &messages);
    /// Stores \a messages in the turn of the caller.
    Result<void> store(const QList<StorableMessage> &messages, const LinkUse &use, const KnownItems &known);
    /// Notes the reading, and forgets the dropped messages that the feed no longer contains.
    Result<void> writeChannel();
    /// What is noted after the messages with the links \a added were added to those that are written.
    Reading reading(const QStringList &added) const;
    /// Forgets the dropped messages that the feed no longer contains. \a reading was noted.
    Result<void> endReading(const Reading &reading);
    /// Returns true if only this writer has changed the channel; otherwise returns false.
    bool isAsLeft() const;
    /// What the next reading recognizes the items by, after messages with the links \a added were added.
    ItemNote itemNote(const QStringList &added) const;
    Result<void> forgetDropped();

    Store m_store;
    const QString m_channelUri;
    const bool m_isNewChannel;
    const ParsedFeed *m_feed = nullptr;
    Validators m_validators;
    FeedAnswer m_answer;
    FeedPlan m_plan;
    FeedMemory m_memory;
    ItemNote m_items; // As it was before this reading.
    ItemDigests m_stored; // Of the items that the store had, as the feed says them.
    QHash<QString, QByteArray> m_inserted; // The digests of items that are new to the store, by their links.
    QHash<QString, QString> m_keys; // By the identifiers that are unique in the document.
    KnownItems m_known;
    std::unique_ptr<Claims> m_claims;
    QList<StorableMessage> m_messages; // The chosen ones, the oldest first.
    int m_next = 0; // The first message that is not written yet.
    bool m_leavesMessages = false; // For the next refresh.

    int m_turns; // What WriteTurn::count() was in the last turn of this writer.
    bool m_isAlone = true; // Nobody else had a turn since the first one of this writer.
    bool m_isOnlyProcess = true; // No other process had one.
    ItemNote m_itemsNow; // As the store had it in the last turn of this writer, unless it was alone.
    bool m_isOver = false;
    Result<void> m_result;
    WrittenMessages m_written;
    QStringList m_newNotes;
};

} // namespace Tidel

#endif
