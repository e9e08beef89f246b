// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QSparqlBinding>
#include <QSparqlConnection>
#include <QSparqlResult>

#include <QtTest>

namespace S = Statements;

namespace {

const QString channelUri = "urn:c";
const QString link = "http://example.org/1";

FeedMessage message(const QString &itsLink = link)
{
    FeedMessage result("Title", itsLink, "Text", QDateTime());
    result.setSummary("Summary");
    return result;
}

FeedMessage messageWith(const QString &title, const QString &description, const QString &summary)
{
    return FeedMessage(title, link, QString(), description, summary, QDateTime(), {}, QDateTime(), false);
}

FeedEnclosure enclosure()
{
    FeedEnclosure result;
    result.setRemoteUrl("http://example.org/1.ogg");
    return result;
}

QString asLiteral(const QString &text) { return QSparqlBinding(QString(), text).toString(); }

} // namespace

class TestStatementTemplate : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void associationHasBothValues();
    void associationRunsNothing();
    void associationNeedsNoInstance();
    void associationTakesEmptyValues();
    void associationTakesTheLinkAsItIs();
    void valuesAreNotSearchedForPlaces_data();
    void valuesAreNotSearchedForPlaces();
    void valueThatEndsItsPlaceMakesARefusedStatement_data();
    void valueThatEndsItsPlaceMakesARefusedStatement();

    void queryStoresAMessageWhenItIsRun();
    void queryIsNotRun();
    void queryWithoutChannelIsEmpty_data();
    void queryWithoutChannelIsEmpty();
    void eachQueryHasItsOwnUri();
    void queryHasThePublishedDateOnlyWhenItIsValid();
    void queryHasTheLinkOnlyWhenThereIsOne();
    void queryTakesTheChannelAsItIs();
    void textsAreEscaped();
    void eachTextTakesItsPlace();
    void textsAreNotSearchedForPlaces();
    void enclosuresAreStoredAtOnce();
    void failingEnclosuresDoNotFailTheQuery();
};

void TestStatementTemplate::associationHasBothValues()
{
    QCOMPARE(createAssociation(message(), channelUri),
             QString("INSERT {?u a mfo:FeedMessage; nie:isLogicalPartOf <urn:c>} "
                     "WHERE {?u nie:links <http://example.org/1> }"));
}

void TestStatementTemplate::associationRunsNothing()
{
    QCOMPARE(journalOf([] { createAssociation(message(), channelUri); }), QStringList());
}

void TestStatementTemplate::associationNeedsNoInstance()
{
    FeedTrackerSparql::releaseInstance();
    QString text;
    QCOMPARE(journalOf([&] { text = createAssociation(message(), channelUri); }), QStringList());
    QCOMPARE(text, S::association(link, channelUri));
}

void TestStatementTemplate::associationTakesEmptyValues()
{
    QCOMPARE(createAssociation(FeedMessage(), QString()), S::association("", ""));
}

void TestStatementTemplate::associationTakesTheLinkAsItIs()
{
    for (const char *text : {"example.org/1", "HTTP://Example.ORG/1", "http://example.org/a b", "it's", "#",
                             "http://example.org/\u00e4", "\"{}|^`<"}) {
        const QString value = QString::fromUtf8(text);
        QCOMPARE(createAssociation(message(value), value), S::association(value, value));
    }
}

void TestStatementTemplate::valuesAreNotSearchedForPlaces_data()
{
    QTest::addColumn<QString>("itsLink");
    QTest::addColumn<QString>("itsChannel");
    QTest::newRow("the other place") << "urn:%channelUri"
                                     << "urn:%link";
    QTest::newRow("its own place") << "urn:%link"
                                   << "urn:%channelUri";
    QTest::newRow("part of a place") << "urn:%lin"
                                     << "urn:%";
    QTest::newRow("two halves of a place") << "k"
                                           << "urn:%lin";
    QTest::newRow("numbered places") << "%1%2%L1"
                                     << "%3%99";
    QTest::newRow("escapes") << "http://example.org/%7E%6C%5C"
                             << "urn:%25link";
    QTest::newRow("placeholders") << "?:link"
                                  << "?:channelUri";
}

void TestStatementTemplate::valuesAreNotSearchedForPlaces()
{
    QFETCH(QString, itsLink);
    QFETCH(QString, itsChannel);
    QCOMPARE(createAssociation(message(itsLink), itsChannel),
             "INSERT {?u a mfo:FeedMessage; nie:isLogicalPartOf <" + itsChannel + ">} WHERE {?u nie:links <"
                 + itsLink + "> }");
}

void TestStatementTemplate::valueThatEndsItsPlaceMakesARefusedStatement_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("end of an IRI") << "urn:a>";
    QTest::newRow("in the middle") << "urn:a>b";
    QTest::newRow("at the start") << ">urn:a";
    QTest::newRow("alone") << ">";
    QTest::newRow("backslash") << "urn:a\\u003Eb";
}

void TestStatementTemplate::valueThatEndsItsPlaceMakesARefusedStatement()
{
    QFETCH(QString, value);
    // The statement is refused at its first token, and the trace shows it in readable form.
    for (const QString &text :
         {createAssociation(message(value), channelUri), createAssociation(message(), value),
          createAssociation(message(value), value), tracker()->addMessageQuery(message(), value)}) {
        QVERIFY(text.startsWith("\"refused"));
        QVERIFY(text.contains('<' + value + '>'));
        QVERIFY(storeErrorOf(text) != debugText(QSparqlError()));
    }
    QVERIFY(createAssociation(message(value), channelUri).endsWith(S::association(value, channelUri)));
}

void TestStatementTemplate::queryStoresAMessageWhenItIsRun()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel }");
    QString text;
    QCOMPARE(journalOf([&] { text = tracker()->addMessageQuery(message(), channelUri); }), QStringList());
    QCOMPARE(patterned(text), S::messageInsert(message(), QString(), channelUri, "URN1"));
    QCOMPARE(store().count("?anything a mfo:FeedMessage"), 0);
    store().update(text);
    const QList<FeedMessage> stored = tracker()->messagesForChannel(channelUri);
    QCOMPARE(stored.size(), 1);
    QCOMPARE(stored.first().title(), QString("Title"));
    QCOMPARE(stored.first().description(), QString("Text"));
    QCOMPARE(stored.first().summary(), QString("Summary"));
    QVERIFY(text.contains('<' + tracker()->allMessageUrls(channelUri).value(0) + '>'));
}

void TestStatementTemplate::queryIsNotRun()
{
    const QStringList before = everythingIn(store());
    tracker()->addMessageQuery(message(), channelUri);
    QCOMPARE(everythingIn(store()), before);
}

void TestStatementTemplate::queryWithoutChannelIsEmpty_data()
{
    QTest::addColumn<QString>("uri");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QString("");
}

void TestStatementTemplate::queryWithoutChannelIsEmpty()
{
    QFETCH(QString, uri);
    FeedMessage value = message();
    value.addEnclosure(enclosure());
    QString text = "none";
    QCOMPARE(journalOf([&] { text = tracker()->addMessageQuery(value, uri); }),
             QStringList(criticalLine("addMessageQuery", {"Invalied input, cannot proceed"})));
    QCOMPARE(text, QString());
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 0);
}

void TestStatementTemplate::eachQueryHasItsOwnUri()
{
    const QString both =
        tracker()->addMessageQuery(message(), channelUri) + tracker()->addMessageQuery(message(), channelUri);
    QCOMPARE(patterned(both),
             S::messageInsert(message(), QString(), channelUri, "URN1")
                 + S::messageInsert(message(), QString(), channelUri, "URN2"));
}

void TestStatementTemplate::queryHasThePublishedDateOnlyWhenItIsValid()
{
    FeedMessage value = message();
    value.setPublishedDate(QDateTime(QDate(2020, 1, 2), QTime(10, 0), Qt::OffsetFromUTC, 3600));
    QCOMPARE(patterned(tracker()->addMessageQuery(value, channelUri)),
             S::messageInsert(value, "2020-01-02T10:00:00+01:00", channelUri, "URN1"));
    value.setPublishedDate(QDateTime(QDate(2020, 2, 30), QTime(10, 0)));
    QVERIFY(!tracker()->addMessageQuery(value, channelUri).contains("contentCreated"));
}

void TestStatementTemplate::queryHasTheLinkOnlyWhenThereIsOne()
{
    const FeedMessage value = message(QString());
    const QString text = tracker()->addMessageQuery(value, channelUri);
    QVERIFY(!text.contains("nie:links"));
    QCOMPARE(patterned(text), S::messageInsert(value, QString(), channelUri, "URN1"));
}

void TestStatementTemplate::queryTakesTheChannelAsItIs()
{
    for (const char *text : {"urn:%4", "urn:%3", "urn:%", "HTTP://Example.ORG/%7E", "a b", "it's"}) {
        QCOMPARE(patterned(tracker()->addMessageQuery(message(), text)),
                 QString("INSERT { <URN1> a mfo:FeedMessage ; nie:isLogicalPartOf <") + text
                     + ">; nie:title \"Title\"; nie:description \"Text\"; nie:subject \"Summary\" ; "
                       "mfo:downloadedTime \"NOWZ\"^^xsd:dateTime ; nie:links \"http://example.org/1\" } ");
    }
}

void TestStatementTemplate::textsAreEscaped()
{
    const QString text = tracker()->addMessageQuery(
        messageWith("a\tb\nc\rd\be\ff", "\"quoted\" 'too'", "back\\slash \u00e4"), channelUri);
    QVERIFY(text.contains("nie:title \"a\\tb\\nc\\rd\\be\\ff\"; "));
    QVERIFY(text.contains("nie:description \"\\\"quoted\\\" \\'too\\'\"; "));
    QVERIFY(text.contains("nie:subject \"back\\\\slash \u00e4\" ; "));
    // The link is a literal too.
    QVERIFY(
        tracker()->addMessageQuery(message("a\"b\\c"), channelUri).contains("nie:links \"a\\\"b\\\\c\" } "));
}

void TestStatementTemplate::eachTextTakesItsPlace()
{
    QCOMPARE(patterned(tracker()->addMessageQuery(messageWith("T", "D", "S"), channelUri)),
             QString("INSERT { <URN1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c>; nie:title \"T\"; "
                     "nie:description \"D\"; nie:subject \"S\" ; "
                     "mfo:downloadedTime \"NOWZ\"^^xsd:dateTime ; nie:links \"http://example.org/1\" } "));
}

void TestStatementTemplate::textsAreNotSearchedForPlaces()
{
    const QString all = "%2%3%4%5%6%7%7E%25%%5";
    const FeedMessage value = messageWith(all, all, all);
    const QString text = tracker()->addMessageQuery(value, channelUri);
    QCOMPARE(text.count(asLiteral(all)), 3);
    QCOMPARE(patterned(text),
             QString("INSERT { <URN1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c>; nie:title \"") + all
                 + "\"; nie:description \"" + all + "\"; nie:subject \"" + all
                 + "\" ; mfo:downloadedTime \"NOWZ\"^^xsd:dateTime ; nie:links \"http://example.org/1\" } ");
}

void TestStatementTemplate::enclosuresAreStoredAtOnce()
{
    FeedMessage value = message();
    value.addEnclosure(enclosure());
    QString text;
    const QStringList journal = journalOf([&] { text = tracker()->addMessageQuery(value, channelUri); });
    QCOMPARE(journal.size(), 2);
    QCOMPARE(journal.first(), selectLine(S::enclosureLookup("http://example.org/1.ogg")));
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 1);
    // The enclosures belong to the message that the statement will store.
    const QString owner = store().texts("SELECT ?m { ?e nie:isLogicalPartOf ?m }").value(0);
    QVERIFY(!owner.isEmpty());
    QVERIFY(text.startsWith("INSERT { <" + owner + "> a mfo:FeedMessage "));
    QCOMPARE(store().count("?anything a mfo:FeedMessage"), 0);
}

void TestStatementTemplate::failingEnclosuresDoNotFailTheQuery()
{
    FeedMessage value = message();
    value.addEnclosure(enclosure());
    QString text;
    const QStringList journal = journalOf([&] { text = tracker()->addMessageQuery(value, channelUri); },
                                          {{1, StatementGate::Refuse}});
    QCOMPARE(journal.filter("critical").size(), 1);
    QVERIFY(journal.last().startsWith("critical addEnclosures: Query Execution failed "));
    QCOMPARE(patterned(text), S::messageInsert(message(), QString(), channelUri, "URN1"));
}

QTEST_GUILESS_MAIN(TestStatementTemplate)
#include "tst_statementtemplate.moc"
