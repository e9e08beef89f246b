// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedwriter.h"

#include "feedparser.h"

#include <TidelReader/itemkey.h>
#include <TidelReader/linkuse.h>

#include <algorithm>

namespace Tidel {

namespace {

// One refresh stores no more than this, so that no feed fills the store at once or holds up the others.
constexpr int maximumResources = 15 * 1000; // Messages and enclosures together.
constexpr int costOfChange = 3; // A changed message takes as long as three new ones.
constexpr int maximumWeight = 32 * 1000 * 1000; // See StorableMessage::weight().

QDateTime dateOf(const ClaimedItem &claimed)
{
    const ItemRecord &item = claimed.item->record;
    return item.published.isValid() ? item.published : item.updated;
}

/// Puts items without a date last.
void sortNewestFirst(std::vector<ClaimedItem> &items)
{
    std::reverse(items.begin(), items.end());
    std::stable_sort(items.begin(), items.end(), [](const ClaimedItem &a, const ClaimedItem &b) {
        const QDateTime dateOfA = dateOf(a);
        const QDateTime dateOfB = dateOf(b);
        return dateOfA.isValid() && (!dateOfB.isValid() || dateOfA > dateOfB);
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

} // namespace

struct FeedWriter::Claims
{
    std::vector<ClaimedItem> items;
    LinkUse use;
};

FeedWriter::FeedWriter(const Store &store, const QString &channelUri, bool isNewChannel)
    : m_store(store), m_channelUri(channelUri), m_isNewChannel(isNewChannel), m_turns(WriteTurn::count())
{
}

FeedWriter::~FeedWriter() = default;

void FeedWriter::begin(const ParsedFeed &feed, const FeedDocument &document, const FeedMemory &memory,
                       const ItemNote &note)
{
    m_feed = &feed;
    m_validators = document.validators;
    m_answer = document.answer;
    m_plan = document.plan;
    m_memory = memory;
    m_items = note;
    m_stored.context = feed.context();
    const QSet<QString> ids = feed.uniqueIds();
    for (const NamedItem &item : feed.items()) {
        if (item.record.isRecognized)
            m_stored.digests.insert(item.record.digest);
        else if (ids.contains(item.record.id))
            m_keys.insert(item.record.id, itemKey(m_channelUri, item.record.id));
    }
    const Result<KnownItems> known =
        m_isNewChannel ? KnownItems() : KnownItems::of(m_store, m_keys.values(), m_channelUri);
    m_result = known.and_then([&](const KnownItems &items) {
        m_known = items;
        return claim().map([&](Claims &&claims) { m_claims = std::make_unique<Claims>(std::move(claims)); });
    });
    m_isOver = !m_result;
    if (m_result)
        choose();
}

void FeedWriter::writeNext()
{
    if (m_next == m_messages.size()) {
        if (m_result)
            m_result = writeChannel();
        m_isOver = true;
        return;
    }
    const int size = MessageWriter::groupSize(m_messages, m_next);
    const QList<StorableMessage> messages = m_messages.mid(m_next, size);
    m_next += size;
    if (m_next == m_messages.size() && m_isAlone && m_result) {
        const Result<bool> isWritten = writeLast(messages);
        m_isOver = isWritten.value_or(true);
        m_result = isWritten.map([](bool) {});
        if (m_isOver)
            return;
    }
    const Result<void> done = writeGroup(messages);
    if (!done && m_result)
        m_result = done;
    // The other groups may be without the values that the store refuses.
    m_isOver = !done && done.error().kind() != Error::StoreRefused;
}

Result<bool> FeedWriter::writeLast(const QList<StorableMessage> &messages)
{
    const Result<WriteTurn> turn = takeTurn();
    if (!turn)
        return Failure(turn.error());
    if (!m_isAlone)
        return false;
    QStringList added;
    for (const StorableMessage &message : messages) {
        if (!isKnown(message.link(), message.key()))
            added.append(message.link().toString());
    }
    const Reading reading = this->reading(added);
    WrittenMessages written;
    const Result<void> done =
        MessageWriter(m_store).writeLast(messages, m_channelUri, reading, m_claims->use, m_known, &written);
    if (!done)
        return done.error().kind() == Error::StoreRefused ? Result<bool>(false) : Failure(done.error());
    m_written.added += written.added;
    m_written.changed += written.changed;
    return endReading(reading).map([] { return true; });
}

Result<void> FeedWriter::writeChannel()
{
    const Result<WriteTurn> turn = takeTurn();
    if (!turn)
        return Failure(turn.error());
    const Reading reading = this->reading({});
    return Feeds(m_store).noteReading(m_channelUri, reading).and_then([&] { return endReading(reading); });
}

Reading FeedWriter::reading(const QStringList &added) const
{
    Reading reading;
    reading.details = m_feed->channelDetails();
    reading.items = itemNote(added);
    reading.plan = m_plan;
    if (m_isAlone)
        reading.before = m_memory.details;
    if (m_leavesMessages) {
        // With the validators, the server would not send the rest.
        reading.details.notes.append(
            QStringLiteral("has more new messages than one refresh stores: refresh again"));
    } else {
        reading.entityTag = m_validators.entityTag;
        reading.lastModified = m_validators.lastModified;
        reading.answer = m_answer;
    }
    return reading;
}

Result<void> FeedWriter::endReading(const Reading &reading)
{
    m_newNotes = newKinds(reading.details.notes, m_memory.details.notes);
    return forgetDropped();
}

// Another reading of the channel, in this process too, replaces the note. The changes of this one have ended
// it.
bool FeedWriter::isAsLeft() const
{
    if (m_isAlone)
        return true;
    const bool hasWritten = !m_written.added.isEmpty() || !m_written.changed.isEmpty();
    const bool isNoteLeft = m_itemsNow.text == m_items.text || (m_itemsNow.text.isEmpty() && hasWritten);
    return m_isOnlyProcess && isNoteLeft && m_itemsNow.parts == m_items.parts + int(m_written.added.size());
}

ItemNote FeedWriter::itemNote(const QStringList &added) const
{
    if (!isAsLeft() || m_feed->uniqueIds().size() != int(m_feed->items().size()))
        return {};
    const QStringList all = m_written.added + added;
    ItemDigests digests = m_stored;
    for (const QString &link : all)
        digests.digests.insert(m_inserted.value(link));
    digests.digests.remove(QByteArray());
    return {digests.note(), m_items.parts + int(all.size())};
}

QList<FeedMessage> FeedWriter::headlines() const
{
    // If another download wrote in between, it may have stored the same messages with other titles.
    if (!m_isAlone)
        return {};
    QList<FeedMessage> headlines;
    const QSet<QString> added(m_written.added.begin(), m_written.added.end());
    for (const StorableMessage &message : m_messages) {
        const QString link = message.link().toString();
        if (!added.contains(link) || !m_inserted.contains(link))
            continue;
        FeedMessage headline;
        headline.setLink(link);
        headline.setTitle(message.message().title());
        // The store keeps whole seconds.
        const QDateTime date = message.message().publishedDate();
        headline.setPublishedDate(date.addMSecs(-date.time().msec()));
        headlines.append(headline);
    }
    return headlines;
}

QString FeedWriter::keyOf(const NamedItem &item) const { return m_keys.value(item.record.id); }

bool FeedWriter::isDropped(const ClaimedItem &claimed) const
{
    return m_memory.droppedKeys.contains(keyOf(*claimed.item))
        || m_memory.droppedLinks.contains(claimed.link.toString());
}

bool FeedWriter::isKnown(const Link &link, const QString &key) const
{
    return m_claims->use.isInChannel(link) || !m_known.link(key).isNull();
}

Result<FeedWriter::Claims> FeedWriter::claim() const
{
    QSet<QString> reserved;
    QHash<QString, Link> older; // Links of their own that items have in a store without keys, by key.
    const auto storedLink = [&](const NamedItem &item) {
        const QString key = keyOf(item);
        const Link link = m_known.link(key);
        return link.isNull() ? older.value(key) : link;
    };
    while (true) {
        std::vector<ClaimedItem> items = m_feed->claimedItems(reserved, storedLink);
        const Result<LinkUse> use = askAbout(items);
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
                use->isInChannel(claimed.link) || m_memory.droppedLinks.contains(claimed.link.toString());
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

Result<LinkUse> FeedWriter::askAbout(const std::vector<ClaimedItem> &items) const
{
    QList<Link> links;
    for (const ClaimedItem &claimed : items) {
        if (m_known.link(keyOf(*claimed.item)).isNull())
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

// Messages are deleted in the order in which they were stored, so that the oldest are stored first.
void FeedWriter::choose()
{
    std::vector<ClaimedItem> items = m_claims->items;
    sortNewestFirst(items);
    // A feed that changes all its messages each time must not keep out the new ones.
    const auto firstKnown =
        std::stable_partition(items.begin(), items.end(), [&](const ClaimedItem &claimed) {
            return !isKnown(claimed.link, keyOf(*claimed.item));
        });
    int resources = 0;
    int weight = 0;
    for (auto claimed = items.begin(); claimed != items.end(); ++claimed) {
        if (isDropped(*claimed))
            continue;
        StorableMessage message = m_feed->message(*claimed);
        message.setKey(keyOf(*claimed->item));
        bool isOwn = false;
        if (MessageWriter::isStored(message, m_channelUri, m_claims->use, m_known, &isOwn)) {
            if (isOwn)
                m_stored.digests.insert(claimed->item->record.digest);
            continue;
        }
        if (!m_claims->use.isOfMessage(claimed->link))
            m_inserted.insert(claimed->link.toString(), claimed->item->record.digest);
        resources += (claimed < firstKnown ? 1 : costOfChange) + int(message.message().enclosures().size());
        weight += message.weight();
        m_leavesMessages = resources > maximumResources || (weight > maximumWeight && !m_messages.isEmpty());
        if (m_leavesMessages)
            break;
        m_messages.append(message);
    }
    std::reverse(m_messages.begin(), m_messages.end());
}

Result<WriteTurn> FeedWriter::takeTurn()
{
    Result<WriteTurn> turn = WriteTurn::take();
    if (!turn)
        return turn;
    m_isOnlyProcess = m_isOnlyProcess && turn->followsOwn();
    m_isAlone = m_isAlone && m_isOnlyProcess && WriteTurn::count() == m_turns + 1;
    m_turns = WriteTurn::count();
    if (m_isAlone)
        return turn;
    const Result<ItemNote> items = Feeds(m_store).state(m_channelUri).and_then([&](const FeedState &) {
        return Feeds(m_store).itemNote(m_channelUri);
    });
    if (!items)
        return Failure(items.error());
    m_itemsNow = *items;
    return turn;
}

Result<void> FeedWriter::writeGroup(const QList<StorableMessage> &messages)
{
    const Result<WriteTurn> turn = takeTurn();
    if (!turn)
        return Failure(turn.error());
    return m_isAlone ? store(messages, m_claims->use, m_known) : writeAfterOthers(messages);
}

Result<void> FeedWriter::writeAfterOthers(const QList<StorableMessage> &messages)
{
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

Result<void> FeedWriter::forgetDropped()
{
    QSet<QString> links = m_memory.droppedLinks;
    QSet<QString> keys = m_memory.droppedKeys;
    for (const ClaimedItem &claimed : m_claims->items) {
        links.remove(claimed.link.toString());
        keys.remove(keyOf(*claimed.item));
    }
    return Feeds(m_store).forgetDropped(m_channelUri, links.values(), keys.values());
}

} // namespace Tidel
