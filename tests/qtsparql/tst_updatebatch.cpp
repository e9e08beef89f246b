// SPDX-License-Identifier: LGPL-2.1-or-later
#include "groundinserts_p.h"
#include "scratchstore.h"

#include <QTest>

#include <random>

#include <dlfcn.h>

namespace {

int resources = 0;

} // namespace

// The library finds it in place of Tracker's.
extern "C" Q_DECL_EXPORT void tracker_batch_add_resource(void *batch, const char *graph, void *resource)
{
    using Function = void (*)(void *, const char *, void *);
    static const auto original = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "tracker_batch_add_resource"));
    ++resources;
    original(batch, graph, resource);
}

/// Ground INSERTs store what the same text stores, and fail as it fails.
class TestUpdateBatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parts_data();
    void parts();
    void sameStore_data();
    void sameStore();
    void randomInserts();
    void order();
    void guard();
};

namespace {

/// All that \a store says of the resources of these tests, in order. What Tracker notes of its own changes
/// differs.
QStringList content(const ScratchStore &store)
{
    QStringList rows = store.rows(
        "SELECT ?s ?p ?o { ?s ?p ?o FILTER(!STRSTARTS(STR(?p), 'http://tracker.api.gnome.org/ontology/v3/nrl#') && "
        "(STRSTARTS(STR(?s), 'urn:') || STRSTARTS(STR(?s), 'http://a/') || STRSTARTS(STR(?s), 'file:'))) }");
    rows.sort();
    return rows;
}

/// Returns \a update in a form that says the same but is not ground: its operations have a pattern.
QString asText(const QString &update) { return "PREFIX unused: <urn:unused#> " + update; }

QString outcome(const ScratchStore &store, const QString &update)
{
    const ScratchStore::Result result = store.update(update);
    return QString::number(result->lastError().type()) + ' ' + QString::number(result->lastError().number());
}

} // namespace

void TestUpdateBatch::parts_data()
{
    QTest::addColumn<QString>("update");
    QTest::addColumn<QString>("kinds"); // t: text, a number: triples
    const auto row = [](const char *update, const char *kinds) { QTest::newRow(update) << update << kinds; };
    row("INSERT { <urn:a> a mfo:FeedMessage ; nie:title 'a' , \"b\" . }", "3");
    row("insert data { <urn:a> nie:links <http://a/> . <urn:b> nie:contentSize -5 ; }", "2");
    row("INSERT { <urn:a> nie:title 'a' } INSERT { <urn:b> nie:title 'b' } WHERE { ?x ?y ?z }", "1t");
    row("DELETE { ?x ?y ?z } WHERE { ?x ?y ?z } INSERT { <urn:a> nie:title 'a' }", "t1");
    row("DELETE DATA { <urn:a> nie:title 'a' } INSERT DATA { <urn:a> nie:title 'b' }", "t1");
    row("DELETE { <urn:a> nie:title 'a' } INSERT { <urn:a> nie:title 'b' }", "");
    row("INSERT { <urn:a> nie:title 'a' } WHERE { }", "");
    row("INSERT { ?x nie:title 'a' }", "");
    row("INSERT { GRAPH <urn:g> { <urn:a> nie:title 'a' } }", "");
    row("INSERT { [] nie:title 'a' }", "");
    row("INSERT { _:a nie:title 'a' } INSERT { <urn:a> nie:title 'a' }", "");
    row("INSERT { <urn:a> nie:title 'a'@en }", "");
    row("INSERT { <urn:a> nie:title \"\"\"a\"\"\" }", "");
    row("INSERT { <urn:a> nie:title 'a\\u0041' }", "");
    row("INSERT { <urn:a> nie:title 'a' } # \\u00g1", "");
    row("INSERT { <urn:a> nie:title 'a\nb' }", "");
    row("INSERT { <urn:a> nie:title 'C:\\\\users' }", "");
    row("INSERT { <urn:a> nie:title 'a' ; a mfo:FeedMessage }", "");
    row("INSERT { <urn:a> nie:title 'a' . <urn:a> a mfo:FeedMessage }", "");
    row("INSERT { <nie:a> nie:title 'a' }", "");
    row("INSERT { <urn:a> nie:contentSize 1.5 }", "");
    row("INSERT { <urn:a> nie:contentSize 5e3 }", "");
    row("INSERT { <urn:a> nie:links nie:a.b }", "");
    row("INSERT INTO <urn:g> { <urn:a> nie:title 'a' }", "");
    row("WITH <urn:g> INSERT { <urn:a> nie:title 'a' }", "");
    row("PREFIX nie: <urn:x#> INSERT { <urn:a> nie:title 'a' }", "");
    row("INSERT { <urn:a> nie:title 'a' } ; INSERT { <urn:b> nie:title 'b' }", "");
    row("INSERT { <urn:a> nie:title 'a'", "");
}

void TestUpdateBatch::parts()
{
    QFETCH(const QString, update);
    QFETCH(const QString, kinds);
    QString found;
    for (const UpdatePart &part : groundInserts(update))
        found += part.triples.isEmpty() ? QString("t") : QString::number(part.triples.size());
    QCOMPARE(found, kinds);
}

void TestUpdateBatch::sameStore_data()
{
    QTest::addColumn<QString>("update");
    QTest::addColumn<bool>("isBatch");
    const auto row = [](const char *name, const QString &triples, bool isBatch = true) {
        QTest::newRow(name) << "INSERT { " + triples + " }" << isBatch;
    };
    row("message",
        "<urn:m> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c> ; nie:title 'a' ; nie:description '' ; "
        "nie:links <http://a/1> ; nao:hasTag nao:predefined-tag-favorite ; "
        "mfo:downloadedTime '2026-11-20T10:00:00Z'^^xsd:dateTime");
    row("enclosure",
        "<urn:e> a mfo:Enclosure ; mfo:remoteLink <http://a/1.mp3> ; mfo:localLink <> ; mfo:optional true ; "
        "mfo:groupDefault false ; nie:contentSize 12345678901 ; nie:identifier 3 ; mfo:image 'x'");
    row("same triple twice", "<urn:m> a mfo:FeedMessage ; nie:title 'a' , 'a'");
    row("two values", "<urn:m> a mfo:FeedMessage ; nie:title 'a' , 'b'");
    row("two values of a single property", "<urn:m> a mfo:FeedMessage ; nie:comment 'a' , 'b'");
    row("unknown property", "<urn:m> a mfo:FeedMessage ; nie:unknown 'a'", false);
    row("unknown class", "<urn:m> a mfo:Unknown");
    row("unknown prefix", "<urn:m> a unknown:Class", false);
    row("no class", "<urn:m> nie:title 'a'");
    row("wrong class", "<urn:m> a mfo:Enclosure ; mfo:downloadedTime '2026-11-20T10:00:00Z'^^xsd:dateTime");
    row("no number", "<urn:m> a mfo:Enclosure ; nie:contentSize 'many'", false);
    row("leading zeros", "<urn:m> a mfo:Enclosure ; nie:contentSize 007", false);
    row("number as text", "<urn:m> a mfo:Enclosure ; nie:contentSize '7'");
    row("boolean as text", "<urn:m> a mfo:Enclosure ; mfo:optional 'yes'", false);
    row("text as resource", "<urn:m> a mfo:FeedMessage ; nie:links 'http://a/1'", false);
    row("resource as text", "<urn:m> a mfo:FeedMessage ; nie:title <http://a/1>", false);
    row("no date", "<urn:m> a mfo:FeedMessage ; nie:contentCreated 'today'", false);
    row("impossible date", "<urn:m> a mfo:FeedMessage ; nie:contentCreated '2026-13-20T10:00:00Z'", false);
    row("date without zone", "<urn:m> a mfo:FeedMessage ; nie:contentCreated '2026-11-20T10:00:00'", false);
    row("date before 1970",
        "<urn:m> a mfo:FeedMessage ; nie:contentCreated '1901-02-03T04:05:06Z'^^xsd:dateTime");
    row("date with zone",
        "<urn:m> a mfo:FeedMessage ; nie:contentCreated '2026-11-20T10:00:00+02:00'^^xsd:dateTime");
    row("fraction", "<urn:m> a mfo:FeedMessage ; nie:contentCreated '2026-11-20T10:00:00.5Z'^^xsd:dateTime",
        false);
}

void TestUpdateBatch::sameStore()
{
    QFETCH(const QString, update);
    QFETCH(const bool, isBatch);
    const ScratchStore batch;
    const ScratchStore text;
    resources = 0;
    const QString batchOutcome = outcome(batch, update);
    QCOMPARE(resources > 0, isBatch);
    resources = 0;
    QCOMPARE(batchOutcome, outcome(text, asText(update)));
    QCOMPARE(resources, 0);
    QCOMPARE(content(batch), content(text));
    const ScratchStore::Result first = batch.update(update);
    const ScratchStore::Result second = text.update(asText(update));
    QCOMPARE(first->lastError().message(), second->lastError().message());
    QCOMPARE(content(batch), content(text));
}

void TestUpdateBatch::randomInserts()
{
    std::mt19937 random(20261122);
    const auto any = [&random](const QStringList &list) {
        return list.at(int(random() % unsigned(list.size())));
    };
    const QStringList literals = {"",
                                  "it's \"one\"",
                                  "a\\b",
                                  "a>b <c> {d}",
                                  "\U0001F600 \u00e4",
                                  "\n\t\r\b\f",
                                  "?x",
                                  "C:\\users",
                                  "nie:title",
                                  "true",
                                  "12",
                                  "#"};
    const QStringList iris = {"<urn:1>", "<urn:2>",     "<http://a/1>", "<http://a/\u00e4#b?c=%20&d>",
                              "<>",      "<nie:title>", "<file:///a>",  "<mailto:a>"};
    const QStringList of = {"nie:title",           "nie:description", "nie:links",
                            "nie:isLogicalPartOf", "nie:contentSize", "nie:contentCreated",
                            "mfo:optional",        "nie:comment",     "tidel:itemKey"};
    QStringList literalTerms;
    for (const QString &literal : literals)
        literalTerms.append(QSparqlBinding(QString(), literal).toString());
    const ScratchStore batch;
    const ScratchStore text;
    resources = 0;
    for (int i = 0; i < 300; ++i) {
        QString update;
        for (unsigned operation = random() % 4 + 1; operation > 0; --operation) {
            update += "INSERT { " + any(iris.mid(0, 5)) + " a "
                + any({"mfo:FeedMessage", "mfo:Enclosure", "mfo:FeedMessage , mfo:Enclosure",
                       "nie:DataObject"});
            for (unsigned pair = random() % 4; pair > 0; --pair) {
                const QString property = any(of);
                const QStringList fitting = property.endsWith("links") || property.endsWith("PartOf")
                    ? iris.mid(0, 5)
                    : property.endsWith("Size")    ? QStringList{"5", "-5", "'5'"}
                    : property.endsWith("Created") ? QStringList{"'2026-11-20T10:00:00Z'^^xsd:dateTime"}
                    : property.endsWith("optional")
                    ? QStringList{"true", "false"}
                    : QStringList{QSparqlBinding(QString(), any(literals)).toString(), "5"};
                update +=
                    " ; " + property + ' ' + any(random() % 12 ? fitting : iris + fitting + literalTerms);
            }
            update += random() % 8 ? " } " : " } WHERE { <urn:1> a nie:InformationElement } ";
        }
        const QString done = outcome(batch, update);
        QVERIFY2(done == outcome(text, asText(update)), qPrintable(update));
    }
    QCOMPARE(content(batch), content(text));
    QVERIFY(content(batch).size() > 100);
    QVERIFY(resources > 100);
}

void TestUpdateBatch::order()
{
    const ScratchStore store;
    VERIFY_DONE(store.update("INSERT { <urn:a> a mfo:FeedMessage ; nie:title 'old' }"));
    VERIFY_DONE(store.update("DELETE { <urn:a> nie:title ?t } WHERE { <urn:a> nie:title ?t } "
                             "INSERT { <urn:a> nie:title 'new' ; nie:subject 'x' } "
                             "INSERT { <urn:a> nie:description ?t } WHERE { <urn:a> nie:title ?t } "
                             "DELETE { <urn:a> nie:subject 'x' }"));
    QCOMPARE(store.rows("SELECT ?t ?d ?s { <urn:a> nie:title ?t ; nie:description ?d "
                        "OPTIONAL { <urn:a> nie:subject ?s } }"),
             QStringList("new new "));
}

/// A pattern before the INSERT that makes the update fail keeps everything out.
void TestUpdateBatch::guard()
{
    const ScratchStore store;
    const QString update = "INSERT { ?x nie:comment 'known' , 'new' } WHERE { ?x nie:links <http://a/1> } "
                           "INSERT { <urn:%1> a mfo:FeedMessage ; nie:links <http://a/1> }";
    VERIFY_DONE(store.update(update.arg("a")));
    const ScratchStore::Connection other = store.connect();
    const ScratchStore::Result refused =
        ScratchStore::run(*other, update.arg("b"), QSparqlQuery::InsertStatement);
    VERIFY_REFUSED(refused, TransactionError);
    QCOMPARE(store.rows("SELECT ?x { ?x nie:links <http://a/1> }"), QStringList("urn:a"));
}

QTEST_GUILESS_MAIN(TestUpdateBatch)
#include "tst_updatebatch.moc"
