// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scratchstore.h"

#include <QDateTime>
#include <QEvent>
#include <QTest>

class TestResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standsBeforeTheFirstRow();
    void nextToTheEnd();
    void backwards();
    void firstAndLast();
    void setPos_data();
    void setPos();
    void noRows();
    void columnsOutOfRange();
    void ofAnUpdate();
    void typedValues_data();
    void typedValues();
    void unboundColumn();
    void rowOfBindings();
    void resourceBoundAgain();
    void favouriteTag();
    void emptyIri();
    void blankNode();
    void hugeLiteral();
    void everyCharacter();
    void ask_data();
    void ask();
    void constructAndDescribe();
    void keepsTheStatement();
    void variableNames();
    void closing();
    void closingAfterAnError();
};

namespace {

/// An update that adds three messages: "a", "b" and "c".
class ThreeTitles : public ScratchStore
{
public:
    ThreeTitles()
    {
        const Result result = update(QStringLiteral("INSERT { <urn:c> a mfo:FeedMessage ; nie:title \"c\" . "
                                                    "<urn:a> a mfo:FeedMessage ; nie:title \"a\" . "
                                                    "<urn:b> a mfo:FeedMessage ; nie:title \"b\" }"));
        if (result->hasError())
            qFatal("%s", qPrintable(result->lastError().message()));
    }
    Result titles() const
    {
        return select(QStringLiteral("SELECT ?t ?s { ?s a mfo:FeedMessage ; nie:title ?t } ORDER BY ?t"));
    }
};

const QString xsd = QStringLiteral("http://www.w3.org/2001/XMLSchema#");

} // namespace

void TestResult::standsBeforeTheFirstRow()
{
    const ThreeTitles store;
    const auto result = store.titles();
    VERIFY_DONE(result);
    QVERIFY(result->isFinished());
    QCOMPARE(result->size(), 3);
    QCOMPARE(result->pos(), int(QSparql::BeforeFirstRow));
    QVERIFY(!result->isValid());
    QVERIFY(result->current().isEmpty());
    QVERIFY(!result->value(0).isValid());
    QVERIFY(!result->binding(0).isValid());
    QVERIFY(result->stringValue(0).isNull());
    QVERIFY(result->isTable());
    QVERIFY(!result->isBool());
}

void TestResult::nextToTheEnd()
{
    const ThreeTitles store;
    const auto result = store.titles();
    for (int row = 0; row < 3; ++row) {
        QVERIFY(result->next());
        QVERIFY(result->isValid());
        QCOMPARE(result->pos(), row);
        QCOMPARE(result->stringValue(0), QString(QLatin1Char(char('a' + row))));
    }
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!result->next());
        QCOMPARE(result->pos(), int(QSparql::AfterLastRow));
        QVERIFY(!result->isValid());
        QVERIFY(!result->value(0).isValid());
        QVERIFY(result->current().isEmpty());
    }
}

void TestResult::backwards()
{
    const ThreeTitles store;
    const auto result = store.titles();
    while (result->next()) { }
    for (int row = 2; row >= 0; --row) {
        QVERIFY(result->previous());
        QCOMPARE(result->pos(), row);
        QCOMPARE(result->stringValue(0), QString(QLatin1Char(char('a' + row))));
    }
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!result->previous());
        QCOMPARE(result->pos(), int(QSparql::BeforeFirstRow));
    }
    QVERIFY(result->next());
    QCOMPARE(result->pos(), 0);
}

void TestResult::firstAndLast()
{
    const ThreeTitles store;
    const auto result = store.titles();
    QVERIFY(result->last());
    QCOMPARE(result->pos(), 2);
    QCOMPARE(result->stringValue(0), QStringLiteral("c"));
    QVERIFY(result->first());
    QCOMPARE(result->pos(), 0);
    QCOMPARE(result->stringValue(0), QStringLiteral("a"));
    while (result->next()) { }
    QVERIFY(result->first());
    QCOMPARE(result->pos(), 0);
}

void TestResult::setPos_data()
{
    QTest::addColumn<int>("pos");
    QTest::addColumn<int>("expected");
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("last") << 2 << 2;
    QTest::newRow("behind") << 3 << int(QSparql::AfterLastRow);
    QTest::newRow("far behind") << 1000000 << int(QSparql::AfterLastRow);
    QTest::newRow("before") << -1 << int(QSparql::BeforeFirstRow);
    QTest::newRow("far before") << -1000000 << int(QSparql::BeforeFirstRow);
}

void TestResult::setPos()
{
    QFETCH(int, pos);
    QFETCH(int, expected);
    const ThreeTitles store;
    const auto result = store.titles();
    QVERIFY(result->setPos(1));
    QCOMPARE(result->setPos(pos), expected >= 0);
    QCOMPARE(result->pos(), expected);
    QCOMPARE(result->isValid(), expected >= 0);
}

void TestResult::noRows()
{
    const ThreeTitles store;
    const auto result = store.select(QStringLiteral("SELECT ?s { ?s a mfo:FeedChannel }"));
    VERIFY_DONE(result);
    QCOMPARE(result->size(), 0);
    QVERIFY(!result->first());
    QVERIFY(!result->last());
    QVERIFY(!result->setPos(0));
    QVERIFY(!result->next());
    QVERIFY(!result->previous());
    QVERIFY(!result->isValid());
    QVERIFY(result->current().isEmpty());
    QVERIFY(!result->value(0).isValid());
    QVERIFY(!result->boolValue());
}

void TestResult::columnsOutOfRange()
{
    const ThreeTitles store;
    const auto result = store.titles();
    QVERIFY(result->next());
    for (const int column : {-1, 2, 1000}) {
        QVERIFY(!result->value(column).isValid());
        QVERIFY(result->binding(column) == QSparqlBinding());
        QVERIFY(result->stringValue(column).isNull());
    }
}

void TestResult::ofAnUpdate()
{
    const ScratchStore store;
    for (const auto type : {QSparqlQuery::InsertStatement, QSparqlQuery::DeleteStatement}) {
        const auto result = ScratchStore::run(store.connection(),
                                              QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage }"), type);
        VERIFY_DONE(result);
        QCOMPARE(result->statementType(), type);
        QVERIFY(!result->isTable());
        QVERIFY(!result->isBool());
        QCOMPARE(result->size(), 0);
        QVERIFY(!result->next());
    }
}

void TestResult::typedValues_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("written");
    QTest::addColumn<QVariant>("read");
    QTest::addColumn<QString>("type");

    const auto text = [](const char *name, const char *written, const QString &read) {
        QTest::newRow(name) << QStringLiteral("nie:comment") << QString::fromLatin1(written) << QVariant(read)
                            << QStringLiteral("string");
    };
    text("string", "\"a text\"", QStringLiteral("a text"));
    text("empty string", "\"\"", QStringLiteral(""));
    text("escapes", "\"\\t\\n\\r\\b\\f\\\"\\'\\\\\"", QStringLiteral("\t\n\r\b\f\"'\\"));
    text("what looks like a number", "\"007\"", QStringLiteral("007"));
    text("what looks like a resource", "\"urn:a\"", QStringLiteral("urn:a"));

    const auto number = [](const char *name, const char *written, qlonglong read) {
        QTest::newRow(name) << QStringLiteral("nie:contentSize") << QString::fromLatin1(written)
                            << QVariant(read) << QStringLiteral("integer");
    };
    number("integer", "42", 42);
    number("zero", "0", 0);
    number("negative", "-7", -7);
    number("beyond 32 bits", "3000000000", 3000000000LL);
    number("largest", "9223372036854775807", std::numeric_limits<qlonglong>::max());
    number("smallest", "-9223372036854775808", std::numeric_limits<qlonglong>::min());

    QTest::newRow("true") << QStringLiteral("mfo:optional") << QStringLiteral("true") << QVariant(true)
                          << QStringLiteral("boolean");
    QTest::newRow("false") << QStringLiteral("mfo:optional") << QStringLiteral("false") << QVariant(false)
                           << QStringLiteral("boolean");
    QTest::newRow("date-time") << QStringLiteral("nie:contentCreated")
                               << QStringLiteral("\"2026-11-21T10:00:00Z\"^^xsd:dateTime")
                               << QVariant(QDateTime(QDate(2026, 11, 21), QTime(10, 0), Qt::UTC))
                               << QStringLiteral("dateTime");

    const auto resource = [](const char *name, const QString &iri) {
        QTest::newRow(name) << QStringLiteral("nie:isLogicalPartOf")
                            << QLatin1Char('<') + iri + QLatin1Char('>') << QVariant(iri) << QString();
    };
    resource("resource", QStringLiteral("http://example.org/a%20b?c=d#e"));
    resource("resource in capitals", QStringLiteral("HTTP://Example.ORG/%7e"));
    resource("relative resource", QStringLiteral("/tmp/a.mp3"));
    resource("resource outside ASCII", QStringLiteral("http://example.org/\u00e4\u65e5"));
}

void TestResult::typedValues()
{
    QFETCH(QString, property);
    QFETCH(QString, written);
    QFETCH(QVariant, read);
    QFETCH(QString, type);

    const ScratchStore store;
    VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:s> a mfo:FeedMessage, mfo:Enclosure ; %1 %2 }")
                                 .arg(property, written)));
    const auto result = store.select(QStringLiteral("SELECT ?v { <urn:s> %1 ?v }").arg(property));
    VERIFY_DONE(result);
    QCOMPARE(result->size(), 1);
    QVERIFY(result->next());
    QCOMPARE(result->value(0).userType(), read.userType());
    QCOMPARE(result->value(0), read);
    QCOMPARE(result->stringValue(0), read.toString());

    const QSparqlBinding binding = result->binding(0);
    QCOMPARE(binding.name(), QStringLiteral("v"));
    QCOMPARE(binding.value(), read);
    QCOMPARE(binding.isUri(), type.isEmpty());
    QCOMPARE(binding.isLiteral(), !type.isEmpty());
    QVERIFY(!binding.isBlank());
    QCOMPARE(binding.dataTypeUri(), type.isEmpty() ? QUrl() : QUrl(xsd + type));

    // A query for the value that was read finds it.
    QSparqlQuery again(QStringLiteral("SELECT ?s { ?s %1 ?v FILTER(?v = ?:v) }").arg(property));
    again.bindValue(binding);
    // Tracker reduces a number in a query to 32 bits.
    const bool isCut = read.toLongLong() != int(read.toLongLong());
    if (!isCut) {
        const ScratchStore::Result found(store.connection().exec(again));
        VERIFY_DONE(found);
        QCOMPARE(found->size(), 1);
    }
}

void TestResult::unboundColumn()
{
    const ThreeTitles store;
    const auto result = store.select(
        QStringLiteral("SELECT ?t ?c { ?s nie:title ?t OPTIONAL { ?s nie:comment ?c } } ORDER BY ?t"));
    VERIFY_DONE(result);
    QVERIFY(result->next());
    QCOMPARE(result->current().count(), 2);
    QVERIFY(!result->value(1).isValid());
    QVERIFY(!result->binding(1).isValid());
    QVERIFY(!result->binding(1).isLiteral());
    QVERIFY(!result->binding(1).isUri());
    QCOMPARE(result->binding(1).name(), QStringLiteral("c"));
}

void TestResult::rowOfBindings()
{
    const ThreeTitles store;
    const auto result = store.titles();
    QVERIFY(result->next());
    const QSparqlResultRow row = result->current();
    QCOMPARE(row.count(), 2);
    QVERIFY(row.binding(0) == result->binding(0));
    QVERIFY(row.binding(1) == result->binding(1));
    QCOMPARE(row.value(QStringLiteral("t")), QVariant(QStringLiteral("a")));
    QCOMPARE(row.value(QStringLiteral("s")), QVariant(QStringLiteral("urn:a")));
    QVERIFY(row.binding(1).isUri());

    QVERIFY(result->next());
    QVERIFY(result->current() != row);
    QCOMPARE(row.value(0), QVariant(QStringLiteral("a")));
}

void TestResult::resourceBoundAgain()
{
    const QString link = QStringLiteral("HTTP://Example.ORG/%7euser/\u00e4");
    const ThreeTitles store;
    VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:a> nie:links <%1> }").arg(link)));
    const auto links = store.select(QStringLiteral("SELECT ?l { ?s nie:links ?l }"));
    QVERIFY(links->next());

    QSparqlQuery query(QStringLiteral("SELECT ?t { ?s nie:title ?t ; nie:links ?:l }"));
    query.bindValue(links->binding(0));
    const ScratchStore::Result found(store.connection().exec(query));
    VERIFY_DONE(found);
    QVERIFY(found->next());
    QCOMPARE(found->stringValue(0), QStringLiteral("a"));
}

void TestResult::favouriteTag()
{
    const ThreeTitles store;
    VERIFY_DONE(store.update(QStringLiteral("INSERT { <urn:b> nao:hasTag nao:predefined-tag-favorite }")));
    const auto result = store.select(
        QStringLiteral("SELECT ?tag { ?s nie:title ?t OPTIONAL { ?s nao:hasTag ?tag } } ORDER BY ?t"));
    VERIFY_DONE(result);
    QList<bool> marked;
    while (result->next())
        marked.append(result->value(0).toBool());
    QCOMPARE(marked, QList<bool>({false, true, false}));
}

void TestResult::emptyIri()
{
    const ThreeTitles store;
    VERIFY_DONE(
        store.update(QStringLiteral("INSERT { <urn:a> nie:links <> } INSERT { <urn:b> nie:links <> }")));
    const auto result = store.select(QStringLiteral("SELECT ?l ?s { ?s nie:links ?l } ORDER BY ?s"));
    VERIFY_DONE(result);
    QCOMPARE(result->size(), 2);
    while (result->next()) {
        QVERIFY(result->value(0).isValid());
        QCOMPARE(result->value(0), QVariant(QStringLiteral("")));
        QVERIFY(result->binding(0).isUri());
        QCOMPARE(result->binding(0).toString(), QStringLiteral("<>"));
    }
    QCOMPARE(store.rows(QStringLiteral("SELECT ?s { ?s nie:links <> } ORDER BY ?s")),
             QStringList({QStringLiteral("urn:a"), QStringLiteral("urn:b")}));
    VERIFY_DONE(store.update(QStringLiteral("DELETE { ?s nie:links <> } WHERE { ?s nie:links <> }")));
    QCOMPARE(store.rows(QStringLiteral("SELECT ?l { ?s nie:links ?l }")), QStringList());
}

void TestResult::blankNode()
{
    const ScratchStore store;
    VERIFY_DONE(store.update(QStringLiteral("INSERT { _:x a mfo:FeedMessage ; nie:title \"x\" }")));
    const auto result = store.select(QStringLiteral("SELECT ?s { ?s nie:title \"x\" }"));
    VERIFY_DONE(result);
    QVERIFY(result->next());
    QVERIFY(result->binding(0).isBlank());
    QVERIFY(!result->binding(0).isUri());
    QVERIFY(!result->binding(0).isLiteral());
    QVERIFY(!result->stringValue(0).isEmpty());
}

void TestResult::hugeLiteral()
{
    const QString text = QStringLiteral("<p class=\"x\">\u00e4 'quoted' \\ \U0001f4fb</p>\n").repeated(40000);
    QVERIFY(text.size() > 1024 * 1024);
    const ScratchStore store;
    QSparqlQuery insert(QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage ; nie:description ?:text }"),
                        QSparqlQuery::InsertStatement);
    insert.bindValue(QStringLiteral("text"), text);
    const ScratchStore::Result inserted(store.connection().exec(insert));
    VERIFY_DONE(inserted);
    const auto result = store.select(QStringLiteral("SELECT ?d { <urn:a> nie:description ?d }"));
    VERIFY_DONE(result);
    QVERIFY(result->next());
    QVERIFY(result->stringValue(0) == text);
}

void TestResult::everyCharacter()
{
    const ScratchStore store;
    QString text;
    for (char16_t character = 1; character < 0xd800; ++character)
        text += QChar(character);
    text += QString::fromUtf16(u"\ue000\ufdd0\ufffd\U0001f4fb\U0010ffff");
    QSparqlQuery insert(QStringLiteral("INSERT { <urn:a> a mfo:FeedMessage ; nie:description ?:text }"),
                        QSparqlQuery::InsertStatement);
    insert.bindValue(QStringLiteral("text"), text);
    const ScratchStore::Result inserted(store.connection().exec(insert));
    VERIFY_DONE(inserted);
    const auto result = store.select(QStringLiteral("SELECT ?d { <urn:a> nie:description ?d }"));
    QVERIFY(result->next());
    QVERIFY(result->stringValue(0) == text);
}

void TestResult::ask_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("answer");
    QTest::newRow("yes") << QStringLiteral("ASK { <urn:a> a mfo:FeedMessage }") << true;
    QTest::newRow("no") << QStringLiteral("ASK { <urn:a> a mfo:FeedChannel }") << false;
    QTest::newRow("nobody") << QStringLiteral("ASK { <urn:nobody> a mfo:FeedMessage }") << false;
}

void TestResult::ask()
{
    QFETCH(QString, statement);
    QFETCH(bool, answer);
    const ThreeTitles store;
    const auto result = store.ask(statement);
    VERIFY_DONE(result);
    QCOMPARE(result->boolValue(), answer);
    QVERIFY(result->isBool());
    QVERIFY(!result->isTable());

    const auto asTable = store.select(statement);
    VERIFY_DONE(asTable);
    QVERIFY(!asTable->boolValue());

    const auto refused = store.ask(QStringLiteral("ASK { <urn:a> a mfo:Nothing }"));
    VERIFY_REFUSED(refused, StatementError);
}

void TestResult::constructAndDescribe()
{
    const ThreeTitles store;
    const auto construct = ScratchStore::run(
        store.connection(), QStringLiteral("CONSTRUCT { ?s nie:comment ?t } WHERE { ?s nie:title ?t }"),
        QSparqlQuery::ConstructStatement);
    VERIFY_DONE(construct);
    QCOMPARE(construct->size(), 3);
    const auto describe = ScratchStore::run(store.connection(), QStringLiteral("DESCRIBE <urn:a>"),
                                            QSparqlQuery::DescribeStatement);
    VERIFY_DONE(describe);
    QVERIFY(describe->size() > 0);
}

void TestResult::keepsTheStatement()
{
    const ThreeTitles store;
    QSparqlQuery query(QStringLiteral("SELECT ?s { ?s nie:title ?:t }"));
    query.bindValue(QStringLiteral("t"), QStringLiteral("b"));
    const ScratchStore::Result result(store.connection().exec(query));
    VERIFY_DONE(result);
    QCOMPARE(result->query(), QStringLiteral("SELECT ?s { ?s nie:title \"b\" }"));
    QCOMPARE(result->statementType(), QSparqlQuery::SelectStatement);
    QVERIFY(result->next());
    QCOMPARE(result->stringValue(0), QStringLiteral("urn:b"));
}

void TestResult::variableNames()
{
    const ThreeTitles store;
    const auto result =
        store.select(QStringLiteral("SELECT ?_t $s (1 AS ?one) { ?s nie:title ?_t } ORDER BY ?_t"));
    VERIFY_DONE(result);
    QVERIFY(result->next());
    QCOMPARE(result->current().variableName(0), QStringLiteral("_t"));
    QCOMPARE(result->current().variableName(1), QStringLiteral("s"));
    QCOMPARE(result->current().variableName(2), QStringLiteral("one"));
}

void TestResult::closing()
{
    const ThreeTitles store;
    const auto result = store.titles();
    VERIFY_DONE(result);
    QVERIFY(result->last());
    QEvent other(QEvent::Show);
    QVERIFY(!result->event(&other));
    QCOMPARE(result->size(), 3);

    QEvent close(QEvent::Close);
    QVERIFY(result->event(&close));
    QCOMPARE(result->size(), 0);
    QCOMPARE(result->query(), QString());
    QVERIFY(!result->isValid());
    QVERIFY(!result->value(0).isValid());
    QVERIFY(result->current().isEmpty());
    QVERIFY(!result->first());
}

void TestResult::closingAfterAnError()
{
    const ScratchStore store;
    const auto result = store.select(QStringLiteral("no statement"));
    QEvent close(QEvent::Close);
    QVERIFY(result->event(&close));
    QVERIFY(result->hasError());
    QVERIFY(!result->next());
}

QTEST_GUILESS_MAIN(TestResult)
#include "tst_qsparqlresult.moc"
