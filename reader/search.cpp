// SPDX-License-Identifier: LGPL-2.1-or-later
#include "search.h"

#include "searchindex_p.h"
#include "searchupdate_p.h"
#include "searchwords_p.h"
#include "statements_p.h"

namespace Tidel {

namespace {

constexpr int maximumExcerpt = 600; // characters; a word can be as long as a text

/// Takes the marks out of \a text.
MarkedText toMarkedText(const QString &text)
{
    MarkedText result;
    int begin = 0;
    for (const QChar c : text) {
        const int at = int(result.text.size());
        if (c == SearchIndex::beginMark)
            begin = at;
        else if (c == SearchIndex::endMark)
            result.marks.append({begin, at - begin});
        else if (at < maximumExcerpt)
            result.text += c;
    }
    return result;
}

} // namespace

class Search::Private
{
public:
    explicit Private(const Store &store) : m_store(store), m_index(SearchIndex::file()) { }

    /// Calls \a work, which reads and writes the index. If the index is damaged, it is made again; if it
    /// cannot be written, a temporary one is made.
    Result<void> withIndex(const std::function<Result<void>()> &work);
    Result<void> catchUp(const Progress &progress);
    Result<void> addNew(int count);
    Result<QVector<qlonglong>> search(const QString &expression, const SearchQuery &query,
                                      const Progress &progress);
    Result<QStringList> uris(const QVector<qlonglong> &ids);
    Result<QList<SearchHit>> hits(const QString &expression, const QVector<qlonglong> &ids);
    SearchIndex &index() { return m_index; }

private:
    StorePrivate &store() { return StorePrivate::of(m_store); }
    Error indexError() const { return Error(Error::StoreFailed, QStringLiteral("search"), m_index.error()); }
    Result<QVector<qlonglong>> best(const QString &expression, const SearchQuery &query);
    Result<SearchBounds> bounds(const SearchQuery &query);
    Result<QVector<qlonglong>> unread(const QVector<qlonglong> &ids, int limit);
    /// Adds link, title, date and channels of the messages \a uris to \a hits.
    Result<void> describe(const QStringList &uris, QHash<QString, SearchHit> *hits);

    const Store m_store;
    SearchIndex m_index;
};

Result<void> Search::Private::withIndex(const std::function<Result<void>()> &work)
{
    const Result<void> done = work();
    if (done)
        return done;
    if (m_index.isDamaged())
        return m_index.reset() ? work() : Result<void>(Failure(indexError()));
    return m_index.isKept() && m_index.useTemporaryFile() ? work() : done;
}

Result<void> Search::Private::catchUp(const Progress &progress)
{
    return SearchUpdate(store(), m_index, progress).catchUp();
}

Result<void> Search::Private::addNew(int count)
{
    return m_index.isKept() ? SearchUpdate(store(), m_index, {}).addNew(count) : Result<void>();
}

Result<SearchBounds> Search::Private::bounds(const SearchQuery &query)
{
    SearchBounds bounds{std::nullopt, query.since, query.until,
                        query.onlyUnread ? SearchIndex::maximumRanked : query.limit};
    if (query.channelUris.isEmpty() && !query.onlyFavorites)
        return bounds;
    return store()
        .run(Statements::numbersOfMessages(query.channelUris, query.onlyFavorites), "search the store")
        .map([&bounds](const Answer &answer) {
            bounds.ids.emplace();
            while (answer->next())
                bounds.ids->append(answer->value(0).toLongLong());
            return bounds;
        });
}

Result<QVector<qlonglong>> Search::Private::best(const QString &expression, const SearchQuery &query)
{
    return bounds(query).and_then([&](const SearchBounds &bounds) -> Result<QVector<qlonglong>> {
        QVector<qlonglong> ids;
        if (!m_index.find(expression, bounds, &ids))
            return Failure(indexError());
        return query.onlyUnread ? unread(ids, query.limit) : ids;
    });
}

/// The first \a limit of the messages \a ids that are unread.
Result<QVector<qlonglong>> Search::Private::unread(const QVector<qlonglong> &ids, int limit)
{
    QVector<qlonglong> found;
    for (int from = 0; from < ids.size() && found.size() < limit; from += chunkSize) {
        const QVector<qlonglong> some = ids.mid(from, chunkSize);
        const auto read = store().texts(Statements::readAmong(some), "search the store");
        if (!read)
            return Failure(read.error());
        for (qlonglong id : some) {
            if (found.size() < limit && !read->contains(QString::number(id)))
                found.append(id);
        }
    }
    return found;
}

Result<QStringList> Search::Private::uris(const QVector<qlonglong> &ids)
{
    QStringList uris;
    return inChunks(ids,
                    [&](const QVector<qlonglong> &some) {
                        return store()
                            .texts(Statements::urisOf(some), "search the store")
                            .map([&uris](const QStringList &found) { uris += found; });
                    })
        .map([&] { return uris; });
}

Result<void> Search::Private::describe(const QStringList &uris, QHash<QString, SearchHit> *hits)
{
    return inChunks(uris, [&](const QStringList &some) {
        return store()
            .run(Statements::headlines(some), "read the found messages from the store")
            .map([hits](const Answer &answer) {
                while (answer->next()) {
                    SearchHit &hit = (*hits)[answer->value(0).toString()];
                    hit.uri = answer->value(0).toString();
                    hit.message.setLink(answer->value(1).toString());
                    hit.message.setTitle(answer->value(2).toString());
                    hit.message.setPublishedDate(answer->value(3).toDateTime());
                }
            })
            .and_then([&] {
                return store().run(Statements::channelTitles(some),
                                   "read the channels of the found messages from the store");
            })
            .map([hits](const Answer &answer) {
                while (answer->next())
                    (*hits)[answer->value(0).toString()].channels.append(answer->value(1).toString());
            });
    });
}

Result<QList<SearchHit>> Search::Private::hits(const QString &expression, const QVector<qlonglong> &ids)
{
    const auto messages = SearchUpdate::read(store(), ids);
    if (!messages)
        return Failure(messages.error());
    QHash<qlonglong, QString> uris;
    for (const SearchableMessage &message : *messages)
        uris.insert(message.id, message.uri);
    QVector<MarkedMessage> marked;
    if (!m_index.mark(expression, *messages, &marked))
        return Failure(indexError());
    QHash<QString, SearchHit> found;
    for (const MarkedMessage &message : qAsConst(marked)) {
        SearchHit &hit = found[uris.value(message.id)];
        hit.title = toMarkedText(message.title);
        hit.excerpt = toMarkedText(message.excerpt);
    }
    return describe(found.keys(), &found).map([&] {
        QList<SearchHit> hits;
        for (qlonglong id : ids) {
            if (found.contains(uris.value(id)))
                hits.append(found.value(uris.value(id)));
        }
        return hits;
    });
}

Search::Search(const Store &store) : d(std::make_unique<Private>(store)) { }

Search::~Search() = default;

/// The numbers of the messages that \a query asks for, in the index as the store is now.
Result<QVector<qlonglong>> Search::Private::search(const QString &expression, const SearchQuery &query,
                                                   const Progress &progress)
{
    QVector<qlonglong> ids;
    return withIndex([&] {
               return catchUp(progress)
                   .and_then([&] { return best(expression, query); })
                   .map([&ids](const QVector<qlonglong> &best) { ids = best; });
           })
        .map([&] { return ids; });
}

Result<QList<SearchHit>> Search::find(const SearchQuery &query, const Progress &progress)
{
    return matchExpression(query.words).and_then([&](const QString &expression) {
        return d->search(expression, query, progress).and_then([&](const QVector<qlonglong> &ids) {
            return d->hits(expression, ids);
        });
    });
}

Result<QStringList> Search::uris(const SearchQuery &query, const Progress &progress)
{
    SearchQuery all = query;
    all.limit = SearchIndex::maximumRanked;
    all.onlyUnread = false;
    return matchExpression(query.words).and_then([&](const QString &expression) {
        return d->search(expression, all, progress).and_then([&](const QVector<qlonglong> &ids) {
            return d->uris(ids);
        });
    });
}

Result<void> Search::addNewMessages(int count)
{
    return d->withIndex([&] { return d->addNew(count); });
}

bool Search::check()
{
    const bool isSound = d->index().check();
    if (!isSound)
        d->index().reset();
    return isSound;
}

} // namespace Tidel
