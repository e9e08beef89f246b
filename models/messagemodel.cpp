// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagemodel.h"

#include "headlinecache_p.h"
#include "rowchanges_p.h"
#include "watching_p.h"

#include <QPointer>

#include <unordered_set>

namespace Tidel {

namespace {

/// What the thread for reads has found.
struct ListReading
{
    UriList uris;
    RowChanges changes; // Since the last reading.
    QList<MessageHeadline> headlines; // Of the first rows, if they are all that was read.
};

using Answer = QFuture<Result<ListReading>>;
using Headlines = Result<QList<MessageHeadline>>;

/// What a list shows.
struct Wanted
{
    MessageQuery query;
    QSet<QString> hidden;
};

Result<ListReading> readFirstRows(const Store &store, const Wanted &wanted)
{
    const MessageQuery &query = wanted.query;
    MessageQuery first = query;
    first.limit = query.limit > 0 ? qMin(query.limit, HeadlineCache::pageSize) : HeadlineCache::pageSize;
    return MessageList(store).find(first).map([&](const QList<MessageHeadline> &headlines) {
        ListReading reading;
        reading.headlines = headlines;
        for (const MessageHeadline &headline : headlines) {
            if (!wanted.hidden.contains(headline.uri))
                reading.uris.append(headline.uri);
        }
        if (!reading.uris.isEmpty())
            reading.changes.inserted.append({0, reading.uris.size()});
        return reading;
    });
}

UriList without(const QSet<QString> &hidden, const UriList &uris)
{
    if (hidden.isEmpty())
        return uris;
    UriList shown;
    for (int row = 0; row < uris.size(); ++row) {
        const QString uri = uris.at(row);
        if (!hidden.contains(uri))
            shown.append(uri);
    }
    return shown;
}

/// Reads all rows of a list that has had the rows \a known.
Result<ListReading> readRows(const Store &store, const Wanted &wanted, const UriList &known)
{
    return MessageList(store).uris(wanted.query, known).map([&](const UriList &uris) {
        const UriList shown = without(wanted.hidden, uris);
        return ListReading{shown, rowChanges(known, shown), {}};
    });
}

/// Where \a rows has \a uris.
QVector<RowRun> runsWith(const QStringList &uris, const UriList &rows)
{
    QByteArrayList texts;
    for (const QString &uri : uris)
        texts.append(uri.toUtf8());
    std::unordered_set<std::string_view> wanted;
    for (const QByteArray &text : qAsConst(texts))
        wanted.insert(std::string_view(text.constData(), size_t(text.size())));
    QVector<RowRun> runs;
    int first = 0;
    for (int row = 0; row <= rows.size(); ++row) {
        if (row < rows.size() && wanted.count(rows.viewAt(row)) > 0)
            continue;
        if (row > first)
            runs.append({first, row - first});
        first = row + 1;
    }
    return runs;
}

} // namespace

class MessageModelPrivate
{
public:
    MessageModelPrivate(MessageModel *model, Archive *archive);

    void setArchive(Archive *source);
    void reset(const MessageQuery &newQuery);
    void hide(const QSet<QString> &uris);
    /// Reads the list again, as soon as a reading that is under way has ended.
    void readAgain();
    /// Reads the headlines of \a uris again when they are shown.
    void readHeadlinesAgain(const QStringList &uris);
    const MessageHeadline *headline(int row);

    MessageQuery query;
    QPointer<Archive> archive;
    QSet<QString> hidden;
    UriList rows;
    bool isLoading = false;
    std::optional<Error> error;

private:
    void connectTo(Archive *source);
    void read();
    void take();
    void apply(const ListReading &reading);
    void remove(const QVector<RowRun> &runs);
    void readAllHeadlinesAgain();
    void replaceHeadlines();
    void tellChange(int first, int count);
    void setLoading(bool isTrue);
    void setError(const std::optional<Error> &newError);

    MessageModel *const q;
    QFutureWatcher<Result<ListReading>> answer;
    QFutureWatcher<Headlines> newHeadlines;
    HeadlineCache headlines;
    bool hasQuery = false;
    bool hasFirstRows = false;
    bool isReading = false;
    bool isStale = false; // Something has changed since the reading began.
    bool areHeadlinesStale = false; // As isStale, of newHeadlines.
};

MessageModelPrivate::MessageModelPrivate(MessageModel *model, Archive *source) : archive(source), q(model)
{
    QObject::connect(&answer, &QFutureWatcherBase::finished, q, [this] { take(); });
    QObject::connect(&newHeadlines, &QFutureWatcherBase::finished, q, [this] { replaceHeadlines(); });
    if (source)
        connectTo(source);
}

void MessageModelPrivate::setArchive(Archive *source)
{
    if (archive)
        QObject::disconnect(archive, nullptr, q, nullptr);
    archive = source;
    // What the other archive answers is not for this one.
    answer.cancel();
    answer.setFuture(Answer());
    newHeadlines.setFuture(QFuture<Headlines>());
    setError({});
    if (source)
        connectTo(source);
    if (hasQuery)
        reset(query);
}

void MessageModelPrivate::connectTo(Archive *source)
{
    for (const auto signal : {&Archive::messagesAdded, &Archive::messagesChanged, &Archive::messagesRemoved})
        QObject::connect(source, signal, q, [this](const QStringList &uris) {
            readHeadlinesAgain(uris);
            readAgain();
        });
    QObject::connect(source, &Archive::readStateChanged, q, [this](const QStringList &uris, bool isRead) {
        readHeadlinesAgain(uris);
        // Messages that are read stay.
        if (query.onlyUnread && !isRead)
            readAgain();
    });
    QObject::connect(source, &Archive::favoritesChanged, q, [this](const QStringList &uris) {
        readHeadlinesAgain(uris);
        if (query.onlyFavorites)
            readAgain();
    });
    // Their titles may be others.
    QObject::connect(source, &Archive::channelsChanged, q, [this] { readAllHeadlinesAgain(); });
    whenWatching(source, q, [this] {
        readAllHeadlinesAgain();
        readAgain();
    });
}

void MessageModelPrivate::reset(const MessageQuery &newQuery)
{
    q->beginResetModel();
    rows = {};
    headlines.clear();
    q->endResetModel();
    query = newQuery;
    hasQuery = true;
    // The first rows found would be all of them.
    hasFirstRows = !query.words.isEmpty();
    setLoading(true);
    read();
}

void MessageModelPrivate::hide(const QSet<QString> &uris)
{
    const QSet<QString> before = hidden;
    hidden = uris;
    const QSet<QString> added = uris - before;
    if (!added.isEmpty())
        remove(runsWith(QStringList(added.cbegin(), added.cend()), rows));
    const bool isWhole = !isReading && query.limit == 0 && uris.contains(before);
    if (hasQuery && !isWhole)
        read();
}

void MessageModelPrivate::readAgain()
{
    if (isReading)
        isStale = true;
    else if (hasQuery)
        read();
}

void MessageModelPrivate::read()
{
    isStale = false;
    isReading = false;
    answer.cancel();
    if (!archive)
        return setLoading(false);
    isReading = true;
    // Nothing is heard of the answer before.
    answer.setFuture(archive->read(
        [wanted = Wanted{query, hidden}, rows = rows, hasFirstRows = hasFirstRows](const Store &store) {
            return hasFirstRows ? readRows(store, wanted, rows) : readFirstRows(store, wanted);
        },
        rows.isEmpty() ? Archive::ShortRead : Archive::LongRead));
}

void MessageModelPrivate::take()
{
    isReading = false;
    const Answer ended = answer.future();
    if (ended.resultCount() == 0)
        return setLoading(false);
    const Result<ListReading> reading = ended.result();
    setError(reading ? std::optional<Error>() : reading.error());
    if (!reading)
        return setLoading(false);
    apply(*reading);
    const bool isWhole = hasFirstRows;
    hasFirstRows = true;
    if (isWhole)
        setLoading(false);
    if (!isWhole || isStale)
        read();
}

void MessageModelPrivate::apply(const ListReading &reading)
{
    headlines.add(reading.headlines);
    remove(reading.changes.removed);
    rows = reading.uris;
    for (auto run = reading.changes.inserted.crbegin(); run != reading.changes.inserted.crend(); ++run)
        rows.remove(run->first, run->count);
    for (const RowRun &run : reading.changes.inserted) {
        q->beginInsertRows({}, run.first, run.first + run.count - 1);
        rows.restore(run.first, run.count, reading.uris);
        q->endInsertRows();
    }
}

void MessageModelPrivate::remove(const QVector<RowRun> &runs)
{
    for (auto run = runs.crbegin(); run != runs.crend(); ++run) {
        q->beginRemoveRows({}, run->first, run->first + run->count - 1);
        rows.remove(run->first, run->count);
        q->endRemoveRows();
    }
}

void MessageModelPrivate::readHeadlinesAgain(const QStringList &uris)
{
    headlines.forget(uris);
    areHeadlinesStale = true;
    const QVector<RowRun> runs = runsWith(uris, rows);
    for (const RowRun &run : runs)
        tellChange(run.first, run.count);
}

/// The headlines of before are shown until the others are there. A view would wait for them otherwise.
void MessageModelPrivate::readAllHeadlinesAgain()
{
    areHeadlinesStale = false;
    newHeadlines.cancel();
    if (archive)
        newHeadlines.setFuture(archive->read(
            [uris = headlines.uris()](const Store &store) { return MessageList(store).headlines(uris); },
            Archive::LongRead));
}

void MessageModelPrivate::replaceHeadlines()
{
    const QFuture<Headlines> ended = newHeadlines.future();
    if (ended.resultCount() == 0)
        return;
    if (areHeadlinesStale)
        return readAllHeadlinesAgain();
    headlines.clear();
    headlines.add(ended.result().value_or(QList<MessageHeadline>()));
    if (!rows.isEmpty())
        tellChange(0, rows.size());
}

void MessageModelPrivate::tellChange(int first, int count)
{
    Q_EMIT q->dataChanged(q->index(first), q->index(first + count - 1));
}

const MessageHeadline *MessageModelPrivate::headline(int row)
{
    if (const MessageHeadline *known = headlines.at(rows, row))
        return known;
    if (!archive)
        return nullptr;
    const Result<Store> store = archive->store();
    const Result<void> read =
        store ? headlines.readPage(*store, rows, row) : Result<void>(Failure(store.error()));
    if (!read)
        setError(read.error());
    return headlines.at(rows, row);
}

void MessageModelPrivate::setLoading(bool isTrue)
{
    if (isLoading == isTrue)
        return;
    isLoading = isTrue;
    Q_EMIT q->loadingChanged();
}

void MessageModelPrivate::setError(const std::optional<Error> &newError)
{
    const QString before = q->errorText();
    error = newError;
    // A view may be asking for data just now.
    if (q->errorText() != before)
        QMetaObject::invokeMethod(q, &MessageModel::errorChanged, Qt::QueuedConnection);
}

MessageModel::MessageModel(Archive *archive, QObject *parent)
    : QAbstractListModel(parent), d(new MessageModelPrivate(this, archive))
{
}

MessageModel::~MessageModel() = default;

Archive *MessageModel::archive() const { return d->archive; }

void MessageModel::setArchive(Archive *archive)
{
    if (d->archive == archive)
        return;
    d->setArchive(archive);
    Q_EMIT archiveChanged();
}

MessageQuery MessageModel::query() const { return d->query; }

void MessageModel::setQuery(const MessageQuery &query)
{
    d->reset(query);
    Q_EMIT queryChanged();
}

QSet<QString> MessageModel::hidden() const { return d->hidden; }

void MessageModel::setHidden(const QSet<QString> &uris)
{
    if (uris != d->hidden)
        d->hide(uris);
}

bool MessageModel::isLoading() const { return d->isLoading; }

std::optional<Error> MessageModel::error() const { return d->error; }

QString MessageModel::errorText() const { return d->error ? d->error->text() : QString(); }

QString MessageModel::uriAt(int row) const
{
    return row >= 0 && row < d->rows.size() ? d->rows.at(row) : QString();
}

int MessageModel::rowOf(const QString &uri) const { return d->rows.indexOf(uri); }

int MessageModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : d->rows.size(); }

QVariant MessageModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == UriRole)
        return d->rows.at(index.row());
    if (role != Qt::DisplayRole && (role < LinkRole || role > IsFavoriteRole))
        return {};
    const MessageHeadline *headline = d->headline(index.row());
    if (!headline)
        return {};
    switch (role) {
    case LinkRole: return headline->link;
    case ChannelsRole: return headline->channels;
    case PublishedRole: return headline->published;
    case IsReadRole: return headline->isRead;
    case IsFavoriteRole: return headline->isFavorite;
    default: return headline->title;
    }
}

QHash<int, QByteArray> MessageModel::roleNames() const
{
    return {{Qt::DisplayRole, "display"}, {UriRole, "uri"},
            {LinkRole, "link"},           {TitleRole, "title"},
            {ChannelsRole, "channels"},   {PublishedRole, "published"},
            {IsReadRole, "isRead"},       {IsFavoriteRole, "isFavorite"}};
}

} // namespace Tidel
