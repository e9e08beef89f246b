// SPDX-License-Identifier: LGPL-2.1-or-later
#include "absence_p.h"
#include "dividedquery_p.h"
#include "scratchstore.h"

#include <QTest>

#include <algorithm>
#include <random>

namespace {

/// Texts of queries in which `%1` and `%2` stand for resources.
const char *const enclosuresOnlyOf = "SELECT ?u  WHERE {?u a mfo:Enclosure; nie:isLogicalPartOf <%1>. "
                                     "OPTIONAL {?u nie:isLogicalPartOf ?c . ?c a mfo:FeedMessage . "
                                     "FILTER (( ?c != <%1> )) . }FILTER (!bound(?c)) . }";
const char *const messageOnlyOf =
    "SELECT ?u  ?l WHERE {?u a mfo:FeedMessage; nie:links ?l FILTER ((?u = <%1>)) . "
    "OPTIONAL {?u nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel . "
    "FILTER (( ?c != <%2> )) . }FILTER (!bound(?c)) . }";
const char *const messagesOnlyOf =
    "SELECT ?u WHERE {?u a mfo:FeedMessage. OPTIONAL {?u nie:isLogicalPartOf ?c . "
    "?c a mfo:FeedChannel . FILTER (( ?c != <%2> )) . }FILTER (!bound(?c)) . }";
const char *const unmarkedCount =
    "SELECT COUNT(?u) WHERE {?u a mfo:FeedMessage. ?u nie:isLogicalPartOf <%2>.  "
    "OPTIONAL {?u nao:hasTag ?tag . FILTER((?tag = nao:predefined-tag-favorite)) .} "
    "FILTER(!BOUND(?tag)) .} ";

} // namespace

class TestAbsence : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rewritten_data();
    void rewritten();
    void unchanged_data();
    void unchanged();
    void divided();
    void notDivided_data();
    void notDivided();
    void sameRows_data();
    void sameRows();
};

void TestAbsence::rewritten_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *given, const char *expected) {
        QTest::newRow(name) << QString(given) << QString(expected);
    };
    row("negation", "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) }",
        "SELECT ?u { ?u a nie:A FILTER NOT EXISTS { ?u nie:links ?c } }");
    row("points and parentheses",
        "select ?u where {?u a nie:A. optional {?u nie:links ?c .} . filter ((!bound(?c))) . }",
        "select ?u where {?u a nie:A. FILTER NOT EXISTS {?u nie:links ?c .} . }");
    row("rest of the query",
        "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) ?u nie:title ?t } LIMIT 3",
        "SELECT ?u { ?u a nie:A FILTER NOT EXISTS { ?u nie:links ?c } ?u nie:title ?t } LIMIT 3");
}

void TestAbsence::rewritten()
{
    QFETCH(QString, given);
    QFETCH(QString, expected);
    QCOMPARE(withNotExists(given), expected);
}

void TestAbsence::unchanged_data()
{
    QTest::addColumn<QString>("query");
    const auto row = [](const char *name, const char *query) { QTest::newRow(name) << QString(query); };
    row("empty", "");
    row("no negation", "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } }");
    row("test of a value", "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(bound(?c)) }");
    row("in a text", "SELECT ?u { ?u nie:title 'OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c))' }");
    row("in a comment", "SELECT ?u { ?u a nie:A } # OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c))");
    row("column", "SELECT ?u ?c { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) }");
    row("all columns", "SELECT * { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) }");
    row("all distinct columns",
        "SELECT DISTINCT * { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) }");
    row("column of the pattern",
        "SELECT ?d { ?u a nie:A OPTIONAL { ?u nie:links ?c, ?d } FILTER(!bound(?c)) }");
    row("variable of another kind",
        "SELECT $c { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) }");
    row("another filter", "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?u)) }");
    row("several conditions",
        "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c) && ?u != <x>) }");
    row("used before", "SELECT ?u { ?u nie:links ?c OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) }");
    row("used later",
        "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) ?u nie:title ?c }");
    row("value only of a filter",
        "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:title ?t FILTER(?c = 1) } FILTER(!bound(?c)) }");
    row("given a value later",
        "SELECT ?u { ?u a nie:A OPTIONAL { ?x nie:links ?c } FILTER(!bound(?c)) ?u nie:title ?x }");
    row("mentioned before only in a filter",
        "SELECT ?u { ?u a nie:A FILTER(?x = 1) OPTIONAL { ?x nie:links ?c } FILTER(!bound(?c)) }");
    row("pattern in the pattern",
        "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c OPTIONAL { ?c nie:title ?t } } FILTER(!bound(?c)) }");
    row("pattern before", "SELECT ?u { { ?u a nie:A } OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) }");
    row("assignment",
        "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?d BIND(?d AS ?c) } FILTER(!bound(?c)) }");
    row("something between",
        "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } ?u nie:title ?t FILTER(!bound(?c)) }");
    row("update",
        "DELETE { ?u a nie:A } WHERE { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(?c)) }");
    row("not complete", "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER(!bound(");
    row("no parentheses", "SELECT ?u { ?u a nie:A OPTIONAL { ?u nie:links ?c } FILTER !bound(?c) }");
}

void TestAbsence::unchanged()
{
    QFETCH(QString, query);
    QCOMPARE(withNotExists(query), query);
}

void TestAbsence::divided()
{
    const auto query = DividedQuery::of(withNotExists(QString(enclosuresOnlyOf).replace("%1", "urn:m")));
    QVERIFY(query);
    QCOMPARE(query->candidates(),
             QString("SELECT ?u  WHERE {?u a mfo:Enclosure; nie:isLogicalPartOf <urn:m>. }"));
    QCOMPARE(query->excluded({"urn:a", "urn:b"}),
             QString("SELECT ?u { VALUES ?u { <urn:a> <urn:b> } ?u nie:isLogicalPartOf ?c . "
                     "?c a mfo:FeedMessage . FILTER (( ?c != <urn:m> )) . }"));
    QCOMPARE(query->excluded({"urn:a", "urn:> } #"}), QString());
    QCOMPARE(query->excluded({QString()}), QString());
}

void TestAbsence::notDivided_data()
{
    QTest::addColumn<QString>("query");
    const auto row = [](const char *name, const char *query) { QTest::newRow(name) << QString(query); };
    row("no negation", "SELECT ?u { ?u nie:links ?l }");
    row("no repeated property",
        "SELECT ?u { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:isLogicalPartOf ?c } }");
    row("class only", "SELECT ?u { ?u a nie:A FILTER NOT EXISTS { ?u nie:links ?c . ?c a nie:A } }");
    row("another column", "SELECT ?l { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:links ?c } }");
    row("two shared variables",
        "SELECT ?u { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:links ?c . ?c nie:links ?l } }");
    row("expression", "SELECT COUNT(?u) { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:links ?c } }");
    row("distinct", "SELECT DISTINCT ?u { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:links ?c } }");
    row("limit", "SELECT ?u { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:links ?c } } LIMIT 1");
    row("more behind", "SELECT ?u { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:links ?c } ?u nie:title ?t }");
    row("group", "SELECT ?u { { ?u nie:links ?l } FILTER NOT EXISTS { ?u nie:links ?c } }");
    row("group in the filter", "SELECT ?u { ?u nie:links ?l FILTER NOT EXISTS { { ?u nie:links ?c } } }");
    row("not complete", "SELECT ?u { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:links ?c }");
    row("ASK", "ASK { ?u nie:links ?l FILTER NOT EXISTS { ?u nie:links ?c } }");
}

void TestAbsence::notDivided()
{
    QFETCH(QString, query);
    QVERIFY(!DividedQuery::of(query));
}

void TestAbsence::sameRows_data()
{
    QTest::addColumn<QString>("query");
    QTest::newRow("enclosures") << enclosuresOnlyOf;
    QTest::newRow("message") << messageOnlyOf;
    QTest::newRow("messages") << messagesOnlyOf;
    QTest::newRow("count") << unmarkedCount;
}

/// Compares the query with the same one that is not rewritten, for all resources of random stores.
void TestAbsence::sameRows()
{
    QFETCH(QString, query);
    std::mt19937 random(7);
    const auto anyOf = [&random](int count) { return int(random() % unsigned(count)); };
    const auto sorted = [](QStringList rows) {
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    int rowCount = 0;
    for (int round = 0; round < 3; ++round) {
        ScratchStore store;
        QString update("INSERT DATA { ");
        for (int i = 0; i < 4; ++i)
            update += QString("<urn:c%1> a mfo:FeedChannel . ").arg(i);
        for (int i = 0; i < 20; ++i) {
            update += QString("<urn:m%1> a mfo:FeedMessage ; nie:links <http://example.org/%1> . ").arg(i);
            for (int part = anyOf(4); part > 0; --part)
                update += QString("<urn:m%1> nie:isLogicalPartOf <urn:%2%3> . ")
                              .arg(i)
                              .arg(anyOf(5) ? "c" : "x")
                              .arg(anyOf(4));
            if (anyOf(3) == 0)
                update += QString("<urn:m%1> nao:hasTag nao:predefined-tag-favorite . ").arg(i);
            update += QString("<urn:e%1> a mfo:Enclosure . ").arg(i);
            for (int part = anyOf(4); part > 0; --part)
                update += QString("<urn:e%1> nie:isLogicalPartOf <urn:%2%3> . ")
                              .arg(i)
                              .arg(anyOf(5) ? "m" : "c")
                              .arg(anyOf(4));
        }
        VERIFY_DONE(store.update(update + '}'));
        for (int message = 0; message < 6; ++message) {
            for (int channel = 0; channel < 4; ++channel) {
                QString text = query;
                text.replace("%1", QString("urn:m%1").arg(message))
                    .replace("%2", QString("urn:c%1").arg(channel));
                const QString plain = text + " # $";
                QCOMPARE(withNotExists(plain), plain);
                QVERIFY(withNotExists(text) != text);
                const QStringList rows = store.rows(text);
                QCOMPARE(sorted(rows), sorted(store.rows(plain)));
                rowCount += int(rows.size());
            }
        }
    }
    QVERIFY(rowCount > 20);
}

QTEST_GUILESS_MAIN(TestAbsence)
#include "tst_absence.moc"
