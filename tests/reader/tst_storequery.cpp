// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/readstate.h>
#include <TidelReader/statistics.h>
#include <TidelReader/storequery.h>

using namespace Tidel;

/// Tests questions about the whole store.
class TestStoreQuery : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void rows();
    void ask();
    void declarations_data();
    void declarations();
    void refused_data();
    void refused();
    void totals();
    void newestMessages();
    void messagesPerDay();

private:
    QStringList titles(const QString &sparql) const;
};

QStringList TestStoreQuery::titles(const QString &sparql) const
{
    QStringList titles;
    const auto run = StoreQuery(reader()).run(
        sparql, [&](const QVector<QueryValue> &row) { titles.append(row.last().value.toString()); });
    return run ? titles : QStringList(run.error().text());
}

void TestStoreQuery::rows()
{
    addChannel("News");
    addChannel("Music");
    QCOMPARE(titles("SELECT ?c ?t WHERE { ?c a mfo:FeedChannel ; nie:title ?t } ORDER BY ?t"),
             QStringList({"Music", "News"}));
    QCOMPARE(titles("SELECT ?t WHERE { ?c nie:title ?t FILTER(?t = 'Other') }"), QStringList());
}

void TestStoreQuery::ask()
{
    const auto answer = [this] {
        QVector<QueryValue> values;
        const auto run = StoreQuery(reader()).run("ASK { ?c a mfo:FeedChannel }",
                                                  [&](const QVector<QueryValue> &row) { values += row; });
        return run && values.size() == 1 && values[0].variable == "answer" ? values[0].value : QVariant();
    };
    QCOMPARE(answer(), QVariant(false));
    addChannel("News");
    QCOMPARE(answer(), QVariant(true));
}

void TestStoreQuery::declarations_data()
{
    QTest::addColumn<QString>("sparql");
    QTest::newRow("lower case") << "select ?t { ?c nie:title ?t }";
    QTest::newRow("blanks") << " \n\tSELECT ?t { ?c nie:title ?t }";
    QTest::newRow("comment") << "# DELETE\nSELECT ?t { ?c nie:title ?t }";
    QTest::newRow("prefixes")
        << "PREFIX a: <http://tracker.api.gnome.org/ontology/v3/nie#>\n"
           "PREFIX : <http://tracker.api.gnome.org/ontology/v3/nie#> SELECT ?t { ?c a:title ?t }";
    QTest::newRow("base")
        << "BASE <http://tracker.api.gnome.org/ontology/v3/> SELECT ?t { ?c <nie#title> ?t }";
}

void TestStoreQuery::declarations()
{
    QFETCH(QString, sparql);
    addChannel("News");
    QCOMPARE(titles(sparql), QStringList("News"));
}

void TestStoreQuery::refused_data()
{
    QTest::addColumn<QString>("sparql");
    QTest::newRow("deletion") << "DELETE WHERE { ?s ?p ?o }";
    QTest::newRow("deletion after a comment") << "# SELECT\nDELETE WHERE { ?s ?p ?o }";
    QTest::newRow("deletion in lower case") << "delete where { ?s ?p ?o }";
    QTest::newRow("deletion after a query") << "SELECT ?t { ?c nie:title ?t } ; DELETE WHERE { ?s ?p ?o }";
    QTest::newRow("insertion") << "INSERT DATA { <urn:a> a mfo:FeedChannel }";
    QTest::newRow("drop") << "DROP ALL";
    QTest::newRow("triples") << "CONSTRUCT WHERE { ?s ?p ?o }";
    QTest::newRow("incomplete") << "SELECT ?t {";
    QTest::newRow("unknown prefix") << "SELECT ?t { ?c nothing:title ?t }";
    QTest::newRow("empty") << "";
    QTest::newRow("prefixes only") << QString("PREFIX a: <a:b> ").repeated(20000);
    QTest::newRow("comment only") << "# SELECT";
}

void TestStoreQuery::refused()
{
    QFETCH(QString, sparql);
    addChannel("News");
    const QStringList before = everythingIn(store());
    const auto run = StoreQuery(reader()).run(sparql, [](const QVector<QueryValue> &) {});
    QVERIFY(!run);
    QCOMPARE(run.error().kind(), Error::QueryRefused);
    QVERIFY2(run.error().text().startsWith("could not run the query: "), qPrintable(run.error().text()));
    QCOMPARE(everythingIn(store()), before);
}

void TestStoreQuery::totals()
{
    addChannel("News");
    addMessages({"a", "b"}, "News");
    addFavorite("a");
    addEnclosure("file", messageUri("a"));
    addEnclosure("other", messageUri("b"));
    const QString other = "<" + enclosureUri("other") + "> mfo:localLink ";
    store().update("DELETE { " + other + "?f } INSERT { " + other + "<> } WHERE { " + other + "?f }");
    VERIFY_OK(ReadState(reader()).set({messageUri("b")}, true));
    const auto totals = Statistics(reader()).totals();
    VERIFY_OK(totals);
    QCOMPARE(totals->channels, 1);
    QCOMPARE(totals->messages, 2);
    QCOMPARE(totals->unread, 1);
    QCOMPARE(totals->favorites, 1);
    QCOMPARE(totals->enclosures, 2);
    QCOMPARE(totals->downloaded, 1);
    QVERIFY(totals->storeSize > 100000);
}

void TestStoreQuery::newestMessages()
{
    addChannel("News");
    addChannel("Silent");
    addMessages({"a", "b"}, "News", 3);
    addMessages({"c"}, "Silent");
    const auto newest = Statistics(reader()).newestMessages();
    VERIFY_OK(newest);
    QCOMPARE(newest->size(), 1);
    QCOMPARE(newest->value(channelUri("News")).toUTC().date(), QDate(2026, 11, 4));
}

void TestStoreQuery::messagesPerDay()
{
    addChannel("News");
    addMessages({"a", "b", "c", "d"}, "News");
    const QDate today = QDate::currentDate();
    const auto publish = [this](const QString &message, const QDateTime &time) {
        store().update("INSERT DATA { <" + messageUri(message) + "> nie:contentCreated '"
                       + time.toUTC().toString(Qt::ISODate) + "' }");
    };
    publish("a", today.startOfDay());
    publish("b", today.startOfDay());
    publish("c", today.addDays(-2).endOfDay());
    publish("d", today.addDays(-3).endOfDay());
    const auto days = Statistics(reader()).messagesPerDay(3);
    VERIFY_OK(days);
    QCOMPARE(*days, (QMap<QDate, int>{{today.addDays(-2), 1}, {today.addDays(-1), 0}, {today, 2}}));
}

QTEST_GUILESS_MAIN(TestStoreQuery)
#include "tst_storequery.moc"
