// SPDX-License-Identifier: LGPL-2.1-or-later
#include "searchupdate_p.h"

#include "cleantext.h"
#include "htmltext.h"
#include "statements_p.h"
#include "storedatabase.h"

#include <QFile>

#include <sys/stat.h>

namespace Tidel {

namespace {

constexpr int manyMessages = 5000; // about half a second
constexpr int margin = 2; // seconds, the coarsest time of a file

const char *const attempt = "read messages for the search from the store";

/// A text that changes whenever a program writes to the store; empty if a change now could leave it as it is.
/// The files are not opened: closing one would end the locks that SQLite has on it.
QString signOfStore()
{
    QString sign;
    for (const char *name : {"/meta.db", "/meta.db-wal"}) {
        struct stat status = {};
        const QByteArray path = QFile::encodeName(StoreDatabase::folder()) + name;
        if (stat(path.constData(), &status) != 0)
            continue;
        if (status.st_mtim.tv_sec + margin >= QDateTime::currentSecsSinceEpoch())
            return {};
        sign += QStringLiteral("%1 %2 %3.%4;")
                    .arg(status.st_ino)
                    .arg(status.st_size)
                    .arg(status.st_mtim.tv_sec)
                    .arg(status.st_mtim.tv_nsec);
    }
    return sign;
}

/// The summary and the text, but no summary that begins the text.
QString searchableText(const QString &html, const QString &summary)
{
    const QString text = plainText(html);
    const QString before = plainText(summary);
    return before.isEmpty() || text.startsWith(before) ? text : before + QLatin1Char('\n') + text;
}

/// A message of several titles or dates has several rows; the first one counts.
QVector<StoredTexts> extractMessages(const Answer &answer)
{
    QVector<StoredTexts> messages;
    while (answer->next()) {
        const qlonglong id = answer->value(0).toLongLong();
        if (!messages.isEmpty() && messages.constLast().message.id == id)
            continue;
        StoredTexts stored;
        stored.message.id = id;
        stored.message.modified = answer->value(1).toLongLong();
        stored.message.uri = answer->value(2).toString();
        stored.message.published = answer->value(6).toDateTime();
        stored.title = answer->value(3).toString();
        stored.html = answer->value(4).toString();
        stored.summary = answer->value(5).toString();
        messages.append(stored);
    }
    return messages;
}

} // namespace

SearchUpdate::SearchUpdate(StorePrivate &store, SearchIndex &index, const Search::Progress &progress)
    : m_store(store), m_index(index), m_progress(progress)
{
}

Result<void> SearchUpdate::checked(bool isDone) const
{
    if (isDone)
        return {};
    return Failure(
        Error(Error::StoreFailed, QStringLiteral("write the index for the search"), m_index.error()));
}

Result<QVector<SearchableMessage>> SearchUpdate::read(StorePrivate &store, const QVector<qlonglong> &ids)
{
    return store.run(Statements::searchable(ids), attempt).map(extractMessages).map(inPlainText);
}

Result<QVector<StoredTexts>> SearchUpdate::readAfter(StorePrivate &store, qlonglong last, int limit)
{
    return store.run(Statements::searchableAfter(last, limit), attempt).map(extractMessages);
}

QVector<SearchableMessage> SearchUpdate::inPlainText(const QVector<StoredTexts> &messages)
{
    QVector<SearchableMessage> plain;
    plain.reserve(messages.size());
    for (const StoredTexts &stored : messages) {
        plain.append(stored.message);
        plain.last().title = cleanText(stored.title).simplified();
        plain.last().text = searchableText(stored.html, stored.summary);
    }
    return plain;
}

/// Adds the next messages, and returns their number.
Result<int> SearchUpdate::addGroup(int limit)
{
    Result<QVector<StoredTexts>> messages;
    const bool isWritten = m_index.inTransaction([&] {
        messages = readAfter(m_store, m_index.lastId(), limit);
        return messages && m_index.put(inPlainText(*messages));
    });
    return messages.and_then([&](const QVector<StoredTexts> &added) {
        return checked(isWritten).map([&] { return int(added.size()); });
    });
}

Result<void> SearchUpdate::addNew(int count)
{
    for (int left = count; left > 0;) {
        const Result<int> added = addGroup(qMin(left, groupSize));
        if (!added)
            return Failure(added.error());
        left = *added == 0 ? 0 : left - *added;
    }
    return {};
}

Result<void> SearchUpdate::addAll()
{
    const Result<int> first = addGroup(groupSize);
    if (!first || *first == 0)
        return first.map([](int) {});
    const Result<int> all = m_store.number(Statements::countOf(Statements::Kind::Message), attempt);
    if (!all)
        return Failure(all.error());
    int done = m_index.size();
    const bool isLong = m_progress && *all - done > manyMessages;
    for (int added = -1; added != 0; done += added) {
        if (isLong)
            m_progress(qMin(done, *all), *all);
        const Result<int> group = addGroup(groupSize);
        if (!group)
            return Failure(group.error());
        added = *group;
    }
    return {};
}

Result<void> SearchUpdate::catchUp()
{
    const QString sign = signOfStore();
    if (!sign.isEmpty() && m_index.sign() == sign)
        return {};
    const qint64 since = m_index.noteTime() - margin;
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    if (m_index.isWasteful() && !m_index.reset())
        return checked(false);
    return addAll()
        .and_then([&] { return replaceRenumbered(since); })
        .and_then([&] { return hasSameSums() ? Result<void>() : compare(); })
        .and_then([&] { return checked(m_index.note(sign, now)); });
}

/// Replaces the messages whose numbers were those of others. The store gives the number of a deleted message
/// to a new one, and its mark of change too.
Result<void> SearchUpdate::replaceRenumbered(qint64 since)
{
    constexpr int most = 10000; // The answers for all messages would take much memory.
    const QDateTime time = QDateTime::fromSecsSinceEpoch(since, Qt::UTC);
    qlonglong last = 0;
    for (int count = most; count == most;) {
        const Result<Answer> added = m_store.run(Statements::messagesAddedSince(time, last, most), attempt);
        if (!added)
            return Failure(added.error());
        QVector<QPair<qlonglong, qlonglong>> hashes;
        while ((*added)->next())
            hashes.append(
                {(*added)->value(0).toLongLong(), SearchIndex::hashOf((*added)->value(1).toString())});
        count = int(hashes.size());
        if (count == 0)
            return {};
        last = hashes.constLast().first;
        const Result<void> replaced = replaceDifferent(hashes);
        if (!replaced)
            return replaced;
    }
    return {};
}

/// Replaces the messages of \a hashes for which the index has another hash. \a hashes has the order of the
/// numbers.
Result<void> SearchUpdate::replaceDifferent(const QVector<QPair<qlonglong, qlonglong>> &hashes)
{
    const QHash<qlonglong, IndexedState> known =
        m_index.states(hashes.constFirst().first, hashes.constLast().first);
    Ids ids;
    for (const auto &hash : hashes) {
        if (known.value(hash.first).uriHash != hash.second)
            ids.append(hash.first);
    }
    return replace(ids);
}

/// Returns true if the index has all messages as the store has them; otherwise, and if in doubt, returns
/// false.
// Marks of change only grow, but for one thing: a program that was open while another one wrote can give
// lower ones. It would have to lower and raise three or more at once so that all sums stay.
bool SearchUpdate::hasSameSums() const
{
    const Result<Answer> answer = m_store.run(Statements::sumsOfMessageStates(), attempt);
    QVariantList sums;
    for (int i = 0; answer && (*answer)->first() && i < 4; ++i)
        sums.append((*answer)->value(i));
    return !sums.isEmpty() && sums == m_index.sums();
}

/// Compares each message.
Result<void> SearchUpdate::compare()
{
    QHash<qlonglong, IndexedState> unseen = m_index.states();
    const Result<Answer> states = m_store.run(Statements::messageStates(), attempt);
    if (!states)
        return Failure(states.error());
    Ids changed;
    while ((*states)->next()) {
        const qlonglong id = (*states)->value(0).toLongLong();
        if (unseen.take(id).modified != (*states)->value(1).toLongLong())
            changed.append(id);
    }
    const Ids deleted = unseen.keys().toVector();
    return replace(changed).and_then([&] {
        return checked(deleted.isEmpty() || m_index.inTransaction([&] { return m_index.remove(deleted); }));
    });
}

Result<void> SearchUpdate::replace(const Ids &ids)
{
    for (int from = 0; from < ids.size(); from += groupSize) {
        const Result<void> done =
            read(m_store, ids.mid(from, groupSize))
                .and_then([this](const QVector<SearchableMessage> &messages) {
                    return checked(m_index.inTransaction([&] { return m_index.put(messages); }));
                });
        if (!done)
            return done;
    }
    return {};
}

} // namespace Tidel
