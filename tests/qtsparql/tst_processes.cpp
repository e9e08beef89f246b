// SPDX-License-Identifier: LGPL-2.1-or-later
#include "helper.h"
#include "scratchstore.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <vector>

class TestProcesses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void manyCreateAndUseOneStore_data();
    void manyCreateAndUseOneStore();
    void readerBesideWriters();
    void updatesThatReadFirst();
    void openingWaitsForTheLock();
    void killedHolderBlocksNobody();
    void killedWhileCreating_data();
    void killedWhileCreating();
    void killedWhileWriting();
    void nothingOnStandardError();
    void storesWordsOnDemand();
};

namespace {

QString number(int i) { return QString::number(i); }

} // namespace

void TestProcesses::manyCreateAndUseOneStore_data()
{
    QTest::addColumn<int>("round");
    for (int round = 0; round < 3; ++round)
        QTest::addRow("round %d", round) << round;
}

void TestProcesses::manyCreateAndUseOneStore()
{
    constexpr int processes = 8;
    constexpr int inserts = 15;
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("a/store"));
    std::vector<std::unique_ptr<Helper>> helpers;
    for (int i = 0; i < processes; ++i) {
        helpers.push_back(std::make_unique<Helper>(
            QStringList{QStringLiteral("write"), folder, QLatin1Char('p') + number(i), number(inserts)}));
    }
    for (const auto &helper : helpers)
        helper->go();
    for (const auto &helper : helpers)
        QCOMPARE(helper->outcome(), QString());

    QStringList expected;
    for (int i = 0; i < processes; ++i) {
        for (int j = 0; j < inserts; ++j)
            expected.append(QStringLiteral("p%1 %2 %2").arg(i).arg(j));
    }
    expected.sort();
    QStringList rows = ScratchStore::rows(
        *ScratchStore::connect(folder), QStringLiteral("SELECT ?t ?c { ?s nie:title ?t ; nie:comment ?c }"));
    rows.sort();
    QCOMPARE(rows, expected);
}

void TestProcesses::readerBesideWriters()
{
    const ScratchStore store;
    Helper one({QStringLiteral("write"), store.folder(), QStringLiteral("one"), number(60)});
    Helper two({QStringLiteral("write"), store.folder(), QStringLiteral("two"), number(60)});
    one.go();
    two.go();
    int seen = 0;
    while (one.isRunningAfter(1) || two.isRunningAfter(1)) {
        // Each message has its comment. A part of an update is never visible.
        const auto result = store.select(QStringLiteral("SELECT ?t ?c { ?s a mfo:FeedMessage OPTIONAL { ?s "
                                                        "nie:title ?t } OPTIONAL { ?s nie:comment ?c } }"));
        VERIFY_DONE(result);
        QVERIFY(result->size() >= seen);
        seen = result->size();
        while (result->next())
            QVERIFY(result->value(0).isValid() && result->value(1).isValid());
        VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:c> a mfo:FeedChannel }")));
    }
    QCOMPARE(one.outcome(), QString());
    QCOMPARE(two.outcome(), QString());
    QCOMPARE(store.rows(QStringLiteral("SELECT COUNT(?s) { ?s a mfo:FeedMessage }")),
             QStringList(number(120)));
}

// Such an update has read old data when another process writes, and must be repeated.
void TestProcesses::updatesThatReadFirst()
{
    constexpr int processes = 4;
    constexpr int steps = 50;
    const ScratchStore store;
    VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:n> a mfo:Enclosure ; nie:contentSize 0 }")));
    std::vector<std::unique_ptr<Helper>> helpers;
    for (int i = 0; i < processes; ++i)
        helpers.push_back(
            std::make_unique<Helper>(QStringList{QStringLiteral("raise"), store.folder(), number(steps)}));
    for (const auto &helper : helpers)
        helper->go();
    for (const auto &helper : helpers)
        QCOMPARE(helper->outcome(), QString());
    QCOMPARE(store.rows(QStringLiteral("SELECT ?n { <urn:n> nie:contentSize ?n }")),
             QStringList(number(processes * steps)));
}

void TestProcesses::openingWaitsForTheLock()
{
    const QTemporaryDir dir;
    Helper holder({QStringLiteral("lock"), dir.path()});
    holder.go();
    QVERIFY(holder.reads(QStringLiteral("locked")));

    Helper opener({QStringLiteral("open"), dir.path()});
    opener.go();
    QVERIFY(opener.isRunningAfter(500));
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("meta.db"))));
    holder.go();
    QCOMPARE(holder.outcome(), QString());
    QCOMPARE(opener.outcome(), QString());
}

void TestProcesses::killedHolderBlocksNobody()
{
    const QTemporaryDir dir;
    Helper holder({QStringLiteral("lock"), dir.path()});
    holder.go();
    QVERIFY(holder.reads(QStringLiteral("locked")));
    holder.kill();
    QVERIFY(QFile::exists(dir.filePath(QStringLiteral("opening.lock"))));

    std::vector<std::unique_ptr<Helper>> openers;
    for (int i = 0; i < 4; ++i) {
        openers.push_back(std::make_unique<Helper>(
            QStringList{QStringLiteral("write"), dir.path(), QLatin1Char('p') + number(i), number(1)}));
    }
    for (const auto &opener : openers)
        opener->go();
    for (const auto &opener : openers)
        QCOMPARE(opener->outcome(), QString());
}

void TestProcesses::killedWhileCreating_data()
{
    QTest::addColumn<int>("milliseconds");
    for (int milliseconds = 0; milliseconds < 45; milliseconds += 3)
        QTest::addRow("after %d ms", milliseconds) << milliseconds;
}

void TestProcesses::killedWhileCreating()
{
    QFETCH(int, milliseconds);
    const QTemporaryDir dir;
    Helper creator({QStringLiteral("open"), dir.path()});
    creator.go();
    creator.isRunningAfter(milliseconds);
    creator.kill();

    const auto connection = ScratchStore::connect(dir.path());
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
    VERIFY_DONE(ScratchStore::run(*connection, QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage }"),
                                  QSparqlQuery::InsertStatement));
    QCOMPARE(ScratchStore::rows(*connection, QStringLiteral("SELECT ?s { ?s a mfo:FeedMessage }")),
             QStringList(QStringLiteral("urn:a")));
}

void TestProcesses::killedWhileWriting()
{
    const ScratchStore store;
    Helper writer({QStringLiteral("write"), store.folder(), QStringLiteral("w"), number(100000)});
    writer.go();
    const QString rows = QStringLiteral("SELECT ?s { ?s a mfo:FeedMessage }");
    while (store.rows(rows).size() < 20 && writer.isRunningAfter(10)) { }
    QVERIFY(writer.isRunningAfter(0));
    writer.kill();

    const auto connection = store.connect();
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
    const int count = ScratchStore::rows(*connection, rows).size();
    QVERIFY(count >= 20);
    QCOMPARE(ScratchStore::rows(*connection, QStringLiteral("SELECT ?c { ?s nie:title ?t ; nie:comment ?c }"))
                 .size(),
             count);
    VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage }")));
    QCOMPARE(ScratchStore::rows(*connection, rows).size(), count + 1);
}

void TestProcesses::nothingOnStandardError()
{
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("store"));
    for (int i = 0; i < 2; ++i) {
        Helper helper({QStringLiteral("provoke"), folder});
        helper.go();
        QCOMPARE(helper.outcome(), QString());
        QCOMPARE(helper.standardError(), QString());
    }

    QFile database(folder + QStringLiteral("/meta.db"));
    QVERIFY(database.open(QIODevice::WriteOnly | QIODevice::Truncate));
    database.write("rubbish");
    database.close();
    Helper helper({QStringLiteral("open"), folder});
    helper.go();
    QVERIFY(helper.outcome().contains(folder));
    QCOMPARE(helper.standardError(), QString());
}

void TestProcesses::storesWordsOnDemand()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("tidel.sparql.tracker.debug=true"));
    const QTemporaryDir dir;
    Helper helper({QStringLiteral("provoke"), dir.path()}, environment);
    helper.go();
    QCOMPARE(helper.outcome(), QString());
    QVERIFY(helper.standardError().contains(QStringLiteral("/tmp/a.mp3")));
}

QTEST_GUILESS_MAIN(TestProcesses)
#include "tst_processes.moc"
