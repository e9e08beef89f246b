// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <sqlite3.h>

#include <dlfcn.h>

namespace {

int stepsTaken = 0;

} // namespace

/// Replaces the function that Tracker calls, and counts the steps in which SQLite's virtual machine finds the
/// rows.
extern "C" Q_DECL_EXPORT int sqlite3_step(sqlite3_stmt *statement)
{
    using Step = int (*)(sqlite3_stmt *);
    static const Step step = reinterpret_cast<Step>(dlsym(RTLD_NEXT, "sqlite3_step"));
    const int outcome = step(statement);
    stepsTaken += sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_VM_STEP, 1);
    return outcome;
}

class TestOntology : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void indexes_data();
    void indexes();
    void lookUpIsIndependentOfTheSize_data();
    void lookUpIsIndependentOfTheSize();
    void datesOfAnOlderStoreAreIndexed();
    void namesAreTheStockOnes();
    void stockProgramReads_data();
    void stockProgramReads();
    void stockProgramBesideAnOpenConnection();
    void stockProgramWrites();
    void storeThatAStockProgramMade();
    void olderOntologyIsBroughtUpToDate_data();
    void olderOntologyIsBroughtUpToDate();
    void readingDoesNotWaitForWriters();
    void readersProperties_data();
    void readersProperties();
    void indexOfTitlesIsRemoved_data();
    void indexOfTitlesIsRemoved();
};

namespace {

struct Outcome
{
    int exitCode;
    QStringList lines;
};

Outcome stock(const QString &mode, const QString &folder, const QStringList &statements)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(TIDEL_STOCK_READER), QStringList{mode, folder} + statements);
    if (!process.waitForFinished(60000))
        return {-1, {process.errorString()}};
    QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    lines.removeAll(QString());
    return {process.exitCode(), lines};
}

#define VERIFY_STOCK(outcome, expected)                                                                      \
    do {                                                                                                     \
        const Outcome checked = (outcome);                                                                   \
        QVERIFY2(checked.exitCode == 0, qPrintable(checked.lines.join(QLatin1Char('\n'))));                  \
        QCOMPARE(checked.lines, expected);                                                                   \
    } while (false)

const QString insertFeed = QStringLiteral(
    "INSERT { <urn:c> a mfo:FeedChannel ; nie:title \"Caf\u00e9 \u65e5\u672c\" ; "
    "nie:links <http://example.org/feed> . "
    "<urn:m> a mfo:FeedMessage ; nie:title \"one\" ; nie:isLogicalPartOf <urn:c> ; "
    "nie:description \"<p>body</p>\" ; nie:contentCreated \"2026-11-21T10:00:00+02:00\"^^xsd:dateTime ; "
    "nie:links <http://example.org/1> . "
    "<urn:e> a mfo:Enclosure ; nie:isLogicalPartOf <urn:m> ; mfo:optional true ; "
    "nie:contentSize 3000000000 ; mfo:remoteLink <http://example.org/1.mp3> }");
const QStringList readFeed = {
    QStringLiteral("SELECT ?c ?t ?l { ?c a mfo:FeedChannel ; nie:title ?t ; nie:links ?l }"),
    QStringLiteral("SELECT ?m ?t ?b ?d ?l { ?m a mfo:FeedMessage ; nie:title ?t ; nie:description ?b ; "
                   "nie:contentCreated ?d ; nie:links ?l ; nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel }"),
    QStringLiteral("SELECT ?e ?o ?n ?l { ?e a mfo:Enclosure ; mfo:optional ?o ; nie:contentSize ?n ; "
                   "mfo:remoteLink ?l ; nie:isLogicalPartOf <urn:m> }")};
const QStringList feed = {QStringLiteral("urn:c Caf\u00e9 \u65e5\u672c http://example.org/feed"),
                          QStringLiteral("urn:m one <p>body</p> 2026-11-21T08:00:00Z http://example.org/1"),
                          QStringLiteral("urn:e true 3000000000 http://example.org/1.mp3")};

int collectText(void *lines, int columns, char **values, char **)
{
    QStringList line;
    for (int i = 0; i < columns; ++i)
        line.append(QString::fromUtf8(values[i]));
    static_cast<QStringList *>(lines)->append(line.join(QLatin1Char(' ')));
    return 0;
}

/// Returns SQLite's own answer to a statement about the store.
QStringList sqliteRows(const QString &folder, const QString &statement)
{
    sqlite3 *database = nullptr;
    QStringList lines;
    char *error = nullptr;
    const QByteArray file = QFile::encodeName(folder + QStringLiteral("/meta.db"));
    if (sqlite3_open(file.constData(), &database) != SQLITE_OK
        || sqlite3_exec(database, statement.toUtf8().constData(), collectText, &lines, &error) != SQLITE_OK)
        lines = QStringList(QString::fromUtf8(error ? error : sqlite3_errmsg(database)));
    sqlite3_free(error);
    sqlite3_close(database);
    return lines;
}

/// Adds \a count messages with one enclosure each, numbered from \a from. A channel has ten of them.
void addMessages(const ScratchStore &store, int from, int count)
{
    QString statement = QStringLiteral("INSERT {");
    for (int i = from; i < from + count; ++i) {
        statement +=
            QStringLiteral(
                "<urn:m%1> a mfo:FeedMessage ; nie:title \"%1\" ; nie:links <http://example.org/%1> ; "
                "nie:isLogicalPartOf <urn:c%2> ; nie:contentCreated \"%3\" . "
                "<urn:e%1> a mfo:Enclosure ; mfo:remoteLink <http://example.org/%1.mp3> ; "
                "nie:isLogicalPartOf <urn:m%1> . ")
                .arg(i)
                .arg(i / 10)
                .arg(QDateTime::fromSecsSinceEpoch(i * 37 % 1000, Qt::UTC).toString(Qt::ISODate));
    }
    VERIFY_DONE(store.update(statement + QLatin1Char('}')));
}

int stepsFor(const ScratchStore &store, const QString &query)
{
    // The first run is not counted. Tracker prepares each new statement once.
    store.select(query);
    stepsTaken = 0;
    const auto result = store.select(query);
    return result->size() == 1 ? stepsTaken : -1;
}

} // namespace

void TestOntology::indexes_data()
{
    QTest::addColumn<QString>("property");
    for (const char *property : {"nie:links", "mfo:remoteLink", "nie:isLogicalPartOf"})
        QTest::newRow(property) << QString::fromLatin1(property);
}

void TestOntology::indexes()
{
    QFETCH(QString, property);
    const ScratchStore store;
    const QStringList tables = sqliteRows(
        store.folder(),
        QStringLiteral("SELECT DISTINCT m.tbl_name FROM sqlite_master m, pragma_index_info(m.name) i "
                       "WHERE m.type = 'index' AND i.seqno = 0 AND i.name = '%1'")
            .arg(property));
    QCOMPARE(tables.size(), 1);
    const QString plan =
        sqliteRows(store.folder(),
                   QStringLiteral("EXPLAIN QUERY PLAN SELECT ID FROM \"%1\" WHERE \"%2\" = 1")
                       .arg(tables[0], property))
            .join(QLatin1Char('\n'));
    QVERIFY2(plan.contains(QStringLiteral("SEARCH")) && plan.contains(QStringLiteral("INDEX")),
             qPrintable(plan));
}

void TestOntology::lookUpIsIndependentOfTheSize_data()
{
    QTest::addColumn<QString>("query");
    QTest::newRow("message by link") << QStringLiteral(
        "SELECT ?m ?l { ?m a mfo:FeedMessage ; nie:links ?l FILTER(?l = <http://example.org/7>) }");
    QTest::newRow("enclosure by link") << QStringLiteral(
        "SELECT ?e ?l { ?e a mfo:Enclosure ; mfo:remoteLink ?l FILTER(?l = <http://example.org/7.mp3>) }");
    QTest::newRow("enclosures of a message") << QStringLiteral(
        "SELECT ?e ?l { ?e a mfo:Enclosure ; nie:isLogicalPartOf <urn:m7> ; mfo:remoteLink ?l }");
    QTest::newRow("messages of a channel")
        << QStringLiteral("SELECT COUNT(?m) { ?m a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c0> }");
    QTest::newRow("newest message") << QStringLiteral(
        "SELECT ?m { ?m nie:contentCreated ?date } ORDER BY DESC(?date) DESC(tracker:id(?m)) LIMIT 1");
}

void TestOntology::lookUpIsIndependentOfTheSize()
{
    QFETCH(QString, query);
    const ScratchStore store;
    addMessages(store, 0, 50);
    const int few = stepsFor(store, query);
    QVERIFY(few > 0);
    addMessages(store, 50, 1500);
    const int many = stepsFor(store, query);
    QVERIFY2(many > 0 && many <= few + few / 4,
             qPrintable(QStringLiteral("%1 steps among 50 messages, %2 among 1550").arg(few).arg(many)));
}

void TestOntology::datesOfAnOlderStoreAreIndexed()
{
    const QTemporaryDir dir;
    const auto write = [&dir] {
        return ScratchStore::run(*ScratchStore::connect(dir.path()), insertFeed,
                                 QSparqlQuery::InsertStatement);
    };
    VERIFY_DONE(write());
    QCOMPARE(sqliteRows(dir.path(), QStringLiteral("DROP INDEX tidel_dates")), QStringList());
    for (int i = 0; i < 2; ++i)
        VERIFY_DONE(write());
    const QString dates =
        QStringLiteral("SELECT \"nie:contentCreated\" FROM \"nie:InformationElement_nie:contentCreated\" "
                       "INDEXED BY tidel_dates");
    QCOMPARE(sqliteRows(dir.path(), dates).size(), 1);
    QCOMPARE(stock(QStringLiteral("readwrite"), dir.path(),
                   {QStringLiteral("INSERT { <urn:new> a nie:InformationElement ; "
                                   "nie:contentCreated \"2026-01-01T00:00:00Z\" }")})
                 .exitCode,
             0);
    QCOMPARE(sqliteRows(dir.path(), dates).size(), 2);
}

void TestOntology::namesAreTheStockOnes()
{
    const ScratchStore store;
    const QTemporaryDir dir;
    const QString inOurs =
        QStringLiteral("FILTER(REGEX(STR(?x), \"/ontology/v3/(nie|nao|nfo|mfo)#\")) } ORDER BY ?x");
    for (const QString &what :
         {QStringLiteral("SELECT ?x { ?x a rdfs:Class "),
          QStringLiteral("SELECT ?x ?d ?r { ?x a rdf:Property ; rdfs:domain ?d ; rdfs:range ?r ")}) {
        const Outcome known = stock(QStringLiteral("readwrite"), dir.path(), {what + inOurs});
        QCOMPARE(known.exitCode, 0);
        QVERIFY(known.lines.size() > 10);
        const QStringList names = store.rows(what + inOurs);
        QVERIFY(names.size() >= 9);
        for (const QString &name : names)
            QVERIFY2(known.lines.contains(name), qPrintable(name));
    }
}

void TestOntology::stockProgramReads_data()
{
    QTest::addColumn<QString>("mode");
    QTest::newRow("read-only") << QStringLiteral("readonly");
    QTest::newRow("default flags") << QStringLiteral("readwrite");
}

void TestOntology::stockProgramReads()
{
    QFETCH(QString, mode);
    const QTemporaryDir dir;
    {
        const auto connection = ScratchStore::connect(dir.path());
        VERIFY_DONE(ScratchStore::run(*connection, insertFeed, QSparqlQuery::InsertStatement));
    }
    for (int i = 0; i < 2; ++i) {
        VERIFY_STOCK(stock(mode, dir.path(), readFeed), feed);
        // The program has not changed the ontology of the store.
        const auto connection = ScratchStore::connect(dir.path());
        QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
        QCOMPARE(ScratchStore::rows(*connection, readFeed.value(1)).size(), 1);
        VERIFY_DONE(ScratchStore::run(
            *connection, QStringLiteral("INSERT { <urn:new> a mfo:FeedMessage ; nie:title \"new\" }"),
            QSparqlQuery::InsertStatement));
    }
}

void TestOntology::stockProgramBesideAnOpenConnection()
{
    const ScratchStore store;
    VERIFY_DONE(store.update(insertFeed));
    for (const char *mode : {"readonly", "readwrite"}) {
        VERIFY_STOCK(stock(QString::fromLatin1(mode), store.folder(), readFeed), feed);
        VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:new> a mfo:FeedChannel }")));
    }
    QCOMPARE(store.rows(readFeed.value(1)).size(), 1);
}

void TestOntology::stockProgramWrites()
{
    const ScratchStore store;
    const Outcome outcome = stock(QStringLiteral("readwrite"), store.folder(), {insertFeed});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.lines.join(QLatin1Char('\n'))));
    QStringList rows;
    for (const QString &query : readFeed) {
        const auto result = store.select(query);
        VERIFY_DONE(result);
        QCOMPARE(result->size(), 1);
    }
}

void TestOntology::storeThatAStockProgramMade()
{
    const QTemporaryDir dir;
    const Outcome outcome = stock(QStringLiteral("readwrite"), dir.path(), {insertFeed});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.lines.join(QLatin1Char('\n'))));
    const auto connection = ScratchStore::connect(dir.path());
    QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
    QCOMPARE(ScratchStore::rows(*connection, readFeed.value(0)), QStringList(feed.value(0)));
}

void TestOntology::olderOntologyIsBroughtUpToDate_data()
{
    QTest::addColumn<QString>("part");
    for (const char *part : {"http://tidel.org/ontology/v1#", "http://tracker.api.gnome.org/ontology/v3/mfo#",
                             "http://tracker.api.gnome.org/ontology/v3/osinfo#"})
        QTest::newRow(part) << QString::fromLatin1(part);
}

void TestOntology::olderOntologyIsBroughtUpToDate()
{
    QFETCH(QString, part);
    const QTemporaryDir dir;
    VERIFY_DONE(
        ScratchStore::run(*ScratchStore::connect(dir.path()), insertFeed, QSparqlQuery::InsertStatement));
    const QString ofPart = QStringLiteral(" WHERE ID = (SELECT ID FROM Resource WHERE Uri = '%1')").arg(part);
    const QString dateOfPart = QStringLiteral("SELECT \"nrl:lastModified\" FROM \"nrl:Ontology\"") + ofPart;
    const QStringList date = sqliteRows(dir.path(), dateOfPart);
    QCOMPARE(sqliteRows(dir.path(),
                        QStringLiteral("UPDATE \"nrl:Ontology\" SET \"nrl:lastModified\" = 1") + ofPart),
             QStringList());
    QCOMPARE(sqliteRows(dir.path(), dateOfPart), QStringList(QStringLiteral("1")));

    QCOMPARE(ScratchStore::rows(*ScratchStore::connect(dir.path()), readFeed.value(0)),
             QStringList(feed.value(0)));
    QCOMPARE(sqliteRows(dir.path(), dateOfPart), date);
}

void TestOntology::readingDoesNotWaitForWriters()
{
    const QTemporaryDir dir;
    VERIFY_DONE(
        ScratchStore::run(*ScratchStore::connect(dir.path()), insertFeed, QSparqlQuery::InsertStatement));
    sqlite3 *writer = nullptr;
    const QByteArray file = QFile::encodeName(dir.filePath(QStringLiteral("meta.db")));
    QCOMPARE(sqlite3_open(file.constData(), &writer), SQLITE_OK);
    QCOMPARE(sqlite3_exec(writer, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    QCOMPARE(ScratchStore::rows(*ScratchStore::connect(dir.path()), readFeed.value(0)),
             QStringList(feed.value(0)));
    QCOMPARE(sqlite3_exec(writer, "ROLLBACK", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(writer);
}

void TestOntology::readersProperties_data()
{
    QTest::addColumn<bool>("stockMade");
    QTest::newRow("a new store") << false;
    QTest::newRow("a store that does not know them yet") << true;
}

void TestOntology::readersProperties()
{
    QFETCH(bool, stockMade);
    const QTemporaryDir dir;
    if (stockMade)
        QCOMPARE(stock(QStringLiteral("readwrite"), dir.path(), {insertFeed}).exitCode, 0);
    const QString dropped = QStringLiteral("SELECT ?l { <urn:c> tidel:droppedLink ?l } ORDER BY ?l");
    {
        const auto connection = ScratchStore::connect(dir.path());
        QVERIFY2(connection->isValid(), qPrintable(connection->lastError().message()));
        VERIFY_DONE(ScratchStore::run(
            *connection,
            QStringLiteral("INSERT { <urn:c> a mfo:FeedChannel ; tidel:droppedLink \"a\", \"b\" ; "
                           "tidel:entityTag \"e\" ; tidel:lastModified \"m\" }"),
            QSparqlQuery::InsertStatement));
        QCOMPARE(ScratchStore::rows(*connection, dropped),
                 QStringList({QStringLiteral("a"), QStringLiteral("b")}));
        VERIFY_DONE(ScratchStore::run(*connection, QStringLiteral("DELETE { <urn:c> a rdfs:Resource }"),
                                      QSparqlQuery::DeleteStatement));
    }
    // The properties are deleted with the channel. Programs with either ontology can still open the store.
    QCOMPARE(ScratchStore::rows(*ScratchStore::connect(dir.path()), dropped), QStringList());
    for (const char *mode : {"readonly", "readwrite"})
        QCOMPARE(stock(QString::fromLatin1(mode), dir.path(), readFeed).exitCode, 0);
    QVERIFY(ScratchStore::connect(dir.path())->isValid());
}

void TestOntology::indexOfTitlesIsRemoved_data()
{
    QTest::addColumn<bool>("isInterrupted");
    QTest::newRow("at once") << false;
    QTest::newRow("after an interruption") << true;
}

void TestOntology::indexOfTitlesIsRemoved()
{
    QFETCH(bool, isInterrupted);
    const QTemporaryDir dir;
    QCOMPARE(QProcess::execute(QStringLiteral("tar"),
                               {QStringLiteral("-xJf"),
                                QStringLiteral(TIDEL_TEST_DATA "/stores/0.1-titlewords.tar.xz"),
                                QStringLiteral("-C"), dir.path()}),
             0);
    const QString folder = dir.filePath(QStringLiteral("store"));
    const QString everything =
        QStringLiteral("SELECT ?s ?p ?v { ?s a mfo:FeedElement ; ?p ?v } ORDER BY ?s ?p ?v");
    const Outcome before = stock(QStringLiteral("readonly"), folder, {everything});
    QCOMPARE(before.exitCode, 0);
    QVERIFY(before.lines.size() > 50);
    const QString tables = QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name LIKE 'fts5%'");
    QVERIFY(sqliteRows(folder, tables) != QStringList(QStringLiteral("0")));

    VERIFY_DONE(ScratchStore::run(*ScratchStore::connect(folder), QStringLiteral("ASK { ?s ?p ?o }"),
                                  QSparqlQuery::AskStatement));
    QCOMPARE(sqliteRows(folder, tables), QStringList(QStringLiteral("0")));
    const QString mark = QStringLiteral(
        " \"rdf:Property\" %1 WHERE ID = (SELECT ID FROM Resource WHERE Uri LIKE '%/nie#title')");
    if (isInterrupted)
        sqliteRows(folder,
                   QStringLiteral("UPDATE") + mark.arg(QStringLiteral("SET \"nrl:fulltextIndexed\" = 1")));
    for (int i = 0; i < 2; ++i) {
        VERIFY_DONE(ScratchStore::run(
            *ScratchStore::connect(folder),
            QStringLiteral("INSERT { <urn:new%1> a nie:InformationElement ; nie:title \"new\" }").arg(i),
            QSparqlQuery::InsertStatement));
    }
    VERIFY_STOCK(stock(QStringLiteral("readonly"), folder, {everything}), before.lines);
}

QTEST_GUILESS_MAIN(TestOntology)
#include "tst_ontology.moc"
