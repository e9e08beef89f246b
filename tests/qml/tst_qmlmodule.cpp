// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedserver.h"
#include "rawserver.h"
#include "readertest.h"

#include <TidelReader/archive.h>
#include <TidelReader/channels.h>
#include <TidelReader/folders.h>
#include <TidelReader/messagemodel.h>
#include <TidelReader/messages.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>

using namespace Tidel;

namespace {

constexpr int patience = 30000; // milliseconds

/// An archive with its models, as a program writes it.
const char archiveText[] = R"(
import Tidel 1.0
Archive {
    id: archive
    property var log: []
    property ChannelModel channels: ChannelModel {
        archive: archive
        showsLists: true
    }
    property MessageModel messages: MessageModel {
        archive: archive
        query.onlyUnread: true
    }
    onFailed: function(text) { log.push("failed: " + text) }
    onDownloaded: function(subject, newMessages) { log.push(subject + " brought " + newMessages) }
    onDownloadFailed: function(subject, reason) { log.push(subject + " failed: " + reason) }
    onFeedsFound: function(address, feeds) {
        log.push(address + " has " + feeds.map(feed => feed.title + " at " + feed.address).join(" and "))
    }
    onReadStateChanged: function(uris, isRead) { log.push((isRead ? "read " : "unread ") + uris) }
    onFavoritesChanged: function(uris, isFavorite) { log.push((isFavorite ? "star " : "no star ") + uris) }
)";

} // namespace

class TestQmlModule : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void models();
    void channelKinds();
    void queryOfARow();
    void queryOfProperties();
    void archiveOfTheProgram();
    void marks();
    void markThatFails();
    void subscribe();
    void refresh();
    void severalFeeds();
    void cancel();

private:
    /// Makes the archive with \a members added to it.
    std::unique_ptr<QObject> load(const QString &members = {});
    QStringList titles(QObject *model) const;
    QStringList log(QObject *archive) const { return archive->property("log").toStringList(); }

    QQmlEngine m_engine;
};

void TestQmlModule::init()
{
    ReaderTestCase::init();
    m_engine.setImportPathList({QStringLiteral(TIDEL_QML_PATH)});
}

std::unique_ptr<QObject> TestQmlModule::load(const QString &members)
{
    QQmlComponent component(&m_engine);
    component.setData(archiveText + members.toUtf8() + "}", QUrl());
    std::unique_ptr<QObject> object(component.create());
    if (object)
        return object;
    QTest::qFail(qPrintable(component.errorString()), __FILE__, __LINE__);
    return std::make_unique<QObject>();
}

QStringList TestQmlModule::titles(QObject *model) const
{
    const auto *rows = qobject_cast<QAbstractItemModel *>(model);
    QStringList titles;
    for (int row = 0; row < rows->rowCount(); ++row)
        titles.append(rows->index(row, 0).data().toString());
    return titles;
}

/// Compares with what the object \a name of the archive shows.
#define WAIT_FOR_TITLES(archive, name, expected)                                                             \
    QTRY_COMPARE_WITH_TIMEOUT(titles((archive)->property(name).value<QObject *>()), QStringList(expected),   \
                              patience)

#define WAIT_FOR_LOG(archive, expected)                                                                      \
    QTRY_COMPARE_WITH_TIMEOUT(log((archive).get()), QStringList(expected), patience)

void TestQmlModule::models()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    VERIFY_OK(Folders(reader()).move(channelUri("news"), "Town"));
    const auto archive = load();
    WAIT_FOR_TITLES(archive, "messages", QStringList({"Title of b", "Title of a"}));
    WAIT_FOR_TITLES(archive, "channels", QStringList({"All messages", "Unread", "Favorites", "Town"}));
}

void TestQmlModule::channelKinds()
{
    const auto archive = load(
        "property var kinds: [ChannelModel.AllKind, ChannelModel.UnreadKind,"
        "ChannelModel.FavoritesKind, ChannelModel.SearchKind, ChannelModel.FolderKind, ChannelModel.ChannelKind]\n"
        "property int read: MessageModel.IsReadRole");
    QCOMPARE(archive->property("kinds").toList(), QVariantList({0, 1, 2, 3, 4, 5}));
    QCOMPARE(archive->property("read").toInt(), int(MessageModel::IsReadRole));
}

void TestQmlModule::queryOfARow()
{
    for (const char *name : {"news", "radio"}) {
        addChannel(name);
        addMessages({QString(name) + "1", QString(name) + "2"}, name, 1);
    }
    const auto archive =
        load("function show(row) { messages.query = channels.query(channels.index(row, 0)) }\n"
             "function showAll() { messages.query = channels.query() }\n"
             "function find(words) {\n"
             "    let query = channels.query()\n"
             "    query.words = words\n"
             "    query.channelUris = [channels.data(channels.index(4, 0), "
             "ChannelModel.UriRole)]\n"
             "    messages.query = query }");
    WAIT_FOR_TITLES(archive, "channels",
                    QStringList({"All messages", "Unread", "Favorites", "news", "radio"}));
    QMetaObject::invokeMethod(archive.get(), "show", Q_ARG(QVariant, 3));
    WAIT_FOR_TITLES(archive, "messages", QStringList({"Title of news2", "Title of news1"}));
    QMetaObject::invokeMethod(archive.get(), "find", Q_ARG(QVariant, "radio1"));
    WAIT_FOR_TITLES(archive, "messages", QStringList("Title of radio1"));
    QMetaObject::invokeMethod(archive.get(), "showAll");
    QTRY_COMPARE_WITH_TIMEOUT(titles(archive->property("messages").value<QObject *>()).size(), 4, patience);
}

/// A program can bind them one by one, and change one of them.
void TestQmlModule::queryOfProperties()
{
    addChannel("news");
    addMessages({"a", "b", "c"}, "news", 1);
    const auto archive = load("property int newest: 2\n"
                              "property MessageModel list: MessageModel {\n"
                              "    archive: archive\n"
                              "    query.limit: newest\n"
                              "    query.since: new Date(Date.UTC(2026, 10, 2))\n"
                              "    query.order: Qt.AscendingOrder }\n"
                              "function showAll() { list.query.since = new Date(NaN) }");
    WAIT_FOR_TITLES(archive, "list", QStringList({"Title of b", "Title of c"}));
    archive->setProperty("newest", 1);
    QTRY_COMPARE_WITH_TIMEOUT(titles(archive->property("list").value<QObject *>()).size(), 1, patience);
}

void TestQmlModule::archiveOfTheProgram()
{
    addChannel("news");
    Archive archive;
    QQmlComponent component(&m_engine);
    component.setData("import Tidel 1.0\nChannelModel { }", QUrl());
    const std::unique_ptr<QObject> model(
        component.createWithInitialProperties({{"archive", QVariant::fromValue(&archive)}}));
    QVERIFY2(model, qPrintable(component.errorString()));
    QTRY_COMPARE_WITH_TIMEOUT(titles(model.get()), QStringList("news"), patience);
}

void TestQmlModule::marks()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    const auto archive = load("function mark(uri) { setRead([uri], true); setFavorite(uri, true) }\n"
                              "function unmark(uri) { setRead([uri], false); setFavorite(uri, false) }");
    WAIT_FOR_TITLES(archive, "messages", QStringList({"Title of b", "Title of a"}));
    const QString uri = messageUri("a");
    QMetaObject::invokeMethod(archive.get(), "mark", Q_ARG(QVariant, uri));
    QTRY_COMPARE_WITH_TIMEOUT(sorted(log(archive.get())), QStringList({"read " + uri, "star " + uri}),
                              patience);
    QVERIFY(Messages(reader()).get(uri)->isFavorite());
    archive->setProperty("log", QVariantList());
    QMetaObject::invokeMethod(archive.get(), "unmark", Q_ARG(QVariant, uri));
    QTRY_COMPARE_WITH_TIMEOUT(sorted(log(archive.get())), QStringList({"no star " + uri, "unread " + uri}),
                              patience);
}

void TestQmlModule::markThatFails()
{
    const auto archive = load("function mark() { setFavorite('urn:message:none', true) }");
    QMetaObject::invokeMethod(archive.get(), "mark");
    QTRY_COMPARE_WITH_TIMEOUT(log(archive.get()).size(), 1, patience);
    QVERIFY2(log(archive.get()).constFirst().startsWith("failed: "),
             qPrintable(log(archive.get()).constFirst()));
}

void TestQmlModule::subscribe()
{
    const auto archive = load("function add(address) { subscribe(address) }");
    QSignalSpy downloading(archive.get(), SIGNAL(downloadingChanged()));
    QCOMPARE(archive->property("progress").toReal(), 1.0);
    const QString path = QStringLiteral(TIDEL_TEST_DATA "/feeds/town-news.xml");
    const QString address = QUrl::fromLocalFile(path).toString();
    QMetaObject::invokeMethod(archive.get(), "add", Q_ARG(QVariant, path));
    QVERIFY(archive->property("downloading").toBool());
    QCOMPARE(archive->property("progress").toReal(), 0.0);
    QTRY_VERIFY_WITH_TIMEOUT(!archive->property("downloading").toBool(), patience);
    QCOMPARE(archive->property("progress").toReal(), 1.0);
    QCOMPARE(downloading.count(), 2);
    QCOMPARE(log(archive.get()).filter(address + " brought ").size(), 1);
    WAIT_FOR_TITLES(archive, "channels", QStringList({"All messages", "Unread", "Favorites", "Town News"}));

    archive->setProperty("log", QVariantList());
    QMetaObject::invokeMethod(archive.get(), "add", Q_ARG(QVariant, path));
    WAIT_FOR_LOG(archive, address + " failed: the feed is already subscribed");
}

void TestQmlModule::refresh()
{
    FeedServer server(QStringLiteral(TIDEL_TEST_DATA "/feeds"));
    QVERIFY(server.isRunning());
    FeedChannel channel;
    channel.setTitle("Town");
    channel.setLink(server.url("/files/town-news.xml"));
    const QString uri = *Channels(reader()).add(channel);
    VERIFY_OK(Channels(reader()).setInterval(uri, 3600));
    const auto archive = load("function refreshAll() { refresh() }\n"
                              "function refreshOne(uri) { refresh([uri]) }\n"
                              "function refreshOld() { refreshDue() }");
    QMetaObject::invokeMethod(archive.get(), "refreshAll");
    QTRY_COMPARE_WITH_TIMEOUT(log(archive.get()).size(), 1, patience);
    QVERIFY2(log(archive.get()).constFirst().startsWith(uri + " brought "),
             qPrintable(log(archive.get()).constFirst()));
    // It is asked for again only if the user wants it.
    server.forgetRequests();
    QMetaObject::invokeMethod(archive.get(), "refreshOld");
    QTRY_VERIFY_WITH_TIMEOUT(!archive->property("downloading").toBool(), patience);
    QCOMPARE(server.requests(), QStringList());
    QMetaObject::invokeMethod(archive.get(), "refreshOne", Q_ARG(QVariant, uri));
    QTRY_VERIFY_WITH_TIMEOUT(log(archive.get()).contains(uri + " brought 0"), patience);
    QCOMPARE(server.requests().size(), 1);
}

void TestQmlModule::severalFeeds()
{
    QTemporaryDir folder;
    QFile page(folder.filePath("page.html"));
    QVERIFY(page.open(QIODevice::WriteOnly));
    page.write("<html><head><title>Page</title>"
               "<link rel=alternate type='application/rss+xml' title=Town href='town-news.xml'>"
               "<link rel=alternate type='application/atom+xml' title=Notes href='notes.xml'>"
               "</head><body></body></html>");
    page.close();
    FeedServer server(folder.path());
    QVERIFY(server.isRunning());
    const auto archive = load("function add(address) { subscribe(address) }");
    QMetaObject::invokeMethod(archive.get(), "add", Q_ARG(QVariant, server.url("/files/page.html")));
    WAIT_FOR_LOG(archive,
                 server.url("/files/page.html") + " has Town at " + server.url("/files/town-news.xml")
                     + " and Notes at " + server.url("/files/notes.xml"));
}

void TestQmlModule::cancel()
{
    RawAnswer silence;
    silence.end = RawAnswer::Hold;
    const RawServer server(silence);
    const auto archive = load("function add(address) { subscribe(address) }");
    QMetaObject::invokeMethod(archive.get(), "add", Q_ARG(QVariant, server.url()));
    QTRY_COMPARE_WITH_TIMEOUT(server.clients(), 1, patience);
    QVERIFY(archive->property("downloading").toBool());
    QMetaObject::invokeMethod(archive.get(), "cancelDownloads");
    QTRY_VERIFY_WITH_TIMEOUT(!archive->property("downloading").toBool(), patience);
    // It has not failed by itself.
    QCOMPARE(log(archive.get()), QStringList());
}

QTEST_GUILESS_MAIN(TestQmlModule)

#include "tst_qmlmodule.moc"
