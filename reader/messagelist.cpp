// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagelist.h"

#include "search.h"
#include "statements_p.h"
#include "store_p.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <vector>

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
    static_cast<MessageFilter &>(search) = query;
    search.onlyUnread = false; // choose() looks at all that are found.
    search.words = query.words;
    return search;
}

/// Finds URIs of a list.
class UriFinder
{
public:
    explicit UriFinder(const UriList &list) : m_list(list)
    {
        for (int row = 0; row < list.size(); ++row)
            m_uris.insert(m_list.viewAt(row));
    }

    bool isEmpty() const { return m_uris.empty(); }
    bool contains(const QString &uri) const
    {
        const QByteArray text = uri.toUtf8();
        return m_uris.count(std::string_view(text.constData(), size_t(text.size()))) > 0;
    }

private:
    const UriList m_list; // keeps the texts
    std::unordered_set<std::string_view> m_uris;
};

/// Reads one list.
class ListReader
{
public:
    /// The messages \a kept count as unread.
    ListReader(const Store &store, const MessageQuery &query, const UriList &kept = {})
        : m_store(store), m_query(query), m_kept(query.onlyUnread ? kept : UriList())
    {
    }

    Result<QVector<Entry>> read();
    Result<QVector<Entry>> readUris(const QStringList &uris);
    Result<UriList> readOrder();
    /// Keeps of \a entries what the query asks for, in its order.
    void choose(QVector<Entry> *entries) const;
    Result<QList<MessageHeadline>> withChannels(const QVector<Entry> &entries);

private:
    /// The statement of a part of the list.
    using Part = QSparqlQuery (*)(const Statements::ListFilter &);
    /// Gets a message and the title of one of its channels.
    using TitleHandler = std::function<void(const QString &uri, const QString &title)>;

    StorePrivate &store() { return StorePrivate::of(m_store); }
    Result<void> eachTitle(const QStringList &uris, const TitleHandler &add);
    QVector<Part> inOrder(Part dated, Part undated) const;
    Result<QVector<Entry>> readAll(const Statements::ListFilter &filter);
    Result<void> countUnread();
    Result<bool> isLikelyNewest();
    /// Returns true if the list can have no more than \a entries; otherwise returns false.
    bool isFull(const QVector<Entry> &entries) const
    {
        return (m_query.limit > 0 && entries.size() >= m_query.limit) || entries.size() >= m_unread;
    }
    bool isWanted(const QString &uri, bool isRead) const
    {
        return !m_query.onlyUnread || !isRead || m_kept.contains(uri);
    }
    Statements::ListFilter filter() const;

    const Store m_store;
    const MessageQuery m_query;
    const UriFinder m_kept;
    int m_unread = std::numeric_limits<int>::max(); ///< As far as it is known.
};

Statements::ListFilter ListReader::filter() const
{
    Statements::ListFilter filter{m_query};
    filter.order = m_query.order;
    filter.limit = m_query.limit;
    return filter;
}

/// The parts of the list, as it has them.
QVector<ListReader::Part> ListReader::inOrder(Part dated, Part undated) const
{
    if (m_query.since.isValid() || m_query.until.isValid())
        return {dated};
    return m_query.order == Qt::DescendingOrder ? QVector<Part>{dated, undated}
                                                : QVector<Part>{undated, dated};
}

Result<QVector<Entry>> ListReader::readAll(const Statements::ListFilter &filter)
{
    QVector<Entry> entries;
    for (const Part part : inOrder(&Statements::datedHeadlines, &Statements::undatedHeadlines)) {
        if (isFull(entries))
            break;
        const auto some = store().run(part(filter), attempt).map(extractEntries);
        if (!some)
            return Failure(some.error());
        entries += *some;
    }
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

/// Returns true if a look at the newest of all messages is likely to find the list; otherwise returns false.
Result<bool> ListReader::isLikelyNewest()
{
    constexpr int many = 10000;
    if (m_query.limit <= 0 || m_query.order != Qt::DescendingOrder)
        return false;
    if (m_query.onlyUnread)
        return true;
    if (m_query.channelUris.isEmpty())
        return false;
    return store().number(Statements::countOfParts(m_query.channelUris), attempt).map([](int count) {
        return count > many;
    });
}

/// Looking for unread messages among all, or sorting those of a large channel, takes several times as long as
/// reading the newest of all. The list is mostly among these.
Result<QVector<Entry>> ListReader::read()
{
    constexpr int factor = 4;
    return isLikelyNewest().and_then([&](bool isLikely) -> Result<QVector<Entry>> {
        if (!isLikely)
            return readAll(filter());
        const auto entries =
            store()
                .run(Statements::headlinesAmongNewest(filter(), factor * m_query.limit), attempt)
                .map(extractEntries);
        if (!entries || isFull(*entries))
            return entries;
        const Result<void> counted = m_query.onlyUnread ? countUnread() : Result<void>();
        if (!counted)
            return Failure(counted.error());
        return isFull(*entries) ? entries : readAll(filter());
    });
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

Result<UriList> ListReader::readOrder()
{
    Statements::ListFilter all = filter();
    all.asksWhetherRead = !m_kept.isEmpty();
    all.onlyUnread = m_query.onlyUnread && !all.asksWhetherRead;
    UriList list;
    std::vector<bool> isListed; // By the numbers of the messages, which are small.
    const auto add = [&](const Answer &answer) {
        while (answer->next() && !(m_query.limit > 0 && list.size() >= m_query.limit)) {
            const size_t number = answer->value(1).toULongLong();
            const QString uri = answer->value(0).toString();
            isListed.resize(std::max(isListed.size(), number + 1));
            if (isListed[number] || !isWanted(uri, all.asksWhetherRead && answer->value(2).toBool()))
                continue;
            isListed[number] = true;
            list.append(uri);
        }
    };
    for (const Part part : inOrder(&Statements::datedUris, &Statements::undatedUris)) {
        const Result<void> read = store().run(part(all), attempt).map(add);
        if (!read)
            return Failure(read.error());
    }
    return list;
}

void ListReader::choose(QVector<Entry> *entries) const
{
    const auto isUnwanted = [this](const Entry &entry) {
        return !isWanted(entry.headline.uri, entry.headline.isRead);
    };
    entries->erase(std::remove_if(entries->begin(), entries->end(), isUnwanted), entries->end());
    std::sort(entries->begin(), entries->end(), isNewer);
    if (m_query.order == Qt::AscendingOrder)
        std::reverse(entries->begin(), entries->end());
    if (m_query.limit > 0 && entries->size() > m_query.limit)
        entries->resize(m_query.limit);
}

Result<QList<MessageHeadline>> ListReader::withChannels(const QVector<Entry> &entries)
{
    QList<MessageHeadline> headlines;
    QHash<QString, int> places;
    QStringList uris;
    for (const Entry &entry : entries) {
        places.insert(entry.headline.uri, int(headlines.size()));
        headlines.append(entry.headline);
        uris.append(entry.headline.uri);
    }
    const Result<void> read = eachTitle(uris, [&](const QString &uri, const QString &title) {
        const int place = places.value(uri, -1);
        if (place >= 0 && !headlines.at(place).channels.contains(title))
            headlines[place].channels.append(title);
    });
    for (MessageHeadline &headline : headlines)
        headline.channels.sort();
    return read.map([&] { return headlines; });
}

/// Calls \a add with the titles of the channels of the messages \a uris, and with others if these are many.
Result<void> ListReader::eachTitle(const QStringList &uris, const TitleHandler &add)
{
    // To ask for all is faster than to ask for each hundred of many.
    constexpr int many = 5000;
    if (uris.size() <= many)
        return inChunks(uris, [&](const QStringList &some) {
            return store().run(Statements::channelTitles(some), attempt).map([&](const Answer &answer) {
                while (answer->next())
                    add(answer->value(0).toString(), answer->value(1).toString());
            });
        });
    const auto titles = store().values(Statements::titlesOfChannels(), attempt);
    if (!titles)
        return Failure(titles.error());
    return store().run(Statements::channelsOfAllMessages(), attempt).map([&](const Answer &answer) {
        while (answer->next()) {
            const auto title = titles->constFind(answer->value(1).toString());
            if (title != titles->cend())
                add(answer->value(0).toString(), *title);
        }
    });
}

/// The messages with the words of \a query.
Result<QVector<Entry>> search(const Store &store, const MessageQuery &query, ListReader *reader,
                              const MessageList::Progress &progress)
{
    return Search(store).uris(searchFor(query), progress).and_then([&](const QStringList &uris) {
        return reader->readUris(uris);
    });
}

} // namespace

MessageList::MessageList(const Store &store) : m_store(store) { }

Result<QList<MessageHeadline>> MessageList::find(const MessageQuery &query, const Progress &progress) const
{
    ListReader reader(m_store, query);
    const auto entries = query.words.isEmpty() ? reader.read() : search(m_store, query, &reader, progress);
    return entries.and_then([&](QVector<Entry> found) {
        reader.choose(&found);
        return reader.withChannels(found);
    });
}

Result<UriList> MessageList::uris(const MessageQuery &query, const UriList &kept,
                                  const Progress &progress) const
{
    ListReader reader(m_store, query, kept);
    if (query.words.isEmpty())
        return reader.readOrder();
    return search(m_store, query, &reader, progress).map([&](QVector<Entry> found) {
        reader.choose(&found);
        UriList list;
        for (const Entry &entry : qAsConst(found))
            list.append(entry.headline.uri);
        return list;
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
