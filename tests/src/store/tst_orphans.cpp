// SPDX-License-Identifier: LGPL-2.1-or-later
#include "deletions.h"
#include "statements.h"
#include "storetest.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Deletions;
namespace S = Statements;

namespace {

QStringList messagesJournal()
{
    return {deleteLine(S::orphanMessageDeletion()),
            debugLine("deleteOrphanMessages", {"deleted orphan messages"})};
}

QStringList noOrphanEnclosures()
{
    return {selectLine(S::orphanEnclosures()),
            debugLine("deleteOrphanEnclosures", {"No orphan nodes present"})};
}

QStringList enclosuresJournal(const QStringList &names)
{
    QList<FeedEnclosure> enclosures;
    for (const QString &name : names)
        enclosures.append(announced(name));
    return {
        selectLine(S::orphanEnclosures()),
        debugLine("deleteOrphanEnclosures", {"enclosure deletion count: ", QString::number(names.size())}),
        deleteLine(S::orphanEnclosureDeletion()), signalLine(enclosures)};
}

} // namespace

class TestOrphans : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void storeWithoutOrphans();
    void emptyStore();
    void orphanMessageIsDeletedWithItsEnclosure();

    void messagesOfNoChannelAreDeleted();
    void linkNodesOfOrphansAreDeletedToo();
    void messageWithoutLinkStays();
    void enclosuresOutliveTheirOrphan();

    void enclosuresWithoutOwnerAreDeleted();
    void linkNodesOfEnclosuresAreDeletedToo();
    void enclosuresComeInTheOrderOfTheRows();
    void oneOwnerKeepsAnEnclosure_data();
    void oneOwnerKeepsAnEnclosure();
    void incompleteEnclosureStays_data();
    void incompleteEnclosureStays();
    void imageOfAChannelAddedWithoutUriIsAnOrphan();
    void filesAreLeftToTheHost();
    void signalComesOnceAfterTheDeletion();

    void failureOfMessages_data();
    void failureOfMessages();
    void failureOfEnclosures_data();
    void failureOfEnclosures();
    void failingMessagesDoNotStopTheEnclosures_data();
    void failingMessagesDoNotStopTheEnclosures();
};

void TestOrphans::storeWithoutOrphans()
{
    store().update(storedChannel("1") + storedMessage("1", {"urn:c:1"}) + storedEnclosure("1", {"urn:m:1"})
                   + storedEnclosure("2", {"urn:c:1"}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteOrphans(); }), messagesJournal() + noOrphanEnclosures());
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanMessages(); }), messagesJournal());
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanEnclosures(); }), noOrphanEnclosures());
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::emptyStore()
{
    QCOMPARE(journalOf([&] { tracker()->deleteOrphans(); }), messagesJournal() + noOrphanEnclosures());
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestOrphans::orphanMessageIsDeletedWithItsEnclosure()
{
    store().update(storedMessage("1", {}) + storedEnclosure("1", {"urn:m:1"}));
    QCOMPARE(journalOf([&] { tracker()->deleteOrphans(); }), messagesJournal() + enclosuresJournal({"1"}));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestOrphans::messagesOfNoChannelAreDeleted()
{
    store().update(storedChannel("1") + storedMessage("kept", {"urn:c:1"})
                   + storedMessage("kept-too", {"urn:deleted", "urn:c:1"}));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {}) + storedMessage("2", {"urn:deleted"})
                   + storedMessage("3", {"urn:m:kept"})
                   + storedMessage("4", {}, "nao:hasTag nao:predefined-tag-favorite"));
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanMessages(); }), messagesJournal());
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::linkNodesOfOrphansAreDeletedToo()
{
    store().update(storedNode("http://example.org/unrelated") + storedChannel("1")
                   + storedMessage("kept", {"urn:c:1"}) + storedNode("http://example.org/kept"));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {}) + storedNode("http://example.org/1"));
    tracker()->deleteOrphanMessages();
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::messageWithoutLinkStays()
{
    store().update("INSERT { <urn:m:1> a mfo:FeedMessage } " + storedEnclosure("1", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteOrphans(); }), messagesJournal() + noOrphanEnclosures());
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::enclosuresOutliveTheirOrphan()
{
    store().update(storedEnclosure("1", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {}));
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanMessages(); }), messagesJournal());
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::enclosuresWithoutOwnerAreDeleted()
{
    store().update(storedChannel("1") + storedMessage("1", {"urn:c:1"}) + storedEnclosure("1", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    store().update(storedEnclosure("orphan", {}));
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanEnclosures(); }), enclosuresJournal({"orphan"}));
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::linkNodesOfEnclosuresAreDeletedToo()
{
    store().update(storedNode("file:///unrelated.ogg") + storedMessage("1", {})
                   + storedEnclosure("kept", {"urn:m:1"}) + storedNode("file:///kept.ogg")
                   + storedNode("http://example.org/kept.ogg"));
    const QStringList before = everythingIn(store());
    store().update(storedEnclosure("1", {}) + storedNode("file:///1.ogg")
                   + storedNode("http://example.org/1.ogg"));
    tracker()->deleteOrphanEnclosures();
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::enclosuresComeInTheOrderOfTheRows()
{
    QString insert;
    for (int i = 0; i < 100; ++i)
        insert += storedEnclosure(QString::number(i), {"urn:deleted"});
    store().update(insert);
    QStringList names;
    for (const QString &row : store().texts(S::orphanEnclosures()))
        names.append(row.section(' ', 0, 0).section(':', 2));
    QCOMPARE(names.size(), 100);
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanEnclosures(); }), enclosuresJournal(names));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestOrphans::oneOwnerKeepsAnEnclosure_data()
{
    QTest::addColumn<QStringList>("owners");
    QTest::newRow("message") << QStringList("urn:m:1");
    QTest::newRow("channel") << QStringList("urn:c:1");
    QTest::newRow("message and something deleted") << QStringList({"urn:deleted", "urn:m:1"});
    QTest::newRow("channel and something deleted") << QStringList({"urn:deleted", "urn:c:1"});
    QTest::newRow("both") << QStringList({"urn:m:1", "urn:c:1"});
}

void TestOrphans::oneOwnerKeepsAnEnclosure()
{
    QFETCH(QStringList, owners);
    store().update(storedChannel("1") + storedMessage("1", {"urn:c:1"}) + storedEnclosure("1", owners));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanEnclosures(); }), noOrphanEnclosures());
    store().update(storedEnclosure("orphan", {"urn:deleted"}));
    tracker()->deleteOrphanEnclosures();
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::incompleteEnclosureStays_data()
{
    QTest::addColumn<QString>("properties");
    QTest::newRow("no remote link") << "; mfo:localLink <file:///1.ogg>";
    QTest::newRow("no local link") << "; mfo:remoteLink <http://example.org/1.ogg>";
    QTest::newRow("neither") << "";
}

void TestOrphans::incompleteEnclosureStays()
{
    QFETCH(QString, properties);
    store().update("INSERT { <urn:e:1> a mfo:Enclosure " + properties + " }");
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanEnclosures(); }), noOrphanEnclosures());
    // It also stays if another enclosure is deleted.
    store().update(storedEnclosure("2", {}));
    QCOMPARE(journalOf([&] { tracker()->deleteOrphanEnclosures(); }), enclosuresJournal({"2"}));
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::imageOfAChannelAddedWithoutUriIsAnOrphan()
{
    FeedEnclosure icon;
    icon.setRemoteUrl("http://example.org/icon.png");
    icon.setLocalUrl("/icons/icon.png");
    FeedChannel channel;
    channel.setLink("http://example.org/feed");
    channel.setIcon(icon);
    const QString uri = tracker()->addChannel(channel);
    QList<FeedEnclosure> list;
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this,
            [&list](const QList<FeedEnclosure> &enclosures) { list = enclosures; });
    tracker()->deleteOrphans();
    QCOMPARE(list.size(), 1);
    QCOMPARE(list.first().localUrl(), QString("/icons/icon.png"));

    // After updateChannel(), the image is not an orphan.
    channel.setUri(uri);
    QVERIFY(tracker()->updateChannel(channel));
    tracker()->deleteOrphans();
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 1);
}

void TestOrphans::filesAreLeftToTheHost()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("1.ogg"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    store().update(
        QString("INSERT { <urn:e:1> a mfo:Enclosure ; mfo:remoteLink <urn:r> ; mfo:localLink <%1> }")
            .arg(file.fileName()));
    tracker()->deleteOrphans();
    QCOMPARE(everythingIn(store()), QStringList());
    QVERIFY(file.exists());
}

void TestOrphans::signalComesOnceAfterTheDeletion()
{
    store().update(storedEnclosure("1", {}) + storedEnclosure("2", {}));
    int calls = 0;
    QStringList stored;
    QPointer<QSparqlResult> update;
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this,
            [&](QList<FeedEnclosure> &enclosures) {
                ++calls;
                update = StatementGate::results().last();
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                QVERIFY(update.isNull());
                stored = everythingIn(store());
                enclosures.clear();
            });
    tracker()->deleteOrphans();
    QCOMPARE(calls, 1);
    QCOMPARE(stored, QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(calls, 1);
}

void TestOrphans::failureOfMessages_data()
{
    addFailureColumns();
    const QStringList start = throughStatement(messagesJournal(), 0);
    const Operation operation = [this] {
        tracker()->deleteOrphanMessages();
        return true;
    };
    addFailureRow("no result", operation, {{0, StatementGate::NoResult}},
                  start + QStringList(criticalLine("deleteOrphanMessages", {"Query execution failed"})));
    addFailureRow(
        "refused", operation, {{0, StatementGate::Refuse}},
        start
            + QStringList(criticalLine("deleteOrphanMessages",
                                       {"Error in query execution: ", quoted(S::orphanMessageDeletion())})));
}

void TestOrphans::failureOfMessages()
{
    store().update(storedMessage("1", {}));
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::failureOfEnclosures_data()
{
    addFailureColumns();
    const QStringList all = enclosuresJournal({"1"});
    const auto row = [=](const QString &name, const Intervention &intervention, const QStringList &items) {
        addFailureRow(
            name,
            [this] {
                tracker()->deleteOrphanEnclosures();
                return true;
            },
            {intervention},
            throughStatement(all, intervention.statement)
                + QStringList(criticalLine("deleteOrphanEnclosures", items)));
    };
    row("lookup, no result", {0, StatementGate::NoResult}, {"Query execution failed"});
    row("lookup, refused", {0, StatementGate::Refuse},
        {"Query preparation failed: ", quoted(S::orphanEnclosures())});
    row("update, no result", {1, StatementGate::NoResult}, {"Query execution failed"});
    row("update, refused", {1, StatementGate::Refuse},
        {"Query preperation failed: ", quoted(S::orphanEnclosureDeletion())});
}

void TestOrphans::failureOfEnclosures()
{
    store().update(storedEnclosure("1", {}));
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
}

void TestOrphans::failingMessagesDoNotStopTheEnclosures_data()
{
    QTest::addColumn<int>("verdict");
    QTest::newRow("no result") << int(StatementGate::NoResult);
    QTest::newRow("refused") << int(StatementGate::Refuse);
}

void TestOrphans::failingMessagesDoNotStopTheEnclosures()
{
    QFETCH(int, verdict);
    store().update(storedMessage("1", {}) + storedEnclosure("1", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    store().update(storedEnclosure("2", {}));
    QCOMPARE(journalOf([&] { tracker()->deleteOrphans(); }, {{0, StatementGate::Verdict(verdict)}}).mid(2),
             enclosuresJournal({"2"}));
    QCOMPARE(everythingIn(store()), before);
}

QTEST_GUILESS_MAIN(TestOrphans)
#include "tst_orphans.moc"
