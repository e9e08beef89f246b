// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedwriter.h"

#include "feedparser.h"

#include <TidelReader/itemkey.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/writeturn.h>

#include <algorithm>

namespace Tidel {

namespace {

/// Puts messages without a date first. They are deleted in the order in which they were stored.
void sortOldestFirst(QList<StorableMessage> &messages)
{
    std::stable_sort(messages.begin(), messages.end(),
                     [](const StorableMessage &a, const StorableMessage &b) {
                         const QDateTime dateOfA = a.message().publishedDate();
                         const QDateTime dateOfB = b.message().publishedDate();
                         return dateOfB.isValid() && (!dateOfA.isValid() || dateOfA < dateOfB);
                     });
}

/// What a note is about. The rest names a place, which changes with the document.
QString kindOf(const QString &note) { return note.section(QLatin1Char(':'), 0, 0); }

QStringList newKinds(const QStringList &notes, const QStringList &before)
{
    QSet<QString> kinds;
    for (const QString &note : before)
        kinds.insert(kindOf(note));
    QStringList added;
    for (const QString &note : notes) {
        if (!kinds.contains(kindOf(note)))
            added.append(note);
    }
    return added;
}

// While one group is written, other programs wait.
constexpr int groupSize = 100;

/// Takes a turn in which the channel exists.
Result<WriteTurn> takeTurn(const Store &store, const QString &channelUri)
{
    Result<WriteTurn> turn = WriteTurn::take();
    if (!turn || turn->followsOwn())
        return turn;
    const Result<FeedState> state = Feeds(store).state(channelUri);
    if (!state)
        return Failure(state.error());
    return turn;
}

} // namespace

struct FeedWriter::Claims
{
    std::vector<ClaimedItem> items;
    LinkUse use;
};

FeedWriter::FeedWriter(const Store &store, const QString &channelUri, bool isNewChannel)
    : m_store(store), m_channelUri(channelUri), m_isNewChannel(isNewChannel)
{
}

Result<void> FeedWriter::write(const ParsedFeed &feed, const Validators &validators, const FeedMemory &memory)
{
    const QSet<QString> ids = feed.uniqueIds();
    for (const QString &id : ids)
        m_keys.insert(id, itemKey(m_channelUri, id));
    const Result<KnownItems> known =
        m_isNewChannel ? KnownItems() : KnownItems::of(m_store, m_keys.values(), m_channelUri);
    if (!known)
        return Failure(known.error());
    return claim(feed, *known, memory).and_then([&](const Claims &claims) {
        return writeMessages(feed, claims, *known, memory).and_then([&] {
            return writeChannel(feed, validators, claims, memory);
        });
    });
}

Result<void> FeedWriter::writeChannel(const ParsedFeed &feed, const Validators &validators,
                                      const Claims &claims, const FeedMemory &memory)
{
    const ChannelDetails details = feed.channelDetails();
    const Result<WriteTurn> turn = takeTurn(m_store, m_channelUri);
    if (!turn)
        return Failure(turn.error());
    return Feeds(m_store)
        .noteReading(m_channelUri, validators.entityTag, validators.lastModified, details, memory)
        .and_then([&] {
            m_newNotes = newKinds(details.notes, memory.details.notes);
            return forgetDropped(claims, memory);
        });
}

QString FeedWriter::keyOf(const NamedItem &item) const { return m_keys.value(item.record.id); }

bool FeedWriter::isDropped(const ClaimedItem &claimed, const FeedMemory &memory) const
{
    return memory.droppedKeys.contains(keyOf(*claimed.item))
        || memory.droppedLinks.contains(claimed.link.toString());
}

Result<FeedWriter::Claims> FeedWriter::claim(const ParsedFeed &feed, const KnownItems &known,
                                             const FeedMemory &memory) const
{
    QSet<QString> reserved;
    QHash<QString, Link> older; // Links of their own that items have in a store without keys, by key.
    const auto storedLink = [&](const NamedItem &item) {
        const QString key = keyOf(item);
        const Link link = known.link(key);
        return link.isNull() ? older.value(key) : link;
    };
    while (true) {
        std::vector<ClaimedItem> items = feed.claimedItems(reserved, storedLink);
        const Result<LinkUse> use = askAbout(items, known);
        if (!use)
            return Failure(use.error());
        const Result<LinkUse> ownUse = askAboutOwnLinks(items, *use);
        if (!ownUse)
            return Failure(ownUse.error());
        const auto before = reserved.size() + older.size();
        for (const ClaimedItem &claimed : items) {
            const QString key = keyOf(*claimed.item);
            if (!storedLink(*claimed.item).isNull())
                continue;
            const bool isKnown =
                use->isInChannel(claimed.link) || memory.droppedLinks.contains(claimed.link.toString());
            const bool isOfOlderItem = mayBeOfOlderItem(claimed, *use);
            const Link own = isOfOlderItem ? claimed.link.forItem(claimed.item->id) : Link();
            if (isOfOlderItem && ownUse->isInChannel(own) && !ownUse->isOfKnownItem(own))
                older.insert(key, own);
            else if ((use->isOfChannel(claimed.link) && !isKnown)
                     || (!key.isEmpty() && use->isOfKnownItem(claimed.link)))
                reserved.insert(claimed.link.toString());
        }
        if (reserved.size() + older.size() == before)
            return Claims{std::move(items), *use};
    }
}

bool FeedWriter::mayBeOfOlderItem(const ClaimedItem &claimed, const LinkUse &use) const
{
    return !keyOf(*claimed.item).isEmpty() && use.isInChannel(claimed.link)
        && !use.isOfKnownItem(claimed.link);
}

Result<LinkUse> FeedWriter::askAbout(const std::vector<ClaimedItem> &items, const KnownItems &known) const
{
    QList<Link> links;
    for (const ClaimedItem &claimed : items) {
        if (known.link(keyOf(*claimed.item)).isNull())
            links.append(claimed.link);
    }
    return LinkUse::of(m_store, links, m_channelUri);
}

Result<LinkUse> FeedWriter::askAboutOwnLinks(const std::vector<ClaimedItem> &items, const LinkUse &use) const
{
    QList<Link> links;
    for (const ClaimedItem &claimed : items) {
        if (mayBeOfOlderItem(claimed, use))
            links.append(claimed.link.forItem(claimed.item->id));
    }
    return LinkUse::of(m_store, links, m_channelUri);
}

Result<void> FeedWriter::writeMessages(const ParsedFeed &feed, const Claims &claims, const KnownItems &known,
                                       const FeedMemory &memory)
{
    QList<StorableMessage> messages;
    for (const ClaimedItem &claimed : claims.items) {
        if (isDropped(claimed, memory))
            continue;
        StorableMessage message = feed.message(claimed);
        message.setKey(keyOf(*claimed.item));
        messages.append(message);
    }
    sortOldestFirst(messages);
    Result<void> result;
    for (int from = 0; from < messages.size(); from += groupSize) {
        const Result<void> done = writeGroup(messages.mid(from, groupSize), claims.use, known);
        if (!done && result)
            result = done;
        // The other groups may be without the values that the store refuses.
        if (!done && done.error().kind() != Error::StoreRefused)
            break;
    }
    return result;
}

Result<void> FeedWriter::writeGroup(const QList<StorableMessage> &messages, const LinkUse &use,
                                    const KnownItems &known)
{
    const Result<WriteTurn> turn = takeTurn(m_store, m_channelUri);
    if (!turn)
        return Failure(turn.error());
    return turn->followsOwn() && m_isAlone ? store(messages, use, known) : writeAfterOthers(messages);
}

Result<void> FeedWriter::writeAfterOthers(const QList<StorableMessage> &messages)
{
    m_isAlone = false;
    const Result<FeedMemory> memory = Feeds(m_store).memory(m_channelUri);
    if (!memory)
        return Failure(memory.error());
    QList<StorableMessage> left;
    QStringList keys;
    QList<Link> links;
    for (const StorableMessage &message : messages) {
        if (memory->droppedKeys.contains(message.key())
            || memory->droppedLinks.contains(message.link().toString()))
            continue;
        left.append(message);
        links.append(message.link());
        if (!message.key().isEmpty())
            keys.append(message.key());
    }
    return KnownItems::of(m_store, keys, m_channelUri).and_then([&](const KnownItems &known) {
        return LinkUse::of(m_store, links, m_channelUri).and_then([&](const LinkUse &use) {
            return store(left, use, known);
        });
    });
}

Result<void> FeedWriter::store(const QList<StorableMessage> &messages, const LinkUse &use,
                               const KnownItems &known)
{
    WrittenMessages written;
    const Result<void> done = MessageWriter(m_store).write(messages, m_channelUri, use, known, &written);
    m_written.added += written.added;
    m_written.changed += written.changed;
    return done;
}

Result<void> FeedWriter::forgetDropped(const Claims &claims, const FeedMemory &memory)
{
    QSet<QString> links = memory.droppedLinks;
    QSet<QString> keys = memory.droppedKeys;
    for (const ClaimedItem &claimed : claims.items) {
        links.remove(claimed.link.toString());
        keys.remove(keyOf(*claimed.item));
    }
    return Feeds(m_store).forgetDropped(m_channelUri, links.values(), keys.values());
}

} // namespace Tidel
