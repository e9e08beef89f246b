// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <smallfiles.h>
#include <sparqlturtle.h>

#include <QFile>
#include <QTemporaryFile>
#include <QTest>

#include <sqlite3.h>

class TestUpdates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refused_data();
    void refused();
    void refusedQuery_data();
    void refusedQuery();
    void storeWorksOnAfterARefusal();
    void oneOperationRefusedUndoesAll_data();
    void oneOperationRefusedUndoesAll();
    void operationsSeeTheOnesBefore();
    void nothingToDo_data();
    void nothingToDo();
    void forbiddenInAnIri_data();
    void forbiddenInAnIri();
    void rawLineBreakInAShortString_data();
    void rawLineBreakInAShortString();
    void codePointEscapes_data();
    void codePointEscapes();
    void escapedTextIsNoEscape();
    void hostileValueStaysAValue();
    void nullCharacter_data();
    void nullCharacter();
    void updateThatDoesNotFitIsUndone();
    void fileThatDoesNotFitIsUndone();
    void fileThatIsTooLargeForTheDisk();
    void tenThousandOperations();
    void statementOfManyMegabytes();
    void aMillionRows();
    void finishedResultHoldsNoTransaction();
};

namespace {

const QString countMessages = QStringLiteral("SELECT COUNT(?s) { ?s a mfo:FeedMessage }");
const QString insertVictim =
    QStringLiteral("INSERT { <urn:victim> a mfo:FeedMessage, nie:DataObject ; nie:title \"victim\" ; "
                   "nie:created \"2026-11-21T10:00:00Z\" }");
// A resource has at most one time of creation.
const QString secondValue = QStringLiteral("INSERT { <urn:victim> nie:created \"2026-01-01T10:00:00Z\" }");

int count(const ScratchStore &store)
{
    return store.rows(countMessages).value(0, QStringLiteral("-1")).toInt();
}

/// A message whose links are new resources too.
QString messageWithLinks(int number)
{
    QStringList links;
    for (int i = 0; i < 20; ++i)
        links.append(QStringLiteral("<https://example.org/%1/%2/%3>")
                         .arg(number)
                         .arg(i)
                         .arg(QString(100, QChar(u'x'))));
    return QStringLiteral("<urn:m:%1> a mfo:FeedMessage ; nie:links %2")
        .arg(number)
        .arg(links.join(QLatin1String(", ")));
}

QString insertMessage(int number) { return QStringLiteral("INSERT { %1 } ").arg(messageWithLinks(number)); }

QSparqlQuery insertTitle(const QString &title)
{
    QSparqlQuery query(QStringLiteral("INSERT { <urn:t> a mfo:FeedMessage ; nie:title ?:title }"),
                       QSparqlQuery::InsertStatement);
    query.bindValue(QStringLiteral("title"), title);
    return query;
}

} // namespace

void TestUpdates::refused_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("isStatementError");

    const auto statement = [](const char *name, const char *text) {
        QTest::newRow(name) << QString::fromLatin1(text) << true;
    };
    const auto constraint = [](const char *name, const char *text) {
        QTest::newRow(name) << QString::fromLatin1(text) << false;
    };
    statement("syntax", "INSERT { <urn:a> a mfo:FeedMessage");
    statement("a query", "SELECT ?s { ?s a mfo:FeedMessage }");
    statement("unknown prefix", "INSERT { <urn:a> a foo:Bar }");
    statement("unknown class", "INSERT { <urn:a> a mfo:Nothing }");
    statement("unknown property", "INSERT { <urn:a> a mfo:FeedMessage ; nie:nothing 3 }");
    statement("no date", "INSERT { <urn:a> a mfo:FeedMessage ; nie:contentCreated \"x\"^^xsd:dateTime }");
    statement("no date, untyped", "INSERT { <urn:a> a mfo:FeedMessage ; nie:contentCreated \"\" }");
    QTest::newRow("second value") << secondValue << false;
    constraint("wrong domain", "INSERT { <urn:a> a mfo:FeedMessage ; mfo:optional true }");
}

void TestUpdates::refused()
{
    QFETCH(QString, statement);
    QFETCH(bool, isStatementError);
    const ScratchStore store;
    VERIFY_DONE(store.update(insertVictim));
    const auto result = store.update(statement);
    if (isStatementError)
        VERIFY_REFUSED(result, StatementError);
    else
        VERIFY_REFUSED(result, TransactionError);
    QCOMPARE(count(store), 1);
    // The error of a statement is not an error of the connection.
    QVERIFY(store.connection().isValid());
    QVERIFY(!store.connection().hasError());
}

void TestUpdates::refusedQuery_data()
{
    QTest::addColumn<QString>("statement");
    const auto row = [](const char *name, const char *text) {
        QTest::newRow(name) << QString::fromLatin1(text);
    };
    row("empty", "");
    row("comment", "# nothing");
    row("syntax", "SELECT ?s { ?s a mfo:FeedMessage");
    row("an update", "INSERT { <urn:a> a mfo:FeedMessage }");
    row("unknown prefix", "SELECT ?s { ?s a foo:Bar }");
    row("unknown class", "SELECT ?s { ?s a mfo:Nothing }");
    row("unknown property", "SELECT ?s { ?s nie:nothing 3 }");
    row("negative limit", "SELECT ?s { ?s a mfo:FeedMessage } LIMIT -1");
    row("half an order", "SELECT ?s { ?s a mfo:FeedMessage } ORDER BY");
}

void TestUpdates::refusedQuery()
{
    QFETCH(QString, statement);
    const ScratchStore store;
    const auto result = store.select(statement);
    VERIFY_REFUSED(result, StatementError);
}

void TestUpdates::storeWorksOnAfterARefusal()
{
    const ScratchStore store;
    for (int i = 0; i < 20; ++i) {
        QVERIFY(store.update(QStringLiteral("INSERT {"))->hasError());
        QVERIFY(store.update(QStringLiteral("INSERT { <urn:a> mfo:optional true }"))->hasError());
        QVERIFY(store.select(QStringLiteral("SELECT"))->hasError());
        VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:%1> a mfo:FeedMessage }").arg(i)));
        QCOMPARE(count(store), i + 1);
    }
}

void TestUpdates::oneOperationRefusedUndoesAll_data()
{
    QTest::addColumn<QString>("refused");
    QTest::newRow("syntax") << QStringLiteral("INSERT { <urn:b c> a mfo:FeedMessage }");
    QTest::newRow("unknown class") << QStringLiteral("INSERT { <urn:b> a mfo:Nothing }");
    QTest::newRow("unknown property") << QStringLiteral("INSERT { <urn:b> nie:nothing 3 }");
    QTest::newRow("second value") << secondValue;
    QTest::newRow("wrong domain") << QStringLiteral("INSERT { <urn:a> mfo:optional true }");
}

void TestUpdates::oneOperationRefusedUndoesAll()
{
    QFETCH(QString, refused);
    const ScratchStore store;
    VERIFY_DONE(store.update(insertVictim));
    const QString before = QStringLiteral("DELETE { ?s a rdfs:Resource } WHERE { ?s nie:title \"victim\" } "
                                          "INSERT { <urn:a> a mfo:FeedMessage ; nie:title \"a\" } ");
    const QString after = QStringLiteral(" INSERT { <urn:z> a mfo:FeedMessage }");
    QVERIFY(store.update(before + refused + after)->hasError());
    QCOMPARE(store.rows(QStringLiteral("SELECT ?s ?t { ?s a mfo:FeedMessage ; nie:title ?t }")),
             QStringList(QStringLiteral("urn:victim victim")));

    VERIFY_DONE(store.update(before + after));
    QCOMPARE(store.rows(QStringLiteral("SELECT ?s { ?s a mfo:FeedMessage } ORDER BY ?s")),
             QStringList({QStringLiteral("urn:a"), QStringLiteral("urn:z")}));
}

void TestUpdates::operationsSeeTheOnesBefore()
{
    const ScratchStore store;
    VERIFY_DONE(store.update(insertVictim));
    VERIFY_DONE(store.update(QStringLiteral(
        "DELETE { ?s nie:title ?t } WHERE { ?s nie:title ?t } INSERT { <urn:victim> nie:title \"new\" } "
        "INSERT { ?s nie:comment ?t } WHERE { ?s nie:title ?t }")));
    QCOMPARE(store.rows(QStringLiteral("SELECT ?c { ?s nie:comment ?c }")),
             QStringList(QStringLiteral("new")));
}

void TestUpdates::nothingToDo_data()
{
    QTest::addColumn<QString>("statement");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("white space") << QStringLiteral(" \t\r\n");
    QTest::newRow("comment") << QStringLiteral("# INSERT { <urn:a> a mfo:FeedMessage }");
    QTest::newRow("comments") << QStringLiteral("\n# one\r\n  # two ' \" <\n");
}

void TestUpdates::nothingToDo()
{
    QFETCH(QString, statement);
    const ScratchStore store;
    VERIFY_DONE(store.update(insertVictim));
    for (const auto type : {QSparqlQuery::InsertStatement, QSparqlQuery::DeleteStatement}) {
        const auto result = ScratchStore::run(store.connection(), statement, type);
        VERIFY_DONE(result);
        QVERIFY(!result->next());
    }
    QCOMPARE(count(store), 1);
}

void TestUpdates::forbiddenInAnIri_data()
{
    QTest::addColumn<QString>("character");
    const QString forbidden = QStringLiteral(" \t\n\r\f\"{}|\\^`<>\x01\x1f");
    for (const QChar character : forbidden)
        QTest::addRow("%#x", unsigned(character.unicode())) << QString(character);
}

void TestUpdates::forbiddenInAnIri()
{
    QFETCH(QString, character);
    const ScratchStore store;
    const QString iri = QStringLiteral("<http://example.org/a%1b>").arg(character);
    const QString insert = QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage ; nie:links %1 }").arg(iri);
    for (const QString &statement :
         {insert, QStringLiteral("INSERT { %1 a mfo:FeedMessage }").arg(iri),
          QStringLiteral("INSERT { ?s a mfo:FeedMessage } WHERE { ?s nie:links %1 }").arg(iri)}) {
        const auto result = store.update(statement);
        VERIFY_REFUSED(result, StatementError);
        QCOMPARE(count(store), 0);
    }
    // The statement without the character succeeds.
    VERIFY_DONE(store.update(QString(insert).replace(iri, QStringLiteral("<http://example.org/ab>"))));
    QCOMPARE(count(store), 1);
}

void TestUpdates::rawLineBreakInAShortString_data()
{
    QTest::addColumn<QString>("literal");
    QTest::addColumn<bool>("taken");
    QTest::newRow("newline") << QStringLiteral("\"a\nb\"") << false;
    QTest::newRow("carriage return") << QStringLiteral("\"a\rb\"") << false;
    QTest::newRow("newline, single quotes") << QStringLiteral("'a\nb'") << false;
    QTest::newRow("tab") << QStringLiteral("\"a\tb\"") << true;
    QTest::newRow("newline in a long string") << QStringLiteral("\"\"\"a\nb\"\"\"") << true;
}

void TestUpdates::rawLineBreakInAShortString()
{
    QFETCH(QString, literal);
    QFETCH(bool, taken);
    const ScratchStore store;
    const auto result =
        store.update(QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage ; nie:title %1 }").arg(literal));
    QCOMPARE(!result->hasError(), taken);
    QCOMPARE(count(store), taken ? 1 : 0);
}

void TestUpdates::codePointEscapes_data()
{
    QTest::addColumn<QString>("statement");
    const auto row = [](const char *name, const char *text) {
        QTest::newRow(name) << QString::fromLatin1(text);
    };
    // Tracker replaces these before it parses the statement. One of them could end a literal early.
    row("letter", "INSERT { <urn:a> a mfo:FeedMessage ; nie:title \"\\u0041\" }");
    row("quote", "INSERT { <urn:a> a mfo:FeedMessage ; nie:title \"\\u0022 } # \" }");
    row("long form", "INSERT { <urn:a> a mfo:FeedMessage ; nie:title \"\\U00000041\" }");
    row("null", "INSERT { <urn:a> a mfo:FeedMessage } \\u0000 rest");
    row("in an IRI", "INSERT { <urn:\\u0020> a mfo:FeedMessage }");
    row("end of an IRI", "INSERT { <urn:a\\u003e a mfo:FeedMessage }");
    row("in a comment", "INSERT { <urn:a> a mfo:FeedMessage } # \\u000a");
}

void TestUpdates::codePointEscapes()
{
    QFETCH(QString, statement);
    const ScratchStore store;
    const auto result = store.update(statement);
    VERIFY_REFUSED(result, StatementError);
    QCOMPARE(count(store), 0);
}

void TestUpdates::escapedTextIsNoEscape()
{
    const ScratchStore store;
    const QString title = QStringLiteral("\\u0022 \\U00000022 \\\\u0022 \\n \\");
    const ScratchStore::Result result(store.connection().exec(insertTitle(title)));
    VERIFY_DONE(result);
    QCOMPARE(store.rows(QStringLiteral("SELECT ?t { ?s nie:title ?t }")), QStringList(title));
}

void TestUpdates::hostileValueStaysAValue()
{
    const QString attacks[] = {
        QStringLiteral("\" } DELETE { ?s a rdfs:Resource } WHERE { ?s a mfo:FeedMessage } #"),
        QStringLiteral("\\\" } DELETE { ?s a rdfs:Resource } WHERE { ?s ?p ?o } #"),
        QStringLiteral("\n} DELETE { <urn:victim> a rdfs:Resource } #"),
        QStringLiteral("'''\"\"\"} DELETE { <urn:victim> a rdfs:Resource } #"),
        QStringLiteral("> } DELETE { <urn:victim> a rdfs:Resource } #"),
        QStringLiteral("?:title $:title ?_a <>")};
    for (const QString &attack : attacks) {
        const ScratchStore store;
        VERIFY_DONE(store.update(insertVictim));
        QSparqlQuery insert = insertTitle(attack);
        insert.setQuery(
            QStringLiteral("INSERT { <urn:t> a mfo:FeedMessage ; nie:title ?:title ; nie:links ?:link }"));
        insert.bindValue(QStringLiteral("link"), QUrl(QStringLiteral("http://example.org/") + attack));
        const ScratchStore::Result result(store.connection().exec(insert));
        VERIFY_DONE(result);
        QCOMPARE(count(store), 2);
        QCOMPARE(store.rows(QStringLiteral("SELECT ?t { <urn:t> nie:title ?t }")), QStringList(attack));
    }
}

void TestUpdates::nullCharacter_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    // Only the first half would run if the statement were read as zero-terminated text.
    QTest::newRow("between") << QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage } ")
                             << QStringLiteral("rest");
    QTest::newRow("at the end") << QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage } ") << QString();
    QTest::newRow("at the start") << QString() << QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage }");
    QTest::newRow("in a string") << QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage ; nie:title \"a")
                                 << QStringLiteral("b\" }");
    QTest::newRow("in a comment") << QStringLiteral("#")
                                  << QStringLiteral("\nINSERT { <urn:a> a mfo:FeedMessage }");
}

void TestUpdates::nullCharacter()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    const ScratchStore store;
    const QString statement = before + QChar(0) + after;
    const auto update = store.update(statement);
    VERIFY_REFUSED(update, StatementError);
    const auto query = store.select(countMessages + QChar(0));
    VERIFY_REFUSED(query, StatementError);
    QCOMPARE(count(store), 0);
}

// SQLite writes a part of a large update before its end, and undoes it if that fails. Tracker goes on with
// the rest.
void TestUpdates::updateThatDoesNotFitIsUndone()
{
    const ScratchStore store;
    QString update;
    for (int i = 0; i < 5000; ++i)
        update += insertMessage(i);
    for (const rlim_t size : {1500000, 3000000, 4500000}) {
        VERIFY_DONE(store.update("INSERT { <urn:other> a mfo:FeedMessage }"));
        const SmallFiles disk(size);
        const ScratchStore::Result result = store.update(update);
        QVERIFY(result->hasError());
        QCOMPARE(result->lastError().type(), QSparqlError::BackendError);
        QCOMPARE(count(store), 1);
    }
    QCOMPARE(store.rows("SELECT COUNT(?r) { ?r nie:links ?l }"), QStringList("0"));
    VERIFY_DONE(store.update(update));
    QCOMPARE(count(store), 5001);
}

void TestUpdates::fileThatDoesNotFitIsUndone()
{
    const ScratchStore store;
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("@prefix nie: <http://tracker.api.gnome.org/ontology/v3/nie#> .\n"
               "@prefix mfo: <http://tracker.api.gnome.org/ontology/v3/mfo#> .\n");
    const QString title(1000, QChar(u'x'));
    for (int i = 0; i < 5000; ++i)
        file.write(
            QStringLiteral("<urn:m:%1> a mfo:FeedMessage ; nie:title \"%2\" .\n").arg(i).arg(title).toUtf8());
    file.close();
    VERIFY_DONE(store.update("INSERT { <urn:other> a mfo:FeedMessage }"));
    const QSparqlConnectionOptions options = store.connection().options();
    {
        const SmallFiles disk(3000000);
        const QSparqlError error = SparqlTurtle::read(options, file.fileName());
        QVERIFY2(error.message().startsWith("The file is refused: "), qPrintable(error.message()));
    }
    QCOMPARE(count(store), 1);
    QCOMPARE(store.rows("SELECT COUNT(?r) { ?r nie:title ?t }"), QStringList("0"));
    QVERIFY(!SparqlTurtle::read(options, file.fileName()).isValid());
    QCOMPARE(count(store), 5001);
}

void TestUpdates::fileThatIsTooLargeForTheDisk()
{
    const ScratchStore store;
    QTemporaryFile file;
    QVERIFY(file.open());
    QVERIFY(file.resize(qint64(1) << 43));
    const QSparqlError error = SparqlTurtle::read(store.connection().options(), file.fileName());
    QVERIFY2(error.message().startsWith("The file is refused: about 16.00 TiB are needed on the disk, and "),
             qPrintable(error.message()));
    QCOMPARE(error.type(), QSparqlError::BackendError);
}

void TestUpdates::tenThousandOperations()
{
    const auto inserts = [](const QString &prefix, int count) {
        QString statement;
        for (int i = 0; i < count; ++i) {
            statement += QStringLiteral("INSERT { <urn:%1:%2> a mfo:FeedMessage ; nie:title \"%2\" } ")
                             .arg(prefix)
                             .arg(i);
        }
        return statement;
    };
    const ScratchStore store;
    VERIFY_DONE(store.update(inserts(QStringLiteral("a"), 10000)));
    QCOMPARE(count(store), 10000);

    // If the last operation is refused, the others have no effect.
    const QString refused = QStringLiteral("INSERT { <urn:a:0> mfo:optional true }");
    QVERIFY(store.update(inserts(QStringLiteral("b"), 1000) + refused)->hasError());
    QCOMPARE(count(store), 10000);
}

void TestUpdates::statementOfManyMegabytes()
{
    const ScratchStore store;
    const QString body = QStringLiteral("0123456789abcdef").repeated(1024 * 1024);
    const ScratchStore::Result result(store.connection().exec(insertTitle(QString())));
    VERIFY_DONE(result);
    VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:t> nie:description \"%1\" }").arg(body)));
    const auto read = store.select(QStringLiteral("SELECT ?d { <urn:t> nie:description ?d }"));
    QVERIFY(read->next());
    QVERIFY(read->stringValue(0) == body);

    const QString padding =
        QStringLiteral("# a comment that is as long as a statement may be\n").repeated(100000);
    VERIFY_DONE(store.update(padding + insertVictim + padding));
    QCOMPARE(store.rows(padding + countMessages), QStringList(QStringLiteral("2")));
}

void TestUpdates::aMillionRows()
{
    const ScratchStore store;
    QString statement = QStringLiteral("INSERT {");
    for (int i = 0; i < 1000; ++i)
        statement += QStringLiteral("<urn:%1> a mfo:FeedMessage ; nie:contentSize %1 . ").arg(i);
    VERIFY_DONE(store.update(statement + QLatin1Char('}')));

    const auto result =
        store.select(QStringLiteral("SELECT ?a ?b { ?x nie:contentSize ?a . ?y nie:contentSize ?b }"));
    VERIFY_DONE(result);
    QCOMPARE(result->size(), 1000000);
    qlonglong sum = 0;
    int rows = 0;
    for (; result->next(); ++rows)
        sum += result->value(0).toLongLong() * 1000 + result->value(1).toLongLong();
    QCOMPARE(rows, 1000000);
    // Every number from 0 to 999,999 occurs once.
    QCOMPARE(sum, 499999500000LL);
    QVERIFY(result->setPos(999999));
    QVERIFY(!result->setPos(1000000));
}

void TestUpdates::finishedResultHoldsNoTransaction()
{
    const ScratchStore store;
    QString statement = QStringLiteral("INSERT {");
    for (int i = 0; i < 200; ++i)
        statement += QStringLiteral("<urn:%1> a mfo:FeedMessage . ").arg(i);
    VERIFY_DONE(store.update(statement + QLatin1Char('}')));

    std::vector<ScratchStore::Result> held;
    for (int i = 0; i < 50; ++i) {
        held.push_back(store.select(QStringLiteral("SELECT ?s { ?s a mfo:FeedMessage } ORDER BY ?s")));
        QVERIFY(held.back()->next());
        held.push_back(store.ask(QStringLiteral("ASK { ?s a mfo:FeedMessage }")));
        held.push_back(store.select(QStringLiteral("SELECT ?s { ?s a mfo:Nothing }")));
    }
    VERIFY_DONE(store.update(insertVictim));

    // SQLite cannot empty the write-ahead log while a program reads an older state of the store.
    sqlite3 *database = nullptr;
    const QByteArray file = QFile::encodeName(store.folder() + QStringLiteral("/meta.db"));
    QCOMPARE(sqlite3_open_v2(file.constData(), &database, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    // A connection opens the log when it reads for the first time.
    QCOMPARE(sqlite3_exec(database, "SELECT COUNT(*) FROM sqlite_master", nullptr, nullptr, nullptr),
             SQLITE_OK);
    int framesInLog = -1;
    int framesMoved = -1;
    const int outcome =
        sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_TRUNCATE, &framesInLog, &framesMoved);
    sqlite3_close(database);
    QCOMPARE(outcome, SQLITE_OK);
    QCOMPARE(framesInLog, 0);
    QCOMPARE(framesMoved, 0);

    for (const auto &result : held)
        QVERIFY(result->hasError() || result->size() == 200 || result->boolValue());
    QCOMPARE(count(store), 201);
}

QTEST_GUILESS_MAIN(TestUpdates)
#include "tst_updates.moc"
