// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readstate.h"

#include "channels.h"
#include "searchindex_p.h"
#include "statements_p.h"
#include "store_p.h"
#include "writeturn.h"

#include <QFile>

namespace Tidel {

namespace {

const char *const attempt = "change the read state of messages in the store";
const char *const countingAttempt = "count the messages in the store";

Result<MessageCounts> countMessages(const Store &store, const QSparqlQuery &all, const QSparqlQuery &read)
{
    StorePrivate &asked = StorePrivate::of(store);
    return asked.number(all, countingAttempt).and_then([&](int allCount) {
        return asked.number(read, countingAttempt).map([&](int readCount) {
            return MessageCounts{allCount, allCount - readCount};
        });
    });
}

/// Gives messages one state, a group at a time.
class Marking
{
public:
    Marking(StorePrivate &store, bool isRead)
        : m_store(store), m_isRead(isRead),
          m_time(QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch(), Qt::UTC))
    {
        if (QFile::exists(SearchIndex::file()))
            m_index = std::make_unique<SearchIndex>(SearchIndex::file());
    }

    /// Returns the number of those of \a uris that had the other state.
    Result<int> mark(const QStringList &uris);

private:
    using Marks = QHash<QString, MarkChange>;

    Result<Marks> othersAmong(const QStringList &uris);
    void tellIndex(Marks changes);

    StorePrivate &m_store;
    const bool m_isRead;
    const QDateTime m_time;
    std::unique_ptr<SearchIndex> m_index;
};

Result<int> Marking::mark(const QStringList &uris)
{
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn)
        return Failure(turn.error());
    const Result<Marks> others = othersAmong(uris);
    if (!others)
        return Failure(others.error());
    if (others->isEmpty())
        return 0;
    const QString update = Statements::replaceReadState(others->keys(), m_isRead, m_time);
    return m_store.update(Statements::update(update), attempt).map([&] {
        tellIndex(*others);
        return int(others->size());
    });
}

/// The messages among \a uris that are to be changed, with their marks.
Result<Marking::Marks> Marking::othersAmong(const QStringList &uris)
{
    return m_store.run(Statements::readStates(uris), attempt).map([this](const Answer &answer) {
        Marks marks;
        while (answer->next()) {
            if (answer->value(3).toDateTime().isValid() != m_isRead)
                marks.insert(answer->value(0).toString(),
                             {answer->value(1).toLongLong(), answer->value(2).toLongLong(), 0});
        }
        return marks;
    });
}

/// Tells the index for searches that no text has changed. Otherwise the next search would read the texts.
void Marking::tellIndex(Marks changes)
{
    if (!m_index || !m_index->isKept())
        return;
    const auto answer = m_store.run(Statements::readStates(changes.keys()), attempt);
    while (answer && (*answer)->next())
        changes[(*answer)->value(0).toString()].after = (*answer)->value(2).toLongLong();
    static_cast<void>(m_index->note(changes.values().toVector()));
}

} // namespace

ReadState::ReadState(const Store &store) : m_store(store) { }

Result<int> ReadState::set(const QStringList &uris, bool isRead, const Progress &progress)
{
    Marking marking(StorePrivate::of(m_store), isRead);
    int changed = 0;
    int done = 0;
    const Result<void> marked = inChunks(uris, [&](const QStringList &some) {
        return marking.mark(some).map([&](int count) {
            changed += count;
            done += int(some.size());
            if (progress)
                progress(done, int(uris.size()));
        });
    });
    return marked.map([&] { return changed; });
}

Result<QStringList> ReadState::unread(const QStringList &channelUris, const QDateTime &before) const
{
    StorePrivate &store = StorePrivate::of(m_store);
    const QStringList channels = channelUris.isEmpty() ? QStringList(QString()) : channelUris;
    QStringList messages;
    for (const QString &channel : channels) {
        const Result<QStringList> some =
            store.texts(Statements::unreadMessages(channel, before), "find the unread messages in the store");
        if (!some)
            return Failure(some.error());
        messages += *some;
    }
    messages.removeDuplicates();
    return messages;
}

Result<QHash<QString, MessageCounts>> ReadState::counts() const
{
    return Channels(m_store).messageCounts().and_then([this](const QHash<QString, int> &all) {
        return StorePrivate::of(m_store)
            .counts(Statements::readCounts(), countingAttempt)
            .map([&](const QHash<QString, int> &read) {
                QHash<QString, MessageCounts> counts;
                for (auto channel = all.cbegin(); channel != all.cend(); ++channel)
                    counts.insert(channel.key(),
                                  {channel.value(), channel.value() - read.value(channel.key())});
                return counts;
            });
    });
}

Result<MessageCounts> ReadState::total() const
{
    return countMessages(m_store, Statements::countOf(Statements::Kind::Message), Statements::countOfRead());
}

Result<MessageCounts> ReadState::favorites() const
{
    return countMessages(m_store, Statements::countOfFavorites(), Statements::countOfReadFavorites());
}

} // namespace Tidel
