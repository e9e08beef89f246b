// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storestate_p.h"

#include "statements_p.h"

#include <algorithm>
#include <utility>

namespace Tidel {

namespace {

constexpr int blocksAtOnce = 16; // Bounds the memory for the answer.
constexpr int margin = 2; // seconds, the store keeps whole ones

const char *const attempt = "look for changes in the store";

SeenBlock::Pairs differences(const SeenBlock::Pairs &before, const SeenBlock::Pairs &now)
{
    SeenBlock::Pairs pairs;
    std::set_symmetric_difference(before.cbegin(), before.cend(), now.cbegin(), now.cend(),
                                  std::back_inserter(pairs));
    return pairs;
}

/// Those of \a pairs with a second number above \a limit.
SeenBlock::Pairs above(const SeenBlock::Pairs &pairs, qlonglong limit)
{
    SeenBlock::Pairs chosen;
    std::copy_if(pairs.cbegin(), pairs.cend(), std::back_inserter(chosen),
                 [limit](const auto &pair) { return pair.second > limit; });
    return chosen;
}

qlonglong blockOf(qlonglong number) { return number / Statements::blockSize; }

void extractMessages(const Answer &answer, QHash<qlonglong, SeenBlock> *blocks)
{
    while (answer->next()) {
        const qlonglong number = answer->value(0).toLongLong();
        const auto digest = quint32(qHash(answer->value(3).toString()));
        QVector<SeenMessage> &messages = (*blocks)[blockOf(number)].messages;
        if (!messages.isEmpty() && messages.constLast().number == number) {
            messages.last().digestHash ^= digest;
            continue;
        }
        messages.append({number, answer->value(1).toLongLong(), PackedUri(answer->value(2).toString()),
                         digest, answer->value(4).toBool(), answer->value(5).toBool()});
    }
}

void extractPairs(const Answer &answer, QHash<qlonglong, SeenBlock> *blocks,
                  SeenBlock::Pairs SeenBlock::*member)
{
    while (answer->next()) {
        const qlonglong number = answer->value(0).toLongLong();
        ((*blocks)[blockOf(number)].*member).append({number, answer->value(1).toLongLong()});
    }
}

/// The contents of the blocks from \a first to \a last that are not empty.
Result<QHash<qlonglong, SeenBlock>> contents(StorePrivate &store, qlonglong first, qlonglong last)
{
    QHash<qlonglong, SeenBlock> blocks;
    const auto read = [&](const QSparqlQuery &query, const auto &extract) {
        return store.run(query, attempt).map([&](const Answer &answer) { extract(answer, &blocks); });
    };
    const auto to = [](SeenBlock::Pairs SeenBlock::*member) {
        return [member](const Answer &answer, auto *all) { extractPairs(answer, all, member); };
    };
    return read(Statements::messagesInBlocks(first, last), extractMessages)
        .and_then(
            [&] { return read(Statements::enclosuresInBlocks(first, last), to(&SeenBlock::enclosures)); })
        .and_then([&] { return read(Statements::partsInBlocks(first, last), to(&SeenBlock::parts)); })
        .map([&] {
            for (SeenBlock &block : blocks) {
                std::sort(block.parts.begin(), block.parts.end());
                block.messages.squeeze();
            }
            return blocks;
        });
}

} // namespace

StoreState::StoreState(const std::shared_ptr<const std::atomic_bool> &isOver) : m_isOver(isOver) { }

Result<void> StoreState::begin(StorePrivate &store)
{
    return store.run(Statements::lastNumbers(), attempt)
        .map([this](const Answer &answer) {
            if (!answer->next())
                return;
            m_lastNumber = answer->value(0).toLongLong();
            m_lastMark = answer->value(1).toLongLong();
        })
        .and_then([&] { return readSeenChannels(store); })
        .map([this](const SeenChannels &channels) { m_channels = channels; });
}

Result<StoreChanges> StoreState::look(StorePrivate &store)
{
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    Result<SeenChannels> channels = readSeenChannels(store);
    if (!channels)
        return Failure(channels.error());
    const Result<void> read = readSums(store, *channels).and_then([&](const SumsOfBlocks &sums) {
        return readBlocks(store, sums);
    });
    if (!read)
        return Failure(read.error());
    if (*m_isOver)
        return StoreChanges();
    // A channel must be told before its messages.
    if (!m_isComplete || hasOtherOwners(*channels))
        channels = readSeenChannels(store);
    if (!channels)
        return Failure(channels.error());
    compareChannels(*channels);
    m_time = now;
    m_isComplete = true;
    return takeChanges();
}

/// The marks of channels are left out: each refresh changes them, and all channels are compared anyway.
Result<StoreState::SumsOfBlocks> StoreState::readSums(StorePrivate &store, const SeenChannels &channels) const
{
    SumsOfBlocks sums;
    const auto add = [&](size_t at) {
        return [&sums, at](const Answer &answer) {
            while (answer->next()) {
                Sums &block = sums[answer->value(0).toLongLong()];
                for (size_t i = 0; i < 3; ++i)
                    block[at + i] = answer->value(int(i) + 1).toLongLong();
            }
        };
    };
    const Result<void> read = store.run(Statements::sumsOfMarks(), attempt).map(add(0)).and_then([&] {
        return store.run(Statements::sumsOfParts(), attempt).map(add(3));
    });
    if (!read)
        return Failure(read.error());
    for (const SeenChannel &channel : channels) {
        Sums &block = sums[blockOf(channel.number)];
        block[0] -= 1;
        block[1] -= channel.mark;
        block[2] -= channel.number * channel.mark;
    }
    return sums;
}

/// The blocks to read, in their order.
Result<QVector<qlonglong>> StoreState::differentBlocks(StorePrivate &store, const SumsOfBlocks &sums) const
{
    QSet<qlonglong> blocks;
    for (auto block = sums.cbegin(); block != sums.cend(); ++block) {
        if (m_sums.value(block.key()) != *block)
            blocks.insert(block.key());
    }
    for (auto block = m_sums.cbegin(); block != m_sums.cend(); ++block) {
        if (*block != sums.value(block.key()))
            blocks.insert(block.key());
    }
    // A new resource can have the number and the mark of a deleted one.
    const QDateTime since = QDateTime::fromSecsSinceEpoch(m_time - margin, Qt::UTC);
    const Result<void> added = !m_isComplete
        ? Result<void>()
        : store.run(Statements::blocksAddedSince(since), attempt).map([&](const Answer &answer) {
              while (answer->next())
                  blocks.insert(answer->value(0).toLongLong());
          });
    if (!added)
        return Failure(added.error());
    QVector<qlonglong> ordered(blocks.cbegin(), blocks.cend());
    std::sort(ordered.begin(), ordered.end());
    return ordered;
}

Result<void> StoreState::readBlocks(StorePrivate &store, const SumsOfBlocks &sums)
{
    const Result<QVector<qlonglong>> blocks = differentBlocks(store, sums);
    if (!blocks)
        return Failure(blocks.error());
    for (int i = 0; i < blocks->size() && !*m_isOver;) {
        int next = i + 1;
        while (next < blocks->size() && next < i + blocksAtOnce
               && blocks->at(next) == blocks->at(next - 1) + 1)
            ++next;
        const Result<void> read = readBlocks(store, blocks->at(i), blocks->at(next - 1));
        if (!read)
            return read;
        for (; i < next; ++i)
            m_sums[blocks->at(i)] = sums.value(blocks->at(i));
    }
    return {};
}

Result<void> StoreState::readBlocks(StorePrivate &store, qlonglong first, qlonglong last)
{
    return contents(store, first, last).map([&](const QHash<qlonglong, SeenBlock> &now) {
        for (qlonglong number = first; number <= last; ++number) {
            const SeenBlock block = now.value(number);
            const SeenBlock before = m_blocks.value(number);
            compareMessages(before, block);
            compareParts(before, block);
            m_blocks[number] = block;
        }
    });
}

void StoreState::compareMessages(const SeenBlock &before, const SeenBlock &now)
{
    for (const SeenMessage &message : now.messages) {
        const SeenMessage *known = before.message(message.number);
        if (known && known->uri == message.uri)
            compareMarks(*known, message);
        else
            noteAdded(message);
    }
    for (const SeenMessage &message : before.messages) {
        const SeenMessage *left = now.message(message.number);
        if (!left || !(left->uri == message.uri))
            m_changes.messagesRemoved.append(message.uri.text());
    }
}

void StoreState::compareMarks(const SeenMessage &before, const SeenMessage &now)
{
    if (before.mark == now.mark && before.isFavorite == now.isFavorite && before.isRead == now.isRead)
        return;
    const QString uri = now.uri.text();
    if (before.isRead != now.isRead)
        (now.isRead ? m_changes.messagesRead : m_changes.messagesUnread).append(uri);
    if (before.isFavorite != now.isFavorite)
        (now.isFavorite ? m_changes.favoritesAdded : m_changes.favoritesRemoved).append(uri);
    // What a refresh changes has another digest.
    const bool isMarked = before.isRead != now.isRead || before.isFavorite != now.isFavorite;
    if (!isMarked || before.digestHash != now.digestHash)
        m_touched.insert(now.number);
}

void StoreState::noteAdded(const SeenMessage &message)
{
    if (m_isComplete || message.number > m_lastNumber) {
        m_added.insert(message.number);
        m_changes.messagesAdded.append(message.uri.text());
    } else if (message.mark > m_lastMark) {
        m_touched.insert(message.number);
    }
}

/// A message changes with its channels and enclosures, and a channel with its image.
void StoreState::compareParts(const SeenBlock &before, const SeenBlock &now)
{
    const SeenBlock::Pairs moved = m_isComplete ? differences(before.parts, now.parts) : SeenBlock::Pairs();
    for (const auto &[number, owner] : moved) {
        const bool isEnclosure = before.hasEnclosure(number) || now.hasEnclosure(number);
        m_touched.insert(isEnclosure ? owner : number);
        if (!isEnclosure)
            m_owners.insert(owner);
    }
    const SeenBlock::Pairs changed =
        m_isComplete ? differences(before.enclosures, now.enclosures) : above(now.enclosures, m_lastMark);
    for (const auto &[number, mark] : changed) {
        for (const SeenBlock::Pairs &parts : {before.parts, now.parts}) {
            auto part = std::lower_bound(parts.cbegin(), parts.cend(), qMakePair(number, qlonglong(0)));
            for (; part != parts.cend() && part->first == number; ++part)
                m_touched.insert(part->second);
        }
    }
}

/// Returns true if a message belongs to another channel than \a channels; otherwise returns false.
bool StoreState::hasOtherOwners(const SeenChannels &channels) const
{
    QSet<qlonglong> owners = m_owners;
    for (const SeenChannel &channel : channels)
        owners.remove(channel.number);
    return !owners.isEmpty();
}

void StoreState::compareChannels(const SeenChannels &now)
{
    for (auto channel = now.cbegin(); channel != now.cend(); ++channel) {
        const auto before = m_channels.constFind(channel.key());
        if (before == m_channels.cend()) {
            m_added.insert(channel->number);
            m_changes.channelsAdded.append(channel.key());
        } else if (before->shown != channel->shown) {
            m_touched.insert(channel->number);
        }
    }
    for (auto channel = m_channels.cbegin(); channel != m_channels.cend(); ++channel) {
        if (!now.contains(channel.key()))
            m_changes.channelsRemoved.append(channel.key());
    }
    m_channels = now;
}

StoreChanges StoreState::takeChanges()
{
    for (auto channel = m_channels.cbegin(); channel != m_channels.cend(); ++channel) {
        if (m_touched.contains(channel->number) && !m_added.contains(channel->number))
            m_changes.channelsChanged.append(channel.key());
    }
    m_touched.subtract(m_added);
    for (qlonglong number : qAsConst(m_touched)) {
        if (const SeenMessage *changed = message(number))
            m_changes.messagesChanged.append(changed->uri.text());
    }
    m_added.clear();
    m_touched.clear();
    m_owners.clear();
    mergeMoved();
    return std::exchange(m_changes, {});
}

/// A message that has another number now was not removed. All have if the database was replaced.
void StoreState::mergeMoved()
{
    const QSet<QString> removed(m_changes.messagesRemoved.cbegin(), m_changes.messagesRemoved.cend());
    const QSet<QString> added(m_changes.messagesAdded.cbegin(), m_changes.messagesAdded.cend());
    const QSet<QString> moved = QSet<QString>(removed).intersect(added);
    if (moved.isEmpty())
        return;
    m_changes.messagesRemoved = QSet<QString>(removed).subtract(moved).values();
    m_changes.messagesAdded = QSet<QString>(added).subtract(moved).values();
    m_changes.messagesChanged += moved.values();
}

const SeenMessage *StoreState::message(qlonglong number) const
{
    const auto block = m_blocks.constFind(blockOf(number));
    return block == m_blocks.cend() ? nullptr : block->message(number);
}

} // namespace Tidel
