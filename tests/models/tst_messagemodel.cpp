// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"
#include "rowmirror.h"

#include <soon.h>

#include <TidelReader/archive.h>
#include <TidelReader/messagemodel.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

#include <QFutureWatcher>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QSignalSpy>
#include <QThread>

using namespace Tidel;

namespace {

QString lineOf(const MessageHeadline &headline)
{
    return QStringList({headline.uri, headline.link, headline.title, headline.channels.join('+'),
                        headline.published.toString(Qt::ISODate), headline.isRead ? "read" : "unread",
                        headline.isFavorite ? "favorite" : ""})
        .join(' ');
}

QString lineAt(const QModelIndex &index)
{
    MessageHeadline headline;
    headline.uri = index.data(MessageModel::UriRole).toString();
    headline.link = index.data(MessageModel::LinkRole).toString();
    headline.title = index.data(MessageModel::TitleRole).toString();
    headline.channels = index.data(MessageModel::ChannelsRole).toStringList();
    headline.published = index.data(MessageModel::PublishedRole).toDateTime();
    headline.isRead = index.data(MessageModel::IsReadRole).toBool();
    headline.isFavorite = index.data(MessageModel::IsFavoriteRole).toBool();
    return lineOf(headline);
}

MessageQuery ofChannel(const QString &name)
{
    MessageQuery query;
    query.channelUris.append(channelUri(name));
    return query;
}

MessageQuery unread()
{
    MessageQuery query;
    query.onlyUnread = true;
    return query;
}

MessageQuery withWords(const QString &words)
{
    MessageQuery query;
    query.words = words;
    return query;
}

QString timeOf(int day) { return QString("2026-11-%1T12:00:00Z").arg(day, 2, 10, QChar('0')); }

} // namespace

/// A model and a view of it.
struct ShownList
{
    ShownList(Archive *archive, const MessageQuery &wanted) : model(archive), mirror(&model, lineAt)
    {
        model.setQuery(wanted);
    }

    bool isThere() const { return !model.isLoading(); }
    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < model.rowCount(); ++row)
            names.append(model.uriAt(row).section(':', 2));
        return names;
    }

    MessageModel model;
    RowMirror mirror;
};

void waitFor(const QFuture<Result<void>> &future)
{
    QFutureWatcher<Result<void>> watcher;
    QSignalSpy finished(&watcher, &QFutureWatcherBase::finished);
    watcher.setFuture(future);
    COMPARE_SOON(finished.count(), 1);
}

Result<void> doNothing(const Store &) { return {}; }

/// Waits until \a archive tells every change, and the models know it.
void waitForWatch(Archive *archive) { waitFor(archive->change(doNothing)); }

/// Waits until the models have got what they have asked \a archive for.
void waitForReads(Archive *archive) { waitFor(archive->read(doNothing, Archive::LongRead)); }

#define WAIT_FOR(list) VERIFY_SOON((list).isThere())
#define WAIT_FOR_NAMES(list, expected) COMPARE_SOON((list).names(), expected)

class TestMessageModel : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void beforeTheFirstQuery();
    void roles();
    void otherQuery();
    void order();
    void randomChanges();
    void changesBeforeTheWatch();
    void runsOfRows();
    void rowsKeepTheirIndexes();
    void readMessagesStay();
    void hidden();
    void hiddenWhileReading();
    void hiddenOfALimitedList();
    void otherTitleOfTheChannel();
    void longList();
    void unreadablePage();
    void answerOfAnEarlierQuery();
    void storeThatCannotBeOpened();
    void otherArchive();
    void answerOfAnEarlierArchive();
    void archiveGoesFirst();
    void modelGoesFirst();

private:
    void changeSomething(QRandomGenerator *random);
    QStringList expected(const ShownList &list, const QStringList &shownBefore) const;

    int m_added = 0;
};

void TestMessageModel::beforeTheFirstQuery()
{
    addChannel("news");
    addMessages({"a"}, "news");
    Archive archive;
    const MessageModel model(&archive);
    Q_EMIT archive.messagesAdded({messageUri("a")});
    QVERIFY(!model.isLoading());
    QCOMPARE(model.rowCount(), 0);
}

void TestMessageModel::roles()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    addFavorite("b");
    Archive archive;
    ShownList list(&archive, {});
    QVERIFY(list.model.isLoading());
    WAIT_FOR(list);
    const QModelIndex first = list.model.index(0);
    QCOMPARE(first.data(MessageModel::UriRole).toString(), messageUri("b"));
    QCOMPARE(first.data().toString(), QString("Title of b"));
    QCOMPARE(first.data(MessageModel::TitleRole).toString(), QString("Title of b"));
    QCOMPARE(first.data(MessageModel::LinkRole).toString(), linkOf("b"));
    QCOMPARE(first.data(MessageModel::ChannelsRole).toStringList(), QStringList("news"));
    QCOMPARE(first.data(MessageModel::PublishedRole).toDateTime(),
             QDateTime(QDate(2026, 11, 2), QTime(12, 0), Qt::UTC));
    QCOMPARE(first.data(MessageModel::IsReadRole), QVariant(false));
    QCOMPARE(first.data(MessageModel::IsFavoriteRole), QVariant(true));
    QVERIFY(!first.data(Qt::DecorationRole).isValid());
    QVERIFY(!first.data(MessageModel::IsFavoriteRole + 1).isValid());
    QVERIFY(!list.model.data({}).isValid());
    QCOMPARE(list.model.roleNames().value(MessageModel::IsReadRole), QByteArray("isRead"));
    QCOMPARE(list.model.rowOf(messageUri("a")), 1);
    QCOMPARE(list.model.rowOf(messageUri("c")), -1);
    QCOMPARE(list.model.uriAt(1), messageUri("a"));
    QCOMPARE(list.model.uriAt(2), QString());
    QCOMPARE(list.model.uriAt(-1), QString());
}

void TestMessageModel::otherQuery()
{
    addChannel("news");
    addChannel("radio");
    addMessages({"n1", "n2"}, "news", 1);
    addMessages({"r1"}, "radio", 3);
    Archive archive;
    ShownList list(&archive, ofChannel("news"));
    QSignalSpy changed(&list.model, &MessageModel::queryChanged);
    WAIT_FOR_NAMES(list, QStringList({"n2", "n1"}));
    list.model.setQuery(ofChannel("radio"));
    QCOMPARE(list.model.rowCount(), 0);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(list.model.query().channelUris, QStringList(channelUri("radio")));
    WAIT_FOR_NAMES(list, QStringList("r1"));
}

void TestMessageModel::order()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    addMessages({"u1", "u2"}, "news");
    MessageQuery oldestFirst;
    oldestFirst.order = Qt::AscendingOrder;
    Archive archive;
    ShownList list(&archive, oldestFirst);
    WAIT_FOR(list);
    QCOMPARE(list.names(), QStringList({"u1", "u2", "a", "b"}));
}

void TestMessageModel::changeSomething(QRandomGenerator *random)
{
    const QString message = "m" + QString::number(random->bounded(qMax(1, m_added)));
    const QString uri = messageUri(message);
    const QString channel = random->bounded(2) == 0 ? "news" : "radio";
    const int day = random->bounded(28) + 1;
    const std::function<void()> changes[] = {
        [&] { addMessages({"m" + QString::number(m_added++)}, channel, day); },
        [&] { addMessages({"m" + QString::number(m_added++)}, channel); },
        [&] { store().update(QString("DELETE { <%1> a rdfs:Resource }").arg(uri)); },
        [&] { VERIFY_OK(ReadState(reader()).set({uri}, true)); },
        [&] { VERIFY_OK(ReadState(reader()).set({uri}, false)); },
        [&] { static_cast<void>(Messages(reader()).setFavorite(uri, random->bounded(2) == 0)); },
        [&] {
            store().update(QString("DELETE { <%1> nie:contentCreated ?d ; nie:title ?t } WHERE "
                                   "{ <%1> nie:contentCreated ?d ; nie:title ?t } "
                                   "INSERT { ?m nie:contentCreated '%2' ; nie:title 'Other title' } "
                                   "WHERE { VALUES ?m { <%1> } ?m a mfo:FeedMessage "
                                   "FILTER NOT EXISTS { ?m nie:contentCreated ?any } "
                                   "FILTER NOT EXISTS { ?m nie:title ?some } }")
                               .arg(uri, timeOf(day)));
        },
        [&] {
            store().update(QString("INSERT { ?m nie:isLogicalPartOf <%2> } "
                                   "WHERE { VALUES ?m { <%1> } ?m a mfo:FeedMessage }")
                               .arg(uri, channelUri(channel)));
        },
    };
    changes[random->bounded(int(std::size(changes)))]();
}

/// What the store says of the list, with the messages of \a shownBefore that were read since.
QStringList TestMessageModel::expected(const ShownList &list, const QStringList &shownBefore) const
{
    MessageQuery query = list.model.query();
    query.onlyUnread = false;
    const auto headlines = MessageList(reader()).find(query);
    if (!headlines)
        return {headlines.error().text()};
    QStringList lines;
    for (const MessageHeadline &headline : *headlines) {
        if (!list.model.query().onlyUnread || !headline.isRead || shownBefore.contains(headline.uri))
            lines.append(lineOf(headline));
    }
    return lines;
}

void TestMessageModel::randomChanges()
{
    addChannel("news");
    addChannel("radio");
    const int seed = int(QRandomGenerator::global()->bounded(10000));
    QRandomGenerator random{quint32(seed)};
    for (int i = 0; i < 30; ++i)
        changeSomething(&random);
    MessageQuery oldest = ofChannel("news");
    oldest.order = Qt::AscendingOrder;
    MessageQuery favorites;
    favorites.onlyFavorites = true;
    MessageQuery late;
    late.since = QDateTime(QDate(2026, 11, 15), QTime(12, 0), Qt::UTC);
    Archive archive;
    std::vector<std::unique_ptr<ShownList>> lists;
    for (const MessageQuery &query :
         {MessageQuery(), oldest, unread(), favorites, late, withWords("title")}) {
        lists.push_back(std::make_unique<ShownList>(&archive, query));
        WAIT_FOR(*lists.back());
    }
    std::vector<QStringList> shown;
    for (const auto &list : lists)
        shown.push_back(messageUris(list->names()));
    waitForWatch(&archive);
    for (int step = 0; step < 40; ++step) {
        changeSomething(&random);
        for (size_t i = 0; i < lists.size(); ++i) {
            const QStringList lines = expected(*lists[i], shown[i]);
            const bool isSame =
                QTest::qWaitFor([&] { return lists[i]->mirror.rows() == lines; }, longestWait);
            const QString where = QString("seed %1, step %2, list %3:\n").arg(seed).arg(step).arg(i);
            QVERIFY2(
                isSame,
                qPrintable(where + lists[i]->mirror.rows().join('\n') + "\ninstead of\n" + lines.join('\n')));
            shown[i].clear();
            for (const QString &line : lines)
                shown[i].append(line.section(' ', 0, 0));
            QCOMPARE(lists[i]->mirror.resets(), 1);
        }
    }
}

/// The archive cannot tell what has changed before it has looked at the store for the first time.
void TestMessageModel::changesBeforeTheWatch()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    QSemaphore mayGoOn;
    StatementGate::setJudge([&](const QString &) {
        if (QThread::currentThread()->objectName() == "tidel-watch")
            mayGoOn.acquire();
        return StatementGate::Pass;
    });
    Archive archive;
    ShownList list(&archive, {});
    WAIT_FOR(list);
    store().update(QString("DELETE { <%1> a rdfs:Resource }").arg(messageUri("a")));
    store().update(QString("DELETE { <%1> nie:title 'Title of b' } INSERT { <%1> nie:title 'Other' }")
                       .arg(messageUri("b")));
    mayGoOn.release(1000);
    WAIT_FOR_NAMES(list, QStringList("b"));
    VERIFY_SOON(list.mirror.rows().constFirst().contains(" Other "));
}

void TestMessageModel::runsOfRows()
{
    addChannel("news");
    addChannel("radio");
    addMessages({"first"}, "news", 20);
    const QStringList many = numberedNames("a", 50);
    addMessages(many, "radio");
    addMessages({"last"}, "radio");
    Archive archive;
    ShownList list(&archive, {});
    WAIT_FOR(list);
    waitForWatch(&archive);
    const int before = list.mirror.changes();
    store().update(
        QString("DELETE { <%1> a rdfs:Resource }").arg(messageUris(many).join("> a rdfs:Resource . <")));
    WAIT_FOR_NAMES(list, QStringList({"first", "last"}));
    QCOMPARE(list.mirror.changes(), before + 1);
    addMessages(many, "radio", 0);
    COMPARE_SOON(list.model.rowCount(), 52);
    QCOMPARE(list.mirror.changes(), before + 2);
}

void TestMessageModel::rowsKeepTheirIndexes()
{
    addChannel("news");
    addMessages({"a", "b", "c"}, "news", 10);
    Archive archive;
    ShownList list(&archive, {});
    WAIT_FOR(list);
    waitForWatch(&archive);
    const QPersistentModelIndex a = list.model.index(2);
    const QPersistentModelIndex b = list.model.index(1);
    addMessages({"newer"}, "news", 20);
    addMessages({"older"}, "news", 1);
    WAIT_FOR_NAMES(list, QStringList({"newer", "c", "b", "a", "older"}));
    QCOMPARE(a.row(), 3);
    QCOMPARE(a.data().toString(), QString("Title of a"));
    store().update(QString("DELETE { <%1> a rdfs:Resource }").arg(messageUri("b")));
    WAIT_FOR_NAMES(list, QStringList({"newer", "c", "a", "older"}));
    QVERIFY(!b.isValid());
    QCOMPARE(a.row(), 2);
}

void TestMessageModel::readMessagesStay()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    Archive archive;
    ShownList list(&archive, unread());
    WAIT_FOR(list);
    waitForWatch(&archive);
    VERIFY_OK(ReadState(reader()).set({messageUri("a")}, true));
    VERIFY_SOON(list.model.index(1).data(MessageModel::IsReadRole).toBool());
    addMessages({"between"}, "news", 1);
    WAIT_FOR_NAMES(list, QStringList({"b", "between", "a"}));
    list.model.setQuery(unread());
    WAIT_FOR_NAMES(list, QStringList({"b", "between"}));
}

/// Hidden rows go at once. They come back to their places.
void TestMessageModel::hidden()
{
    addChannel("news");
    addMessages({"a", "b", "c", "d", "e"}, "news", 1);
    Archive archive;
    ShownList list(&archive, ofChannel("news"));
    WAIT_FOR(list);
    QCOMPARE(list.names(), QStringList({"e", "d", "c", "b", "a"}));
    const QPersistentModelIndex a = list.model.index(4);
    list.model.setHidden({messageUri("b"), messageUri("e"), messageUri("d"), "urn:unknown"});
    QCOMPARE(list.names(), QStringList({"c", "a"}));
    QCOMPARE(a.row(), 1);
    QVERIFY(!list.model.isLoading());
    list.model.setHidden({messageUri("b")});
    QCOMPARE(list.model.hidden(), QSet<QString>({messageUri("b")}));
    WAIT_FOR_NAMES(list, QStringList({"e", "d", "c", "a"}));
    QCOMPARE(a.row(), 3);
    list.model.setQuery(ofChannel("news"));
    WAIT_FOR(list);
    QCOMPARE(list.names(), QStringList({"e", "d", "c", "a"}));
    list.model.setHidden({});
    WAIT_FOR_NAMES(list, QStringList({"e", "d", "c", "b", "a"}));
    QCOMPARE(list.mirror.rows().size(), 5);
}

/// What is under way when rows are hidden knows nothing of it.
void TestMessageModel::hiddenWhileReading()
{
    addChannel("news");
    addMessages(numberedNames("m", 250), "news");
    Archive archive;
    ShownList list(&archive, ofChannel("news"));
    list.model.setHidden({messageUri("m7")});
    WAIT_FOR(list);
    QCOMPARE(list.names().size(), 249);
    QVERIFY(!list.names().contains("m7"));
    list.model.setHidden({});
    list.model.setHidden({messageUri("m8")});
    VERIFY_SOON(list.names().contains("m7"));
    QCOMPARE(list.names().size(), 249);
    QVERIFY(!list.names().contains("m8"));
}

/// The next message takes the place.
void TestMessageModel::hiddenOfALimitedList()
{
    addChannel("news");
    addMessages({"a", "b", "c"}, "news", 1);
    Archive archive;
    MessageQuery newest = ofChannel("news");
    newest.limit = 2;
    ShownList list(&archive, newest);
    WAIT_FOR_NAMES(list, QStringList({"c", "b"}));
    list.model.setHidden({messageUri("c")});
    QCOMPARE(list.names(), QStringList("b"));
}

void TestMessageModel::otherTitleOfTheChannel()
{
    addChannel("news");
    addMessages({"a"}, "news");
    Archive archive;
    ShownList list(&archive, {});
    WAIT_FOR(list);
    waitForWatch(&archive);
    store().update(QString("DELETE { <%1> nie:title 'news' } INSERT { <%1> nie:title 'Other' }")
                       .arg(channelUri("news")));
    VERIFY_SOON(list.mirror.rows().constFirst().contains(" Other "));
}

void TestMessageModel::longList()
{
    addChannel("news");
    const QStringList names = numberedNames("a", 3000);
    for (int from = 0; from < names.size(); from += 500)
        addMessages(names.mid(from, 500), "news");
    Archive archive;
    MessageModel model(&archive);
    waitForWatch(&archive);
    model.setQuery(ofChannel("news"));
    VERIFY_SOON(!model.isLoading());
    QCOMPARE(model.rowCount(), names.size());
    const auto statementsOf = [&model](int first, int last, int step) {
        StatementGate::reset();
        for (int row = first; row != last + step; row += step) {
            if (lineAt(model.index(row)).section(' ', 0, 0) != messageUri("a" + QString::number(3000 - row)))
                return -1;
        }
        // The archive may look for changes meanwhile.
        return int(StatementGate::statements().filter("SELECT ?m ?link ?title ?date").size());
    };
    // The first rows are known.
    QCOMPARE(statementsOf(0, 99, 1), 0);
    QCOMPARE(statementsOf(1550, 1550, 1), 1);
    QCOMPARE(statementsOf(1500, 1599, 1), 0);
    QCOMPARE(statementsOf(100, 2999, 1), 28);
    // The last 2,000 are known.
    QCOMPARE(statementsOf(2999, 1000, -1), 0);
    QCOMPARE(statementsOf(999, 0, -1), 10);
    // They are shown until they have been read again.
    QSemaphore free;
    const auto held = archive.read(
        [&free](const Store &) {
            free.acquire();
            return Result<void>();
        },
        Archive::LongRead);
    Q_EMIT archive.channelsChanged({channelUri("news")});
    QCOMPARE(statementsOf(0, 99, 1), 0);
    free.release();
    waitForReads(&archive);
    QCOMPARE(statementsOf(0, 99, 1), 0);
}

void TestMessageModel::unreadablePage()
{
    addChannel("news");
    addMessages(numberedNames("a", 150), "news");
    Archive archive;
    MessageModel model(&archive);
    QSignalSpy failed(&model, &MessageModel::errorChanged);
    waitForWatch(&archive);
    model.setQuery({});
    VERIFY_SOON(!model.isLoading());
    StatementGate::setJudge([](const QString &statement) {
        return statement.contains("VALUES ?m") ? StatementGate::Refuse : StatementGate::Pass;
    });
    QCOMPARE(model.index(120).data(), QVariant(QString()));
    QCOMPARE(model.index(120).data(MessageModel::UriRole).toString(), messageUri("a30"));
    QVERIFY(model.error());
    QVERIFY(model.errorText().startsWith("could not read the list of messages from the store: "));
    COMPARE_SOON(failed.count(), 1);
    // It is not tried again and again.
    StatementGate::reset();
    QCOMPARE(model.index(121).data(), QVariant(QString()));
    QCOMPARE(StatementGate::statements().filter("VALUES ?m"), QStringList());
    model.setQuery({});
    VERIFY_SOON(!model.isLoading());
    QVERIFY(!model.error());
    QCOMPARE(model.index(120).data().toString(), QString("Title of a30"));
}

void TestMessageModel::answerOfAnEarlierQuery()
{
    addChannel("news");
    addChannel("radio");
    addMessages({"n"}, "news");
    addMessages({"r"}, "radio");
    Archive archive;
    QSemaphore begun;
    QSemaphore mayGoOn;
    StatementGate::setJudge([&](const QString &statement) {
        if (statement.contains(channelUri("news"))) {
            begun.release();
            mayGoOn.acquire();
        }
        return StatementGate::Pass;
    });
    ShownList list(&archive, ofChannel("news"));
    begun.acquire();
    list.model.setQuery(ofChannel("radio"));
    mayGoOn.release(100);
    WAIT_FOR(list);
    QCOMPARE(list.names(), QStringList("r"));
    QCOMPARE(list.mirror.changes(), 1);
}

void TestMessageModel::storeThatCannotBeOpened()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("file");
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    qputenv("XDG_DATA_HOME", QFile::encodeName(file));
    Archive archive;
    ShownList list(&archive, {});
    QSignalSpy failed(&list.model, &MessageModel::errorChanged);
    WAIT_FOR(list);
    QCOMPARE(list.model.error()->kind(), Error::StoreUnavailable);
    QCOMPARE(list.model.rowCount(), 0);
    COMPARE_SOON(failed.count(), 1);
}

void TestMessageModel::otherArchive()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    Archive archive;
    ShownList list(nullptr, {});
    QCOMPARE(list.model.rowCount(), 0);
    QVERIFY(!list.model.isLoading());
    QSignalSpy changed(&list.model, &MessageModel::archiveChanged);
    list.model.setArchive(&archive);
    QCOMPARE(list.model.archive(), &archive);
    WAIT_FOR_NAMES(list, QStringList({"b", "a"}));
    list.model.setArchive(&archive);
    QCOMPARE(list.mirror.resets(), 2);

    Archive other;
    list.model.setArchive(&other);
    QCOMPARE(list.model.rowCount(), 0);
    WAIT_FOR_NAMES(list, QStringList({"b", "a"}));
    waitForWatch(&other);
    waitForReads(&other);
    // The first one has nothing to say any more.
    QSignalSpy told(&list.model, &MessageModel::dataChanged);
    Q_EMIT archive.channelsChanged({channelUri("news")});
    waitForReads(&archive);
    QCOMPARE(told.count(), 0);
    Q_EMIT other.channelsChanged({channelUri("news")});
    waitForReads(&other);
    QCOMPARE(told.count(), 1);

    list.model.setArchive(nullptr);
    QCOMPARE(list.model.rowCount(), 0);
    QVERIFY(!list.model.isLoading());
    QCOMPARE(changed.count(), 3);
}

/// What the archive has answered and nobody has taken yet.
void TestMessageModel::answerOfAnEarlierArchive()
{
    addChannel("news");
    addMessages({"a"}, "news");
    Archive archive;
    ShownList list(&archive, {});
    const auto next = archive.read([](const Store &) { return Result<void>(); });
    while (!next.isFinished())
        QThread::msleep(1);
    list.model.setArchive(nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(list.mirror.changes(), 0);
}

void TestMessageModel::archiveGoesFirst()
{
    addChannel("news");
    addMessages(numberedNames("a", 150), "news");
    auto archive = std::make_unique<Archive>();
    MessageModel shown(archive.get());
    waitForWatch(archive.get());
    shown.setQuery({});
    VERIFY_SOON(!shown.isLoading());
    MessageModel loading(archive.get());
    loading.setQuery({});
    archive->close();
    VERIFY_SOON(!loading.isLoading());
    archive.reset();
    QCOMPARE(shown.index(0).data().toString(), QString("Title of a150"));
    QCOMPARE(shown.index(149).data(MessageModel::UriRole).toString(), messageUri("a1"));
    QVERIFY(!shown.index(149).data().isValid());
    shown.setQuery({});
    QVERIFY(!shown.isLoading());
    QCOMPARE(shown.rowCount(), 0);
}

void TestMessageModel::modelGoesFirst()
{
    addChannel("news");
    addMessages({"a"}, "news");
    Archive archive;
    auto model = std::make_unique<MessageModel>(&archive);
    model->setQuery({});
    model.reset();
    const auto next = archive.read([](const Store &) { return Result<void>(); });
    VERIFY_SOON(next.isFinished());
    Q_EMIT archive.messagesAdded({messageUri("a")});
}

QTEST_GUILESS_MAIN(TestMessageModel)

#include "tst_messagemodel.moc"
