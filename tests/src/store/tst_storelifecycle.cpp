// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QSparqlConnection>

#include <QFile>
#include <QMetaMethod>
#include <QtTest>

#include <type_traits>

static_assert(std::is_base_of_v<QObject, FeedTrackerSparql>);
static_assert(!std::is_default_constructible_v<FeedTrackerSparql>, "only instance() creates an object");
static_assert(!std::is_copy_constructible_v<FeedTrackerSparql>);
static_assert(!std::is_copy_assignable_v<FeedTrackerSparql>);
static_assert(sizeof(FeedTrackerSparql) == sizeof(QObject) + sizeof(void *),
              "the connection is its only member");

namespace {

const char signalSignature[] = "enclosuresToBeDeleted(QList<FeedEnclosure>&)";

// Read while the program starts, before there is an instance.
const QStringList keysAtLoad = {FeedTrackerSparql::LinkKey, FeedTrackerSparql::TitleKey,
                                FeedTrackerSparql::LastModifiedTimeKey};

QStringList birth(const QString &driverMessage = "QTRACKER_DIRECT : Driver found")
{
    return {debugLine("instance", {"object init"}), criticalLine("FeedTrackerSparql", {driverMessage})};
}

QStringList death()
{
    return {debugLine("releaseInstance", {"object de-init"}),
            debugLine("~FeedTrackerSparql", {"QTRACKER_DIRECT: de-init"})};
}

QStringList createInstance()
{
    return journalOf([] { FeedTrackerSparql::instance(); });
}

QStringList releaseInstance()
{
    return journalOf([] { FeedTrackerSparql::releaseInstance(); });
}

FeedChannel channel()
{
    FeedChannel result;
    result.setLink("http://example.org/feed");
    result.setTitle("Example");
    return result;
}

FeedEnclosure enclosure(const QString &remoteUrl = "http://example.org/1.ogg")
{
    FeedEnclosure result;
    result.setRemoteUrl(remoteUrl);
    return result;
}

/// A receiver that is connected by name and changes the list.
class Remover : public QObject
{
    Q_OBJECT

public:
    int calls = 0;

public Q_SLOTS:
    void removeFirst(QList<FeedEnclosure> &enclosureList)
    {
        ++calls;
        enclosureList.removeFirst();
    }
};

} // namespace

class TestStoreLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void keysExistBeforeAnyInstance();

    void firstInstanceIsTraced();
    void secondCallReturnsTheSameInstanceSilently();
    void releaseIsTraced();
    void releaseWithoutInstanceIsSilent();
    void secondReleaseIsSilent();
    void instanceAfterReleaseIsANewOne();
    void newInstanceSeesTheSameStore();
    void tracesAreBuiltAsLogReadersExpect();
    void instanceHasNoParent();

    void connectionIsMadeOnceWithDefaultOptions();
    void connectionIsFreedByTheEventLoopOnly();

    void storeThatCannotBeOpened();
    void operationWithoutAStore_data();
    void operationWithoutAStore();

    void readsWaitForTheStore();
    void writesWaitForTheStore();
    void deletionsWaitForTheStore();
    void failuresAreWaitedForToo();

    void metaObjectHasOneSignal();
    void metaCastAnswersForItsName();
    void metaCallEmitsTheSignal();
    void metaCallLeavesOtherCallsAlone_data();
    void metaCallLeavesOtherCallsAlone();
    void receiverByNameChangesTheCallersList();
    void signalByNamePassesTheCallersList();

private:
    std::unique_ptr<MessageLog> m_silence;
    std::unique_ptr<TestStore> m_store;
};

void TestStoreLifecycle::init()
{
    m_silence = std::make_unique<MessageLog>();
    m_store = std::make_unique<TestStore>();
    StatementGate::reset();
}

void TestStoreLifecycle::cleanup()
{
    m_store.reset();
    m_silence.reset();
}

void TestStoreLifecycle::keysExistBeforeAnyInstance()
{
    QCOMPARE(keysAtLoad, QStringList({"1", "2", "3"}));
    QCOMPARE(FeedTrackerSparql::LinkKey, QString("1"));
    QCOMPARE(FeedTrackerSparql::TitleKey, QString("2"));
    QCOMPARE(FeedTrackerSparql::LastModifiedTimeKey, QString("3"));
}

void TestStoreLifecycle::firstInstanceIsTraced() { QCOMPARE(createInstance(), birth()); }

void TestStoreLifecycle::secondCallReturnsTheSameInstanceSilently()
{
    FeedTrackerSparql *first = nullptr;
    FeedTrackerSparql *second = nullptr;
    const QStringList journal = journalOf([&] {
        first = FeedTrackerSparql::instance();
        second = FeedTrackerSparql::instance();
    });
    QVERIFY(first);
    QCOMPARE(second, first);
    QCOMPARE(journal, birth());
    QCOMPARE(createInstance(), QStringList());
}

void TestStoreLifecycle::releaseIsTraced()
{
    const QPointer<FeedTrackerSparql> instance = FeedTrackerSparql::instance();
    QCOMPARE(releaseInstance(), death());
    QVERIFY(instance.isNull());
}

void TestStoreLifecycle::releaseWithoutInstanceIsSilent() { QCOMPARE(releaseInstance(), QStringList()); }

void TestStoreLifecycle::secondReleaseIsSilent()
{
    FeedTrackerSparql::instance();
    FeedTrackerSparql::releaseInstance();
    QCOMPARE(releaseInstance(), QStringList());
}

void TestStoreLifecycle::instanceAfterReleaseIsANewOne()
{
    FeedTrackerSparql::instance()->allChannels();
    const QPointer<QSparqlConnection> first = StatementGate::connection();
    FeedTrackerSparql::releaseInstance();
    QCOMPARE(createInstance(), birth());
    FeedTrackerSparql::instance()->allChannels();
    QVERIFY(StatementGate::connection());
    QVERIFY(StatementGate::connection() != first);
}

void TestStoreLifecycle::newInstanceSeesTheSameStore()
{
    const QString uri = FeedTrackerSparql::instance()->addChannel(channel());
    QVERIFY(!uri.isEmpty());
    FeedTrackerSparql::releaseInstance();
    // The first connection is still open, because the event loop has not run.
    QCOMPARE(FeedTrackerSparql::instance()->allChannelUrls(), QStringList(uri));
    QCOMPARE(FeedTrackerSparql::instance()->addChannel(channel()), QString());
}

void TestStoreLifecycle::tracesAreBuiltAsLogReadersExpect()
{
    MessageLog log;
    FeedTrackerSparql::instance();
    FeedTrackerSparql::releaseInstance();
    const std::vector<LoggedMessage> messages = log.take();
    QCOMPARE(messages.size(), size_t(4));
    for (const LoggedMessage &message : messages)
        QCOMPARE(message.parts().size(), 6);

    QStringList parts = messages.front().parts();
    QVERIFY(parts.at(2).toInt() > 0);
    parts[2] = "line";
    QCOMPARE(parts,
             QStringList({"Tracker", "src/feedtrackersparql.cpp", "line",
                          "static FeedTrackerSparql* FeedTrackerSparql::instance()", "instance",
                          " object init "}));
    QCOMPARE(messages.at(1).signature(), QString("FeedTrackerSparql::FeedTrackerSparql()"));
    QCOMPARE(messages.at(1).parts().last(), QString(" QTRACKER_DIRECT : Driver found "));
    QCOMPARE(messages.at(2).signature(), QString("static void FeedTrackerSparql::releaseInstance()"));
    QCOMPARE(messages.at(3).signature(), QString("virtual FeedTrackerSparql::~FeedTrackerSparql()"));
    QCOMPARE(messages.at(3).function(), QString("~FeedTrackerSparql"));
}

void TestStoreLifecycle::instanceHasNoParent() { QVERIFY(!FeedTrackerSparql::instance()->parent()); }

void TestStoreLifecycle::connectionIsMadeOnceWithDefaultOptions()
{
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    tracker->allChannels();
    const QPointer<QSparqlConnection> connection = StatementGate::connection();
    QVERIFY(connection);
    QCOMPARE(connection->driverName(), QString("QTRACKER_DIRECT"));
    QVERIFY(connection->options().databaseName().isEmpty());
    QVERIFY(!connection->parent());
    tracker->allChannelUrls();
    tracker->addEnclosures({}, "urn:message");
    QCOMPARE(StatementGate::connection(), connection);
    QVERIFY(QFile::exists(m_store->dataFolder() + "/tidel/store"));
}

void TestStoreLifecycle::connectionIsFreedByTheEventLoopOnly()
{
    FeedTrackerSparql::instance()->allChannels();
    const QPointer<QSparqlConnection> connection = StatementGate::connection();
    FeedTrackerSparql::releaseInstance();
    QVERIFY(connection);
    QVERIFY(connection->isValid());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!connection);
}

void TestStoreLifecycle::storeThatCannotBeOpened()
{
    QFile file(m_store->dataFolder() + "/file");
    QVERIFY(file.open(QIODevice::WriteOnly));
    qputenv("XDG_DATA_HOME", file.fileName().toLocal8Bit());

    QCOMPARE(createInstance(), birth("QTRACKER_DIRECT : Driver not found"));
    QVERIFY(FeedTrackerSparql::instance());
    QCOMPARE(createInstance(), QStringList());
    QCOMPARE(FeedTrackerSparql::instance()->allChannels().size(), 0);
    QCOMPARE(releaseInstance(), death());
}

void TestStoreLifecycle::operationWithoutAStore_data()
{
    addFailureColumns();
    const auto row = [](const char *name, const Operation &operation, const QStringList &journal) {
        addFailureRow(name, operation, {}, journal);
    };
    const auto tracker = [] { return FeedTrackerSparql::instance(); };
    const auto failure = [](const char *function, const QString &message, const QString &statement) {
        return QStringList{selectLine(statement), criticalLine(function, {message, quoted(statement)})};
    };
    namespace S = Statements;
    row(
        "allChannels", [=] { return tracker()->allChannels().isEmpty(); },
        failure("allChannels", "Executing query failed: returning empty list", S::allChannels()));
    row(
        "allChannelUrls", [=] { return tracker()->allChannelUrls().isEmpty(); },
        failure("allChannelUrls", "Executing query failed: returning empty list", S::allChannelUrls()));
    row(
        "channelForUri", [=] { return tracker()->channelForUri("urn:c").uri().isEmpty(); },
        QStringList(debugLine("channelForUri", {"Prepared Query: ", quoted(S::channelForUri("urn:c"))}))
            + failure("channelForUri", "Result not retrieved: returning empty channel",
                      S::channelForUri("urn:c")));
    row(
        "channelType", [=] { return tracker()->channelType("urn:c").isEmpty(); },
        failure("channelType", "Executing query failed: returning empty channel", S::channelType("urn:c")));
    row(
        "messagesForChannel", [=] { return tracker()->messagesForChannel("urn:c").isEmpty(); },
        failure("messagesForChannel", "Query Execution Failed", S::messagesForChannel("urn:c")));
    row(
        "enclosuresForMessage", [=] { return tracker()->enclosuresForMessage("urn:m").isEmpty(); },
        failure("enclosuresForMessage", "Query Execution Failed", S::enclosuresForMessage("urn:m")));
    row(
        "enclosureForUri", [=] { return tracker()->enclosureForUri("urn:e").uri().isEmpty(); },
        failure("enclosureForUri", "Executing query failed: returning empty enclosure",
                S::enclosureForUri("urn:e")));
    row(
        "allMessageUrls", [=] { return tracker()->allMessageUrls("urn:c").isEmpty(); },
        failure("allMessageUrls", "Executing query failed: returning empty enclosure",
                S::allMessageUrls("urn:c")));
    row(
        "messageLinksOfChannel", [=] { return tracker()->messageLinksOfChannel("urn:c").isEmpty(); },
        failure("messageLinksOfChannel", "Executing query failed: returning empty list ",
                S::messageLinksOfChannel("urn:c")));
    row(
        "latestPostPublishedTime", [=] { return !tracker()->latestPostPublishedTime("urn:c").isValid(); },
        failure("latestPostPublishedTime", "Executing query failed: returning empty enclosure",
                S::latestPostPublishedTime("urn:c")));

    const QString link = "http://example.org/feed";
    row(
        "addChannel", [=] { return tracker()->addChannel(channel()).isEmpty(); },
        QStringList(debugLine("addChannel", {quoted(S::channelLookup(link))}))
            + failure("addChannel", "Query Execution Failed", S::channelLookup(link)));
    row(
        "addMessages", [=] { return !tracker()->addMessages({FeedMessage()}, "urn:c"); },
        failure("addMessages", "Query Execution Failed", S::messageLookup(QString())));
    const QString url = "http://example.org/1.ogg";
    row(
        "addEnclosures", [=] { return !tracker()->addEnclosures({enclosure(url)}, "urn:m"); },
        failure("addEnclosures", "Query Execution Failed", S::enclosureLookup(url))
            + QStringList(
                {insertLine(""), criticalLine("addEnclosures", {"Query Execution failed", "\"\""})}));
    row(
        "updateEnclosure", [=] { return !tracker()->updateEnclosure(enclosure(url)); },
        QStringList(debugLine("updateEnclosure", {quoted(S::enclosureToUpdate(url))}))
            + failure("updateEnclosure", "Invalid mfo:remoteLink", S::enclosureToUpdate(url)));

    row(
        "deletableMessageCount", [=] { return tracker()->deletableMessageCount("urn:c") == 0; },
        failure("deletableMessageCount", "Executing query failed: returning empty enclosure",
                S::deletableMessageCount("urn:c")));
    row(
        "deletableMessages", [=] { return tracker()->deletableMessages("urn:c", 3).isEmpty(); },
        failure("deletableMessages", "Executing query failed: returning empty enclosure",
                S::deletableMessages("urn:c", 3)));

    FeedChannel stored;
    stored.setUri("urn:c");
    row(
        "updateChannel", [=] { return !tracker()->updateChannel(stored); },
        failure("updateChannel", "Query Execution Failed - get Channel", S::channelToUpdate("urn:c")));
    row(
        "editChannel",
        [=] {
            return !tracker()->editChannel("urn:c", {{FeedTrackerSparql::TitleKey, "T"}});
        },
        QStringList(debugLine("editChannel", {quoted(S::channelToEdit("urn:c"))}))
            + failure("editChannel", "Query Execution Failed", S::channelToEdit("urn:c")));

    const auto returning = [](const std::function<void()> &operation) {
        return [operation] {
            operation();
            return true;
        };
    };
    row("deleteChannel", returning([=] { tracker()->deleteChannel("urn:c"); }),
        QStringList(debugLine("deleteChannel", {quoted(S::channelToDelete("urn:c"))}))
            + failure("deleteChannel", "Query Execution Failed", S::channelToDelete("urn:c")));
    row("deleteAllChannels", returning([=] { tracker()->deleteAllChannels(); }),
        failure("allChannelUrls", "Executing query failed: returning empty list", S::allChannelUrls()));
    row("deleteMessage", returning([=] { tracker()->deleteMessage("urn:m", "urn:c"); }),
        QStringList(debugLine("deleteMessage", {quoted(S::messageToDelete("urn:m", "urn:c"))}))
            + failure("deleteMessage", "query execution failed", S::messageToDelete("urn:m", "urn:c")));
    row(
        "deleteMessages", [=] { return !tracker()->deleteMessages("urn:c"); },
        failure("deleteMessages(const QString&)", "Query execution failed ", S::messagesToDelete("urn:c")));
    row("deleteEnclosures", returning([=] { tracker()->deleteEnclosures(QString("urn:m")); }),
        failure("deleteEnclosures(const QString&)", "Query execution failed ",
                S::enclosuresToDelete("urn:m")));
    row("deleteEnclosures of a list",
        returning([=] { tracker()->deleteEnclosures(QList<QUrl>({QUrl("urn:e")})); }),
        failure("deleteEnclosures(QList<QUrl>)", "Not able to find enclosure information",
                S::enclosureToDelete("urn:e"))
            + QStringList(debugLine("deleteEnclosures(QList<QUrl>)", {"No enclosures found"})));
    row("deleteChannelImage", returning([=] { tracker()->deleteChannelImage("urn:c"); }),
        failure("deleteChannelImage", "Query Execution Failed", S::imageFile("urn:c")));
    row("deleteChannelImageIfNotInUse",
        returning([=] { tracker()->deleteChannelImageIfNotInUse("urn:c", "/image.png"); }),
        failure("deleteChannelImageIfNotInUse", "Query Execution Failed", S::imageFile("urn:c")));
    const QString orphans = S::orphanMessageDeletion();
    row("deleteOrphans", returning([=] { tracker()->deleteOrphans(); }),
        QStringList({deleteLine(orphans),
                     criticalLine("deleteOrphanMessages", {"Error in query execution: ", quoted(orphans)})})
            + failure("deleteOrphanEnclosures", "Query preparation failed: ", S::orphanEnclosures()));
}

void TestStoreLifecycle::operationWithoutAStore()
{
    QFile file(m_store->dataFolder() + "/file");
    QVERIFY(file.open(QIODevice::WriteOnly));
    qputenv("XDG_DATA_HOME", file.fileName().toLocal8Bit());
    FeedTrackerSparql::instance();
    checkFailingOperation();
}

/// Makes all later results incomplete until waitForFinished() is called.
static void makeResultsLate()
{
    StatementGate::setJudge([](const QString &) { return StatementGate::Late; });
}

void TestStoreLifecycle::readsWaitForTheStore()
{
    m_store->update("INSERT { <urn:c> a mfo:FeedChannel ; nie:title 'T' ; nie:characterSet 'rss' . "
                    "<urn:m> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c> ; nie:title 'T' ; "
                    "nie:description 'D' ; nie:subject 'S' ; nie:links <http://example.org/1> ; "
                    "mfo:downloadedTime '2020-01-02T10:00:00Z' ; nie:contentCreated '2020-01-01T10:00:00Z' . "
                    "<urn:e> a mfo:Enclosure ; nie:isLogicalPartOf <urn:m> ; nie:contentSize 4 ; "
                    "mfo:remoteLink <http://example.org/1.ogg> ; mfo:localLink <urn:l> ; nie:identifier 3 ; "
                    "mfo:groupDefault true ; mfo:optional false }");
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    makeResultsLate();
    QCOMPARE(tracker->allChannels().size(), 1);
    QCOMPARE(tracker->allChannelUrls(), QStringList("urn:c"));
    QCOMPARE(tracker->channelForUri("urn:c").title(), QString("T"));
    QCOMPARE(tracker->channelType("urn:c"), QString("rss"));
    QCOMPARE(tracker->messagesForChannel("urn:c").size(), 1);
    QCOMPARE(tracker->enclosuresForMessage("urn:m").size(), 1);
    QCOMPARE(tracker->enclosureForUri("urn:e").length(), 4u);
    QCOMPARE(tracker->allMessageUrls("urn:c"), QStringList("urn:m"));
    QCOMPARE(tracker->messageLinksOfChannel("urn:c"), QStringList("http://example.org/1"));
    QVERIFY(tracker->latestPostPublishedTime("urn:c").isValid());
    QCOMPARE(tracker->deletableMessageCount("urn:c"), 1);
    QCOMPARE(tracker->deletableMessages("urn:c", 1), QStringList("urn:m"));
}

void TestStoreLifecycle::writesWaitForTheStore()
{
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    makeResultsLate();
    const QString uri = tracker->addChannel(channel());
    QVERIFY(!uri.isEmpty());
    QCOMPARE(tracker->addChannel(channel()), QString());
    const FeedMessage message("T", "http://example.org/1", "D", QDateTime());
    QVERIFY(tracker->addMessages({message}, uri));
    QVERIFY(tracker->addMessages({message}, uri));
    QCOMPARE(tracker->allMessageUrls(uri).size(), 1);
    QVERIFY(tracker->addEnclosures({enclosure()}, "urn:m"));
    QVERIFY(tracker->addEnclosures({enclosure()}, "urn:m"));
    QCOMPARE(tracker->enclosuresForMessage("urn:m").size(), 1);
    QVERIFY(tracker->updateEnclosure(enclosure()));
}

void TestStoreLifecycle::deletionsWaitForTheStore()
{
    const QString image = m_store->dataFolder() + "/image.png";
    QFile file(image);
    QVERIFY(file.open(QIODevice::WriteOnly));
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    makeResultsLate();
    FeedEnclosure icon = enclosure("http://example.org/icon.png");
    icon.setLocalUrl(image);
    FeedChannel value = channel();
    value.setUri(tracker->addChannel(value));
    value.setIcon(icon);
    QVERIFY(tracker->updateChannel(value));
    QVERIFY(tracker->editChannel(value.uri(), {{FeedTrackerSparql::LinkKey, "http://example.org/new"}}));
    QCOMPARE(tracker->channelForUri(value.uri()).link(), QString("http://example.org/new"));

    int announced = 0;
    connect(tracker, &FeedTrackerSparql::enclosuresToBeDeleted, tracker,
            [&announced](const QList<FeedEnclosure> &list) { announced += int(list.size()); });
    FeedMessage first("T", "http://example.org/1", "D", QDateTime());
    first.addEnclosure({enclosure("http://example.org/1.ogg")});
    FeedMessage second("T", "http://example.org/2", "D", QDateTime());
    second.addEnclosure({enclosure("http://example.org/2.ogg")});
    QVERIFY(tracker->addMessages({first, second}, value.uri()));
    tracker->deleteMessage(tracker->allMessageUrls(value.uri()).first(), value.uri());
    QCOMPARE(announced, 1);
    tracker->addEnclosures({enclosure("http://example.org/orphan.ogg")}, "urn:nobody");
    tracker->deleteOrphans();
    QCOMPARE(announced, 2);
    tracker->deleteChannel(value.uri());
    QCOMPARE(announced, 3);
    QVERIFY(!file.exists());
    QCOMPARE(everythingIn(*m_store), QStringList());
}

void TestStoreLifecycle::failuresAreWaitedForToo()
{
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    makeResultsLate();
    const FeedMessage message("T", "http://example.org/1", "D", QDateTime());
    QVERIFY(!tracker->addMessages({message}, "urn:a b"));
    QVERIFY(!tracker->addEnclosures({enclosure("urn:a b")}, "urn:m"));
}

void TestStoreLifecycle::metaObjectHasOneSignal()
{
    const QMetaObject &meta = FeedTrackerSparql::staticMetaObject;
    QCOMPARE(meta.className(), "FeedTrackerSparql");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(FeedTrackerSparql::instance()->metaObject(), &meta);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), 0);
    QCOMPARE(meta.constructorCount(), 0);

    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod signal = meta.method(meta.methodOffset());
    QCOMPARE(signal.methodType(), QMetaMethod::Signal);
    QCOMPARE(signal.methodSignature(), QByteArray(signalSignature));
    QCOMPARE(signal.parameterNames(), QList<QByteArray>({"enclosureList"}));
    QCOMPARE(signal.typeName(), "void");
    QCOMPARE(meta.indexOfSignal(signalSignature), meta.methodOffset());
}

void TestStoreLifecycle::metaCastAnswersForItsName()
{
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    QCOMPARE(tracker->qt_metacast("FeedTrackerSparql"), static_cast<void *>(tracker));
    QCOMPARE(tracker->qt_metacast("QObject"), static_cast<void *>(static_cast<QObject *>(tracker)));
    QVERIFY(!tracker->qt_metacast(nullptr));
    QVERIFY(!tracker->qt_metacast("FeedChannel"));
    QVERIFY(tracker->inherits("FeedTrackerSparql"));
}

void TestStoreLifecycle::metaCallEmitsTheSignal()
{
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    QObject receiver;
    connect(tracker, &FeedTrackerSparql::enclosuresToBeDeleted, &receiver,
            [](QList<FeedEnclosure> &list) { list.removeFirst(); });
    QList<FeedEnclosure> list = {enclosure("a"), enclosure("b")};
    void *arguments[] = {nullptr, &list};
    const int offset = FeedTrackerSparql::staticMetaObject.methodOffset();
    QCOMPARE(tracker->qt_metacall(QMetaObject::InvokeMetaMethod, offset, arguments), -1);
    QCOMPARE(list.size(), 1);
    QCOMPARE(list.first().remoteUrl(), QString("b"));

    QCOMPARE(tracker->qt_metacall(QMetaObject::InvokeMetaMethod, offset + 1, arguments), 0);
    QCOMPARE(list.size(), 1);
}

void TestStoreLifecycle::metaCallLeavesOtherCallsAlone_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("answer");

    const int properties = QObject::staticMetaObject.propertyCount();
    QTest::newRow("a property of nobody") << int(QMetaObject::ReadProperty) << properties + 3 << 3;
    QTest::newRow("a property of QObject") << int(QMetaObject::ReadProperty) << 0 << -properties;
    QTest::newRow("writing a property") << int(QMetaObject::WriteProperty) << properties << 0;
    QTest::newRow("a new object") << int(QMetaObject::CreateInstance) << 0 << 0;
}

void TestStoreLifecycle::metaCallLeavesOtherCallsAlone()
{
    QFETCH(int, call);
    QFETCH(int, id);
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    int calls = 0;
    connect(tracker, &FeedTrackerSparql::enclosuresToBeDeleted, tracker, [&calls] { ++calls; });
    QString name;
    int status = -1;
    int flags = 0;
    void *arguments[] = {&name, nullptr, &status, &flags};
    QTEST(tracker->qt_metacall(QMetaObject::Call(call), id, arguments), "answer");
    QCOMPARE(calls, 0);
}

void TestStoreLifecycle::receiverByNameChangesTheCallersList()
{
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    Remover remover;
    QVERIFY(connect(tracker, SIGNAL(enclosuresToBeDeleted(QList<FeedEnclosure> &)), &remover,
                    SLOT(removeFirst(QList<FeedEnclosure> &))));
    QList<FeedEnclosure> list = {enclosure("a"), enclosure("b")};
    Q_EMIT tracker->enclosuresToBeDeleted(list);
    QCOMPARE(remover.calls, 1);
    QCOMPARE(list.size(), 1);
    QCOMPARE(list.first().remoteUrl(), QString("b"));
}

void TestStoreLifecycle::signalByNamePassesTheCallersList()
{
    FeedTrackerSparql *tracker = FeedTrackerSparql::instance();
    QList<FeedEnclosure> *received = nullptr;
    connect(tracker, &FeedTrackerSparql::enclosuresToBeDeleted, tracker,
            [&received](QList<FeedEnclosure> &list) { received = &list; });
    QList<FeedEnclosure> list = {enclosure()};
    QVERIFY(QMetaObject::invokeMethod(tracker, "enclosuresToBeDeleted", Qt::DirectConnection,
                                      Q_ARG(QList<FeedEnclosure> &, list)));
    QCOMPARE(received, &list);
}

QTEST_GUILESS_MAIN(TestStoreLifecycle)
#include "tst_storelifecycle.moc"
