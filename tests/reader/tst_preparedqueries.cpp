// SPDX-License-Identifier: LGPL-2.1-or-later
#include <scratchstore.h>

#include <statements_p.h>
#include <storestatements_p.h>

#include <QTest>
#include <QUrl>

#include <random>

#include <dlfcn.h>

namespace {

int prepared = 0;
int runs = 0;

} // namespace

// The library finds these in place of Tracker's.
extern "C" {
Q_DECL_EXPORT void *tracker_sparql_connection_query_statement(void *connection, const char *text, void *c,
                                                              void **error)
{
    using Function = void *(*)(void *, const char *, void *, void **);
    static const auto original =
        reinterpret_cast<Function>(dlsym(RTLD_NEXT, "tracker_sparql_connection_query_statement"));
    ++prepared;
    return original(connection, text, c, error);
}

Q_DECL_EXPORT void *tracker_sparql_statement_execute(void *statement, void *c, void **error)
{
    using Function = void *(*)(void *, void *, void **);
    static const auto original =
        reinterpret_cast<Function>(dlsym(RTLD_NEXT, "tracker_sparql_statement_execute"));
    ++runs;
    return original(statement, c, error);
}
}

/// Queries whose values are bound give what the same queries give with the values in their text.
class TestPreparedQueries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sameRows_data();
    void sameRows();
    void randomQueries();
    void preparedOnce();
    void filteredOnce();
    void asText_data();
    void asText();
    void afterTheFirstUpdate();

private:
    QStringList rows(const QSparqlQuery &query);
    void compare(const QSparqlQuery &query);

    std::unique_ptr<ScratchStore> m_store;
};

namespace {

/// Names of resources and texts, stored and others.
const QStringList &values()
{
    static const QStringList all = {
        "urn:c1",        "urn:m1",       "urn:m2", "urn:e1",  "http://a/1",          "http://a/1.mp3", "",
        "title",         "it's \"one\"", "a\\b",   "a>b <c>", "\U0001F600 \u00e4",   "nie:title",      "\n",
        "rdfs:Resource", "C:\\users",    "1",      "true",    "2026-11-20T10:00:00Z"};
    return all;
}

const char *const properties[] = {"nie:isLogicalPartOf", "nie:links",      "nie:title",
                                  "nie:contentSize",     "mfo:remoteLink", "nie:contentCreated",
                                  "mfo:optional",        "rdf:type",       "tidel:itemKey"};

QSparqlQuery query(const QString &text, const QVariant &value,
                   QSparqlQuery::StatementType type = QSparqlQuery::SelectStatement)
{
    QSparqlQuery query(text, type);
    query.bindValue("v", value);
    return query;
}

QList<QSparqlQuery> statements(const QString &value)
{
    namespace Core = StoreStatements;
    namespace Reader = Tidel::Statements;
    const QUrl url(value);
    return {Core::channelForUri(value),
            Core::channelType(value),
            Core::messagesForChannel(value),
            Core::enclosuresForMessage(value),
            Core::enclosureForUri(value),
            Core::allMessageUrls(value),
            Core::messageLinksOfChannel(value),
            Core::latestPostPublishedTime(value),
            Core::deletableMessageCount(value),
            Core::deletableMessages(value, 2),
            Core::channelWithLink(url),
            Core::messageWithLink(value),
            Core::enclosureWithLink(value),
            Core::enclosureToUpdate(value),
            Core::channelToUpdate(value),
            Core::channelToEdit(value),
            Core::linkOfChannel(value),
            Core::channelToDelete(value),
            Core::messageToDelete(value, "urn:c1"),
            Core::messagesToDelete(value),
            Core::enclosuresToDelete(value),
            Core::enclosureToDelete(url),
            Core::channelImageFile(value),
            Core::channelsWithImage(value),
            Reader::channelWithLink(value),
            Reader::titleOfLink(value),
            Reader::feedState(value),
            Reader::detailsOf(value, {"error", "skipHour"}),
            Reader::messagesOf(value),
            Reader::messageInFull(value),
            Reader::channelTitlesOf(value),
            Reader::channelUrisOf(value),
            Reader::messageUrisOf(value, 2),
            Reader::messageWithLink(url),
            Reader::message(url),
            Reader::earlierVersions(value),
            Reader::droppableCount(value),
            Reader::droppableMessages(value, 2),
            Reader::enclosuresOf(value),
            Reader::enclosure(value),
            Reader::enclosureUrisOf(value),
            Reader::enclosuresWithLink(url)};
}

} // namespace

void TestPreparedQueries::initTestCase()
{
    m_store = std::make_unique<ScratchStore>();
    VERIFY_DONE(m_store->update(
        "INSERT { <urn:c1> a mfo:FeedChannel ; nie:title 'title' ; nie:links <http://a/1> ; mfo:image 'a\\\\b' . "
        "<http://a/1> a nie:DataObject ; nie:created '2026-11-20T10:00:00' . "
        "<urn:c2> a mfo:FeedChannel ; nie:title 'it\\'s \"one\"' ; nie:links <http://a/2> }"));
    for (int i = 1; i <= 6; ++i) {
        VERIFY_DONE(m_store->update(
            QString(
                "INSERT { <urn:m%1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c%2> ; nie:title %3 ; "
                "nie:description 'text' ; nie:subject '' ; nie:links <http://a/%1> ; tidel:itemKey 'title' ; "
                "mfo:downloadedTime '2026-11-2%1T10:00:00Z'^^xsd:dateTime . "
                "<urn:e%1> a mfo:Enclosure ; nie:isLogicalPartOf <urn:m%1> ; nie:contentSize %1 ; "
                "mfo:remoteLink <http://a/%1.mp3> ; mfo:localLink <file:///a> ; mfo:optional true ; "
                "nie:identifier '1' ; mfo:groupDefault false }")
                .arg(i)
                .arg(1 + i % 2)
                .arg(QSparqlBinding(QString(), values().at(6 + i)).toString())));
    }
}

QStringList TestPreparedQueries::rows(const QSparqlQuery &query)
{
    const std::unique_ptr<QSparqlResult> result(m_store->connection().exec(query));
    if (result->hasError())
        return {"error " + QString::number(result->lastError().type()) + result->lastError().message()};
    if (result->isBool())
        return {QString::number(result->boolValue())};
    QStringList rows{QString()};
    while (result->next()) {
        QString row;
        for (int i = 0; i < result->current().count(); ++i) {
            const QSparqlBinding binding = result->binding(i);
            row += binding.name() + '=' + binding.value().typeName() + ' ' + binding.toString() + '|';
        }
        rows.append(row);
    }
    // What is not ordered may come in any order.
    if (!query.query().contains("ORDER BY"))
        rows.sort();
    return rows;
}

void TestPreparedQueries::compare(const QSparqlQuery &query)
{
    const QString text = query.preparedQueryText();
    QCOMPARE(rows(query), rows(QSparqlQuery(text, query.type())));
}

void TestPreparedQueries::sameRows_data()
{
    QTest::addColumn<QString>("value");
    for (const QString &value : values())
        QTest::newRow(qPrintable('"' + value + '"')) << value;
}

void TestPreparedQueries::sameRows()
{
    QFETCH(const QString, value);
    for (const QSparqlQuery &statement : statements(value))
        compare(statement);
}

void TestPreparedQueries::randomQueries()
{
    std::mt19937 random(20261122);
    const auto any = [&random](int count) { return int(random() % unsigned(count)); };
    const char *const texts[] = {
        "SELECT ?x ?o { ?x %1 ?:v ; %2 ?o }",
        "SELECT ?o { ?:v %1 ?o }",
        "SELECT ?x { ?x %1 ?y . ?y %2 ?:v }",
        "SELECT ?x ?o { ?x %1 ?o FILTER(?o = ?:v) }",
        "SELECT ?o ?x { ?x %1 ?o ; %2 ?y . FILTER((?o = ?:v)) . }",
        "SELECT ?x ?o WHERE { ?x %1 ?o FILTER(?x = ?:v) }",
        "SELECT ?y { ?x %1 ?o . ?y %2 ?x FILTER(?x = ?:v) . }",
        "SELECT ?x ?o ?o { ?x %1 ?o FILTER(?o = ?:v) }",
        "SELECT ?x ?o { ?x %1 ?o , ?y FILTER(?o = ?:v) FILTER(?y != ?:v) }",
        "SELECT ?x ?o { ?x %1 ?o FILTER(?o = ?:v) FILTER(?o != ?x) }",
        "SELECT ?x ?o { ?x %1 ?o FILTER(!(?o = ?:v)) }",
        "SELECT ?x ?o { ?x %1 ?o FILTER(?o = ?:v || ?x = ?:v) }",
        "SELECT ?x ?o { ?x %1 ?o FILTER(?o = ?:v) } ORDER BY ?o ?x LIMIT 3",
        "SELECT (COUNT(?o) AS ?n) { ?x %1 ?o FILTER(?o = ?:v) }",
        "SELECT ?p ?o { ?x ?p ?o FILTER(?p = ?:v) }",
        "SELECT ?x ?o { ?x %1 ?o FILTER(?o = ?:v) ?x %2 ?y }",
        "SELECT ?x ?o { ?x %1 ?o . OPTIONAL { ?x %2 ?y } FILTER(?o = ?:v) }",
        "SELECT ?x ?o { ?x a mfo:FeedMessage . ?x %1 ?o . FILTER(?o = ?:v) . ?x %2 ?y }",
        "SELECT ?x ?o { ?x %1 ?o OPTIONAL { ?x %2 ?:v } }",
        "SELECT ?x { ?x %1 ?o FILTER NOT EXISTS { ?x %2 ?:v } }",
        "SELECT ?x ?o { VALUES ?o { ?:v } ?x %1 ?o }",
        "SELECT ?x { ?x %1 ?o FILTER(?o IN (?:v, 'title')) }",
        "SELECT ?x { ?x %1/%2 ?:v }",
        "SELECT ?x { ?x ^%1 ?:v }",
        "SELECT ?p ?o { ?:v ?p ?o }",
        "SELECT ?x ?p { ?x ?p ?:v }",
        "SELECT ?x ?o { ?x ?:v ?o }",
        "SELECT ?x (EXISTS { ?x %1 ?:v } AS ?is) { ?x a mfo:FeedMessage ; %2 ?o } ORDER BY ?x ?o",
        "ASK { ?x %1 ?:v }",
        "PREFIX nie: <http://x/> SELECT ?x { ?x %1 ?:v }",
    };
    for (int i = 0; i < 1200; ++i) {
        const QString text =
            QString(texts[any(std::size(texts))])
                .arg(properties[any(std::size(properties))], properties[any(std::size(properties))]);
        const QString value = values().at(any(values().size()));
        const QVariant bound[] = {QUrl(value), value, any(3), QDateTime::fromString(value, Qt::ISODate)};
        compare(query(text, bound[any(8) < 6 ? any(2) : 2 + any(2)],
                      text.startsWith("ASK") ? QSparqlQuery::AskStatement : QSparqlQuery::SelectStatement));
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(text + ' ' + value));
    }
}

void TestPreparedQueries::preparedOnce()
{
    const QString text = "SELECT ?x { ?x a mfo:FeedMessage ; nie:links ?:v ; nie:title ?t }";
    rows(query(text, QUrl("http://a/1")));
    prepared = 0;
    runs = 0;
    for (int i = 1; i <= 6; ++i)
        QCOMPARE(rows(query(text, QUrl(QString("http://a/%1").arg(i)))),
                 QStringList({QString(), QString("x=QString <urn:m%1>|").arg(i)}));
    QCOMPARE(prepared, 0);
    QCOMPARE(runs, 6);
}

void TestPreparedQueries::filteredOnce()
{
    const QString text = "SELECT ?l ?x { ?x a mfo:FeedMessage ; nie:links ?l .FILTER(( ?l = ?:v)). }";
    rows(query(text, QUrl("http://a/1")));
    prepared = 0;
    runs = 0;
    for (int i = 1; i <= 6; ++i)
        QCOMPARE(rows(query(text, QUrl(QString("http://a/%1").arg(i)))),
                 QStringList({QString(), QString("l=QString <http://a/%1>|x=QString <urn:m%1>|").arg(i)}));
    QCOMPARE(prepared, 0);
    QCOMPARE(runs, 6);
}

void TestPreparedQueries::asText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("number") << "SELECT ?x { ?x nie:contentSize ?:v }" << QVariant(1);
    QTest::newRow("property of numbers") << "SELECT ?x { ?x nie:contentSize ?:v }" << QVariant("1");
    QTest::newRow("filter of a text")
        << "SELECT ?x { ?x nie:title ?t FILTER(?t = ?:v) }" << QVariant(QUrl("urn:c1"));
    QTest::newRow("filter that excludes")
        << "SELECT ?x { ?x nie:links ?l FILTER(?l != ?:v) }" << QVariant(QUrl("http://a/1"));
    QTest::newRow("filter of a property")
        << "SELECT ?x { ?x ?p ?l FILTER(?p = ?:v) }" << QVariant(QUrl("http://a/1"));
    QTest::newRow("list") << "SELECT ?x { VALUES ?l { ?:v } ?x nie:links ?l }"
                          << QVariant(QUrl("http://a/1"));
    QTest::newRow("class") << "SELECT ?x { ?x a ?:v }" << QVariant(QUrl("urn:c1"));
    QTest::newRow("empty IRI") << "SELECT ?x { ?x nie:links ?:v }" << QVariant(QUrl());
    QTest::newRow("limit") << "SELECT ?x { ?x nie:links ?l } LIMIT ?:v" << QVariant(1);
}

void TestPreparedQueries::asText()
{
    QFETCH(const QString, text);
    QFETCH(const QVariant, value);
    rows(query(text, value));
    runs = 0;
    compare(query(text, value));
    QCOMPARE(runs, 0);
}

/// The first update replaces the connection to the database, and with it what was prepared.
void TestPreparedQueries::afterTheFirstUpdate()
{
    const ScratchStore::Connection connection = ScratchStore::connect(m_store->folder());
    const QSparqlQuery question = query("SELECT ?t { ?:v nie:title ?t }", QUrl("urn:new"));
    QCOMPARE(rows(question).size(), 1);
    m_store = nullptr;
    QCOMPARE(std::unique_ptr<QSparqlResult>(connection->exec(question))->size(), 0);
    VERIFY_DONE(ScratchStore::run(*connection, "INSERT { <urn:new> a mfo:FeedMessage ; nie:title 'x' }",
                                  QSparqlQuery::InsertStatement));
    QCOMPARE(std::unique_ptr<QSparqlResult>(connection->exec(question))->size(), 1);
}

QTEST_GUILESS_MAIN(TestPreparedQueries)
#include "tst_preparedqueries.moc"
