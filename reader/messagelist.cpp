// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagelist.h"

#include "search.h"
#include "statements_p.h"
#include "store_p.h"

#include <algorithm>
#include <limits>

namespace Tidel {

namespace {

const char *const attempt = "read the list of messages from the store";

/// A headline, and the store's number of the message.
struct Entry
{
    MessageHeadline headline;
    qlonglong number = 0;
};

/// The rows of \a answer that are messages, each once.
QVector<Entry> extractEntries(const Answer &answer)
{
    QVector<Entry> entries;
    QSet<QString> uris;
    while (answer->next()) {
        const QString uri = answer->value(0).toString();
        if (uris.contains(uri) || !answer->value(4).toBool())
            continue;
        uris.insert(uri);
        Entry entry;
        entry.headline.uri = uri;
        entry.headline.link = answer->value(1).toString();
        entry.headline.title = answer->value(2).toString();
        entry.headline.published = answer->value(3).toDateTime();
        entry.headline.isFavorite = answer->value(5).toBool();
        entry.headline.isRead = answer->value(6).toBool();
        entry.number = answer->value(7).toLongLong();
        entries.append(entry);
    }
    return entries;
}

bool isNewer(const Entry &a, const Entry &b)
{
    const QDateTime dateOfA = a.headline.published;
    const QDateTime dateOfB = b.headline.published;
    if (dateOfA == dateOfB || (!dateOfA.isValid() && !dateOfB.isValid()))
        return a.number > b.number;
    return dateOfA.isValid() && (!dateOfB.isValid() || dateOfA > dateOfB);
}

SearchQuery searchFor(const MessageQuery &query)
{
    SearchQuery search;
    search.words = query.words;
    search.channelUris = query.channelUris;
    search.onlyFavorites = query.onlyFavorites;
    search.since = query.since;
    search.until = query.until;
    return search;
}

/// Reads one list.
class ListReader
{
public:
    ListReader(const Store &store, const MessageQuery &query) : m_store(store), m_query(query) { }

    Result<QVector<Entry>> read();
    Result<QVector<Entry>> readUris(const QStringList &uris);
    /// Keeps of \a entries what the query asks for, the newest first.
    void choose(QVector<Entry> *entries) const;
    Result<QList<MessageHeadline>> withChannels(const QVector<Entry> &entries);

private:
    StorePrivate &store() { return StorePrivate::of(m_store); }
    Result<QVector<Entry>> readAll(const Statements::ListFilter &filter);
    Result<void> countUnread();
    /// Returns true if the list can have no more than \a entries; otherwise returns false.
    bool isFull(const QVector<Entry> &entries) const
    {
        return (m_query.limit > 0 && entries.size() >= m_query.limit) || entries.size() >= m_unread;
    }
    Statements::ListFilter filter() const;

    const Store m_store;
    const MessageQuery m_query;
    int m_unread = std::numeric_limits<int>::max(); ///< As far as it is known.
};

Statements::ListFilter ListReader::filter() const
{
    Statements::ListFilter filter;
    filter.channelUris = m_query.channelUris;
    filter.onlyFavorites = m_query.onlyFavorites;
    filter.onlyUnread = m_query.onlyUnread;
    filter.since = m_query.since;
    filter.until = m_query.until;
    filter.limit = m_query.limit;
    return filter;
}

/// The messages with a date, and those without one where they belong to the list.
Result<QVector<Entry>> ListReader::readAll(const Statements::ListFilter &filter)
{
    Result<QVector<Entry>> entries =
        store().run(Statements::datedHeadlines(filter), attempt).map(extractEntries);
    if (!entries || isFull(*entries) || filter.since.isValid() || filter.until.isValid())
        return entries;
    const auto undated = store().run(Statements::undatedHeadlines(filter), attempt).map(extractEntries);
    if (!undated)
        return Failure(undated.error());
    *entries += *undated;
    return entries;
}

/// Counts the unread messages.
Result<void> ListReader::countUnread()
{
    return store().number(Statements::countOf(Statements::Kind::Message), attempt).and_then([&](int all) {
        return store().number(Statements::countOfRead(), attempt).map([&](int read) {
            m_unread = all - read;
        });
    });
}

/// To look for unread messages among all takes several times as long as to read the newest. Mostly these are
/// the unread ones.
Result<QVector<Entry>> ListReader::read()
{
    constexpr int factor = 4;
    if (!m_query.onlyUnread || m_query.limit <= 0)
        return readAll(filter());
    Statements::ListFilter newest = filter();
    newest.onlyUnread = false;
    newest.limit *= factor;
    Result<QVector<Entry>> entries =
        store().run(Statements::datedHeadlines(newest), attempt).map(extractEntries);
    if (!entries)
        return entries;
    choose(&*entries);
    const Result<void> counted = isFull(*entries) ? Result<void>() : countUnread();
    if (!counted)
        return Failure(counted.error());
    return isFull(*entries) ? entries : readAll(filter());
}

Result<QVector<Entry>> ListReader::readUris(const QStringList &uris)
{
    QVector<Entry> entries;
    return inChunks(
               uris,
               [&](const QStringList &some) {
                   return store().run(Statements::headlinesOf(some), attempt).map([&](const Answer &answer) {
                       entries += extractEntries(answer);
                   });
               })
        .map([&] { return entries; });
}

void ListReader::choose(QVector<Entry> *entries) const
{
    const auto isUnwanted = [this](const Entry &entry) {
        return m_query.onlyUnread && entry.headline.isRead;
    };
    entries->erase(std::remove_if(entries->begin(), entries->end(), isUnwanted), entries->end());
    std::sort(entries->begin(), entries->end(), isNewer);
    if (m_query.limit > 0 && entries->size() > m_query.limit)
        entries->resize(m_query.limit);
}

Result<QList<MessageHeadline>> ListReader::withChannels(const QVector<Entry> &entries)
{
    // To ask for all is faster than to ask for each hundred of many.
    constexpr int many = 5000;
    QList<MessageHeadline> headlines;
    QHash<QString, int> places;
    QStringList uris;
    for (const Entry &entry : entries) {
        places.insert(entry.headline.uri, int(headlines.size()));
        headlines.append(entry.headline);
        uris.append(entry.headline.uri);
    }
    const auto titles = store().values(Statements::titlesOfChannels(), attempt);
    if (!titles)
        return Failure(titles.error());
    const auto add = [&](const Answer &answer) {
        while (answer->next()) {
            const int place = places.value(answer->value(0).toString(), -1);
            const auto title = titles->constFind(answer->value(1).toString());
            if (place >= 0 && title != titles->cend() && !headlines.at(place).channels.contains(*title))
                headlines[place].channels.append(*title);
        }
    };
    const Result<void> read = uris.size() > many
        ? store().run(Statements::channelsOfAllMessages(), attempt).map(add)
        : inChunks(uris, [&](const QStringList &some) {
              return store().run(Statements::channelsOfMessages(some), attempt).map(add);
          });
    for (MessageHeadline &headline : headlines)
        headline.channels.sort();
    return read.map([&] { return headlines; });
}

} // namespace

MessageList::MessageList(const Store &store) : m_store(store) { }

Result<QList<MessageHeadline>> MessageList::find(const MessageQuery &query, const Progress &progress) const
{
    ListReader reader(m_store, query);
    const auto entries = query.words.isEmpty()
        ? reader.read()
        : Search(m_store).uris(searchFor(query), progress).and_then([&](const QStringList &uris) {
              return reader.readUris(uris);
          });
    return entries.and_then([&](QVector<Entry> found) {
        reader.choose(&found);
        return reader.withChannels(found);
    });
}

Result<QList<MessageHeadline>> MessageList::headlines(const QStringList &uris) const
{
    ListReader reader(m_store, {});
    return reader.readUris(uris).and_then([&](const QVector<Entry> &entries) {
        QHash<QString, Entry> found;
        for (const Entry &entry : entries)
            found.insert(entry.headline.uri, entry);
        QVector<Entry> inOrder;
        for (const QString &uri : uris) {
            if (found.contains(uri))
                inOrder.append(found.value(uri));
        }
        return reader.withChannels(inOrder);
    });
}

Result<QList<MessageHeadline>> MessageList::titled(const QString &name, int limit) const
{
    const QString title = name.simplified();
    if (title.isEmpty())
        return QList<MessageHeadline>();
    return StorePrivate::of(m_store)
        .run(Statements::messagesTitled(title, limit), "look up the message in the store")
        .map([&title](const Answer &answer) {
            QStringList same;
            QStringList others;
            while (answer->next()) {
                const bool isSame = answer->value(1).toString().compare(title, Qt::CaseInsensitive) == 0;
                (isSame ? same : others).append(answer->value(0).toString());
            }
            return same.isEmpty() ? others : same;
        })
        .and_then([this](const QStringList &uris) { return headlines(uris); });
}

} // namespace Tidel
