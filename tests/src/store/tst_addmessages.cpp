// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QSparqlConnection>

#include <QtTest>

namespace S = Statements;

namespace {

const QString channelUri = "urn:c";

QString linkOf(int number) { return QString("http://example.org/%1").arg(number); }

FeedMessage message(int number = 1)
{
    FeedMessage result(QString("Title %1").arg(number), linkOf(number), QString("Text %1").arg(number),
                       QDateTime(QDate(2020, 1, 1), QTime(0, 0)));
    result.setSummary(QString("Summary %1").arg(number));
    return result;
}

FeedEnclosure enclosure(int number = 1)
{
    FeedEnclosure result;
    result.setRemoteUrl(QString("http://example.org/%1.ogg").arg(number));
    result.setMimeType("audio/ogg");
    return result;
}

FeedMessage messageWith(int number, const QList<FeedEnclosure> &enclosures)
{
    FeedMessage result = message(number);
    result.addEnclosure(enclosures);
    return result;
}

/// Returns a stored message, <urn:m:number>, that belongs to no channel.
QString insertStored(int number = 1)
{
    return QString("INSERT { <urn:m:%1> a mfo:FeedMessage ; nie:title 'stored' ; nie:links <%2> }")
        .arg(number)
        .arg(linkOf(number));
}

/// Returns a complete stored enclosure, <urn:e:number>, of the stored message.
QString insertStoredEnclosure(int number, int messageNumber)
{
    return QString("INSERT { <urn:e:%1> a mfo:Enclosure ; mfo:remoteLink <http://example.org/%1.ogg> ; "
                   "mfo:localLink <file:///1.ogg> ; nie:identifier 3 ; nie:contentSize 4 ; "
                   "mfo:groupDefault true ; mfo:optional false ; nie:isLogicalPartOf <urn:m:%2> }")
        .arg(number)
        .arg(messageNumber);
}

QString lookupLine(int number) { return selectLine(S::messageLookup(linkOf(number))); }

/// Returns the piece of the update for a new message without a published date.
QString piece(const FeedMessage &message, const QString &urn)
{
    return S::messageInsert(message, QString(), channelUri, urn);
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

class TestAddMessages : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void newMessageIsInserted();
    void exactlyTheseStatementsAreWritten();
    void severalMessagesAreOneUpdate();
    void emptyChannelUriIsRefused();
    void emptyListExecutesAnEmptyUpdate();
    void unknownChannelIsNotRefused();

    void downloadedTimeIsLocalTimeLabelledUtc();
    void publishedDates_data();
    void publishedDates();
    void messageWithoutPublishedDateHasNone();
    void messageWithoutLinkHasNone();
    void messageWithoutLinkIsAlwaysNew();
    void emptyTextsAreWritten();
    void otherFieldsAreNotWritten();
    void linkWithoutSchemeIsStoredAsItIs();

    void storedMessageIsOnlyAssociated();
    void storedMessagesOnlyMakeAssociations();
    void secondCallAssociatesAgain();
    void messageOfTwoChannelsBelongsToBoth();
    void newAndStoredMessagesAreOneUpdate();
    void linkFoundInAnotherSpellingIsNotAssociated();
    void sameLinkTwiceInOneListIsStoredTwice();
    void everyResourceWithTheLinkIsAssociated();

    void enclosuresAreStoredBeforeTheirMessage();
    void enclosureThatIsStoredIsSharedWithTheNewMessage();
    void storedMessageGetsItsNewEnclosures();
    void storedMessageWithAllEnclosuresGetsNone();
    void enclosuresThatCannotBeReadAreAllAdded_data();
    void enclosuresThatCannotBeReadAreAllAdded();
    void failingEnclosuresDoNotFailTheMessages_data();
    void failingEnclosuresDoNotFailTheMessages();

    void failure_data();
    void failure();
    void failedLookupKeepsEarlierEnclosuresOnly();
    void refusedUpdateKeepsEnclosuresOnly();

    void textsAreStoredAsTheyAre_data();
    void textsAreStoredAsTheyAre();
    void linksAreStoredAsTheyAre_data();
    void linksAreStoredAsTheyAre();
    void hundredsOfMessages();
};

void TestAddMessages::init()
{
    StoreTestCase::init();
    store().update("INSERT { <urn:c> a mfo:FeedChannel . <urn:d> a mfo:FeedChannel }");
}

void TestAddMessages::newMessageIsInserted()
{
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({message()}, channelUri); }),
             QStringList({lookupLine(1), insertLine(piece(message(), "URN1"))}));
    QVERIFY(done);
    const QList<FeedMessage> messages = tracker()->messagesForChannel(channelUri);
    QCOMPARE(messages.size(), 1);
    QCOMPARE(messages.first().title(), QString("Title 1"));
    QCOMPARE(messages.first().description(), QString("Text 1"));
    QCOMPARE(messages.first().summary(), QString("Summary 1"));
    QCOMPARE(messages.first().link(), linkOf(1));
    QVERIFY(!messages.first().isFavorite());
    QVERIFY(!messages.first().publishedDate().isValid());
}

void TestAddMessages::exactlyTheseStatementsAreWritten()
{
    const QStringList before = everythingIn(store());
    FeedMessage value = message();
    value.setPublishedDate(QDateTime(QDate(2020, 1, 2), QTime(10, 0), Qt::UTC));
    tracker()->addMessages({value}, channelUri);
    QStringList added = everythingIn(store());
    for (const QString &line : before)
        added.removeOne(line);
    QCOMPARE(patterned(added.join('\n')).split('\n'),
             QStringList({"URN1 a mfo:FeedMessage", "URN1 mfo:downloadedTime NOW.000Z",
                          "URN1 nie:contentCreated 2020-01-02T10:00:00.000Z", "URN1 nie:description Text 1",
                          "URN1 nie:isLogicalPartOf urn:c", "URN1 nie:links http://example.org/1",
                          "URN1 nie:subject Summary 1", "URN1 nie:title Title 1"}));
}

void TestAddMessages::severalMessagesAreOneUpdate()
{
    QCOMPARE(journalOf([&] {
                 tracker()->addMessages({message(2), message(1), message(3)}, channelUri);
             }),
             QStringList({lookupLine(2), lookupLine(1), lookupLine(3),
                          insertLine(piece(message(2), "URN1") + piece(message(1), "URN2")
                                     + piece(message(3), "URN3"))}));
    QCOMPARE(sorted(tracker()->messageLinksOfChannel(channelUri)),
             QStringList({linkOf(1), linkOf(2), linkOf(3)}));
}

void TestAddMessages::emptyChannelUriIsRefused()
{
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({message()}, ""); }),
             QStringList(criticalLine("addMessages", {"ChannelUri empty, not able to add messages"})));
    QVERIFY(!done);
}

void TestAddMessages::emptyListExecutesAnEmptyUpdate()
{
    const QStringList before = everythingIn(store());
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({}, channelUri); }), QStringList(insertLine("")));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestAddMessages::unknownChannelIsNotRefused()
{
    QVERIFY(tracker()->addMessages({message()}, "urn:unknown"));
    QCOMPARE(tracker()->messageLinksOfChannel("urn:unknown"), QStringList(linkOf(1)));
}

void TestAddMessages::downloadedTimeIsLocalTimeLabelledUtc()
{
    QVERIFY(tracker()->addMessages({message()}, channelUri));
    const QDateTime downloaded = tracker()->messagesForChannel(channelUri).first().downloadedTime();
    QCOMPARE(downloaded.offsetFromUtc(), 0);
    QCOMPARE(patterned(downloaded.toUTC().toString(Qt::ISODate)), QString("NOWZ"));
}

void TestAddMessages::publishedDates_data()
{
    QTest::addColumn<QDateTime>("date");
    QTest::addColumn<QString>("text");
    const QDate day(2020, 1, 2);
    QTest::newRow("UTC") << QDateTime(day, QTime(10, 0), Qt::UTC) << "2020-01-02T10:00:00Z";
    QTest::newRow("offset") << QDateTime(day, QTime(10, 0), Qt::OffsetFromUTC, 7200)
                            << "2020-01-02T10:00:00+02:00";
    QTest::newRow("negative offset") << QDateTime(day, QTime(23, 0), Qt::OffsetFromUTC, -12600)
                                     << "2020-01-02T23:00:00-03:30";
    QTest::newRow("local") << QDateTime(day, QTime(10, 0)) << "2020-01-02T10:00:00";
    QTest::newRow("milliseconds") << QDateTime(day, QTime(10, 0, 0, 400), Qt::UTC) << "2020-01-02T10:00:00Z";
    QTest::newRow("long ago") << QDateTime(QDate(1969, 12, 31), QTime(23, 59), Qt::UTC)
                              << "1969-12-31T23:59:00Z";
}

void TestAddMessages::publishedDates()
{
    QFETCH(QDateTime, date);
    QFETCH(QString, text);
    FeedMessage value = message();
    value.setPublishedDate(date);
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({value}, channelUri); }),
             QStringList({lookupLine(1), insertLine(S::messageInsert(value, text, channelUri, "URN1"))}));
    QVERIFY(done);
    const QDateTime stored = tracker()->messagesForChannel(channelUri).first().publishedDate();
    QCOMPARE(stored.toSecsSinceEpoch(), date.toSecsSinceEpoch());
    QCOMPARE(tracker()->latestPostPublishedTime(channelUri), stored);
}

void TestAddMessages::messageWithoutPublishedDateHasNone()
{
    QVERIFY(tracker()->addMessages({message()}, channelUri));
    QCOMPARE(store().count("?anything nie:contentCreated ?date"), 0);
}

void TestAddMessages::messageWithoutLinkHasNone()
{
    FeedMessage value = message();
    value.setLink(QString());
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({value}, channelUri); }),
             QStringList({selectLine(S::messageLookup("")), insertLine(piece(value, "URN1"))}));
    QVERIFY(done);
    QCOMPARE(store().count("?anything nie:links ?link"), 0);
    QCOMPARE(tracker()->messageLinksOfChannel(channelUri), QStringList(QString()));
}

void TestAddMessages::messageWithoutLinkIsAlwaysNew()
{
    FeedMessage value = message();
    value.setLink(QString());
    QVERIFY(tracker()->addMessages({value}, channelUri));
    QVERIFY(tracker()->addMessages({value}, channelUri));
    QCOMPARE(tracker()->allMessageUrls(channelUri).size(), 2);
}

void TestAddMessages::emptyTextsAreWritten()
{
    FeedMessage value;
    value.setLink(linkOf(1));
    QCOMPARE(journalOf([&] { tracker()->addMessages({value}, channelUri); }).last(),
             insertLine("INSERT { <URN1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c>; nie:title \"\"; "
                        "nie:description \"\"; nie:subject \"\" ; "
                        "mfo:downloadedTime \"NOWZ\"^^xsd:dateTime ; "
                        "nie:links \"http://example.org/1\" } "));
    QCOMPARE(tracker()->messagesForChannel(channelUri).size(), 1);
}

void TestAddMessages::otherFieldsAreNotWritten()
{
    FeedMessage value = message();
    value.setId("id");
    value.setFavorite(true);
    value.setBaseUrl(QUrl("http://example.org/"));
    QCOMPARE(journalOf([&] { tracker()->addMessages({value}, channelUri); }),
             QStringList({lookupLine(1), insertLine(piece(message(), "URN1"))}));
    QVERIFY(!tracker()->messagesForChannel(channelUri).first().isFavorite());
}

void TestAddMessages::linkWithoutSchemeIsStoredAsItIs()
{
    FeedMessage value = message();
    value.setLink("example.org/1");
    // The link is looked up in one form and stored in another, so it is never found.
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(journalOf([&] { tracker()->addMessages({value}, channelUri); }),
                 QStringList({lookupLine(1), insertLine(piece(value, "URN1"))}));
    }
    QCOMPARE(tracker()->messageLinksOfChannel(channelUri), QStringList({"example.org/1", "example.org/1"}));
}

void TestAddMessages::storedMessageIsOnlyAssociated()
{
    store().update(insertStored());
    const QStringList before = propertiesOf(store(), "urn:m:1");
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({message()}, channelUri); }),
             QStringList({lookupLine(1), selectLine(S::enclosuresForMessage("urn:m:1")),
                          insertLine(S::association(linkOf(1), channelUri))}));
    QVERIFY(done);
    QStringList after = propertiesOf(store(), "urn:m:1");
    QVERIFY(after.removeOne("nie:isLogicalPartOf urn:c"));
    QCOMPARE(after, before);
    QCOMPARE(store().count("?anything a mfo:FeedMessage"), 1);
}

void TestAddMessages::storedMessagesOnlyMakeAssociations()
{
    store().update(insertStored(1));
    store().update(insertStored(2));
    store().update(insertStoredEnclosure(1, 1));
    const QList<FeedMessage> messages = {messageWith(1, {enclosure(1), enclosure(2)}), message(2)};
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages(messages, channelUri); }),
             QStringList({lookupLine(1), selectLine(S::enclosuresForMessage("urn:m:1")),
                          selectLine(S::enclosureLookup("http://example.org/2.ogg")),
                          insertLine(S::enclosureInsert(enclosure(2), "urn:m:1", "URN1")), lookupLine(2),
                          selectLine(S::enclosuresForMessage("urn:m:2")),
                          insertLine(S::association(linkOf(1), channelUri)
                                     + S::association(linkOf(2), channelUri))}));
    QVERIFY(done);
    QCOMPARE(sorted(tracker()->allMessageUrls(channelUri)), QStringList({"urn:m:1", "urn:m:2"}));
    QCOMPARE(tracker()->enclosuresForMessage("urn:m:1").size(), 2);
}

void TestAddMessages::secondCallAssociatesAgain()
{
    QVERIFY(tracker()->addMessages({message()}, channelUri));
    const QStringList before = everythingIn(store());
    const QString uri = patterned(tracker()->allMessageUrls(channelUri).first());
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({message()}, channelUri); }),
             QStringList({lookupLine(1), selectLine(S::enclosuresForMessage(uri)),
                          insertLine(S::association(linkOf(1), channelUri))}));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestAddMessages::messageOfTwoChannelsBelongsToBoth()
{
    QVERIFY(tracker()->addMessages({message()}, "urn:c"));
    QVERIFY(tracker()->addMessages({message()}, "urn:d"));
    QCOMPARE(store().count("?anything a mfo:FeedMessage"), 1);
    QCOMPARE(tracker()->messagesForChannel("urn:c").size(), 1);
    QCOMPARE(tracker()->messagesForChannel("urn:d").size(), 1);
    QCOMPARE(tracker()->allMessageUrls("urn:c"), tracker()->allMessageUrls("urn:d"));
}

void TestAddMessages::newAndStoredMessagesAreOneUpdate()
{
    store().update(insertStored(2));
    QCOMPARE(journalOf([&] {
                 tracker()->addMessages({message(1), message(2), message(3)}, channelUri);
             }),
             QStringList({lookupLine(1), lookupLine(2), selectLine(S::enclosuresForMessage("urn:m:2")),
                          lookupLine(3),
                          insertLine(piece(message(1), "URN1") + S::association(linkOf(2), channelUri)
                                     + piece(message(3), "URN2"))}));
    QCOMPARE(tracker()->allMessageUrls(channelUri).size(), 3);
}

void TestAddMessages::linkFoundInAnotherSpellingIsNotAssociated()
{
    store().update(insertStored());
    FeedMessage value = message();
    value.setLink("HTTP://Example.ORG/1");
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({value}, channelUri); }),
             QStringList({lookupLine(1), selectLine(S::enclosuresForMessage("urn:m:1")),
                          insertLine(S::association("HTTP://Example.ORG/1", channelUri))}));
    QVERIFY(done);
    QVERIFY(tracker()->allMessageUrls(channelUri).isEmpty());
}

void TestAddMessages::sameLinkTwiceInOneListIsStoredTwice()
{
    QVERIFY(tracker()->addMessages({message(), message()}, channelUri));
    QCOMPARE(tracker()->messageLinksOfChannel(channelUri), QStringList({linkOf(1), linkOf(1)}));
}

void TestAddMessages::everyResourceWithTheLinkIsAssociated()
{
    store().update(insertStored());
    store().update("INSERT { <urn:m:other> a mfo:FeedMessage ; nie:links <http://example.org/1> }");
    QVERIFY(tracker()->addMessages({message()}, channelUri));
    QCOMPARE(sorted(tracker()->allMessageUrls(channelUri)), QStringList({"urn:m:1", "urn:m:other"}));
}

void TestAddMessages::enclosuresAreStoredBeforeTheirMessage()
{
    const FeedMessage value = messageWith(1, {enclosure(1), enclosure(2)});
    QCOMPARE(journalOf([&] {
                 tracker()->addMessages({value, message(2)}, channelUri);
             }),
             QStringList({lookupLine(1), selectLine(S::enclosureLookup("http://example.org/1.ogg")),
                          selectLine(S::enclosureLookup("http://example.org/2.ogg")),
                          insertLine(S::enclosureInsert(enclosure(1), "URN2", "URN1")
                                     + S::enclosureInsert(enclosure(2), "URN2", "URN3")),
                          lookupLine(2), insertLine(piece(value, "URN2") + piece(message(2), "URN4"))}));
    const QString link = QString("<%1>").arg(linkOf(1));
    const QString uri = store().texts("SELECT ?m { ?m nie:links " + link + " }").value(0);
    QCOMPARE(tracker()->enclosuresForMessage(uri).size(), 2);
}

void TestAddMessages::enclosureThatIsStoredIsSharedWithTheNewMessage()
{
    store().update(insertStored(2));
    store().update(insertStoredEnclosure(1, 2));
    QCOMPARE(journalOf([&] { tracker()->addMessages({messageWith(1, {enclosure(1)})}, channelUri); }),
             QStringList({lookupLine(1), selectLine(S::enclosureLookup("http://example.org/1.ogg")),
                          insertLine(S::enclosureLink("urn:e:1", "URN1")),
                          insertLine(piece(message(1), "URN1"))}));
    QCOMPARE(tracker()->enclosuresForMessage("urn:m:2").size(), 1);
    const QString uri = tracker()->allMessageUrls(channelUri).first();
    QCOMPARE(tracker()->enclosuresForMessage(uri).first().uri(), QString("urn:e:1"));
}

void TestAddMessages::storedMessageGetsItsNewEnclosures()
{
    store().update(insertStored());
    store().update(insertStoredEnclosure(1, 1));
    const FeedMessage value = messageWith(1, {enclosure(3), enclosure(1), enclosure(2), enclosure(1)});
    QCOMPARE(journalOf([&] { tracker()->addMessages({value}, channelUri); }),
             QStringList({lookupLine(1), selectLine(S::enclosuresForMessage("urn:m:1")),
                          selectLine(S::enclosureLookup("http://example.org/3.ogg")),
                          selectLine(S::enclosureLookup("http://example.org/2.ogg")),
                          insertLine(S::enclosureInsert(enclosure(3), "urn:m:1", "URN1")
                                     + S::enclosureInsert(enclosure(2), "urn:m:1", "URN2")),
                          insertLine(S::association(linkOf(1), channelUri))}));
    QCOMPARE(tracker()->enclosuresForMessage("urn:m:1").size(), 3);
}

void TestAddMessages::storedMessageWithAllEnclosuresGetsNone()
{
    store().update(insertStored());
    store().update(insertStoredEnclosure(1, 1));
    QCOMPARE(journalOf([&] { tracker()->addMessages({messageWith(1, {enclosure(1)})}, channelUri); }),
             QStringList({lookupLine(1), selectLine(S::enclosuresForMessage("urn:m:1")),
                          insertLine(S::association(linkOf(1), channelUri))}));
}

void TestAddMessages::enclosuresThatCannotBeReadAreAllAdded_data()
{
    QTest::addColumn<int>("verdict");
    QTest::addColumn<QString>("trace");
    QTest::newRow("no result") << int(StatementGate::NoResult)
                               << criticalLine("enclosuresForMessage", {"Query Execution failed"});
    QTest::newRow("refused") << int(StatementGate::Refuse)
                             << criticalLine(
                                    "enclosuresForMessage",
                                    {"Query Execution Failed", quoted(S::enclosuresForMessage("urn:m:1"))});
}

void TestAddMessages::enclosuresThatCannotBeReadAreAllAdded()
{
    QFETCH(int, verdict);
    QFETCH(QString, trace);
    store().update(insertStored());
    store().update(insertStoredEnclosure(1, 1));
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addMessages({messageWith(1, {enclosure(1)})}, channelUri); },
                       {{1, StatementGate::Verdict(verdict)}}),
             QStringList({lookupLine(1), selectLine(S::enclosuresForMessage("urn:m:1")), trace,
                          selectLine(S::enclosureLookup("http://example.org/1.ogg")),
                          insertLine(S::enclosureLink("urn:e:1", "urn:m:1")),
                          insertLine(S::association(linkOf(1), channelUri))}));
    QVERIFY(done);
}

void TestAddMessages::failingEnclosuresDoNotFailTheMessages_data()
{
    QTest::addColumn<bool>("isStored");
    QTest::addColumn<int>("statement");
    QTest::addColumn<int>("verdict");
    for (int verdict : {StatementGate::NoResult, StatementGate::Refuse}) {
        const char *how = verdict == StatementGate::NoResult ? "no result" : "refused";
        QTest::addRow("new message, lookup, %s", how) << false << 1 << verdict;
        QTest::addRow("new message, update, %s", how) << false << 2 << verdict;
        QTest::addRow("stored message, lookup, %s", how) << true << 2 << verdict;
        QTest::addRow("stored message, update, %s", how) << true << 3 << verdict;
    }
}

void TestAddMessages::failingEnclosuresDoNotFailTheMessages()
{
    QFETCH(bool, isStored);
    QFETCH(int, statement);
    QFETCH(int, verdict);
    if (isStored)
        store().update(insertStored());
    bool done = false;
    const QStringList journal =
        journalOf([&] { done = tracker()->addMessages({messageWith(1, {enclosure()})}, channelUri); },
                  {{statement, StatementGate::Verdict(verdict)}});
    QVERIFY(done);
    QCOMPARE(journal.filter("critical ").size(), 1);
    QCOMPARE(journal.filter("critical addEnclosures: ").size(), 1);
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 0);
    QCOMPARE(tracker()->messageLinksOfChannel(channelUri), QStringList(linkOf(1)));
}

void TestAddMessages::failure_data()
{
    addFailureColumns();
    const auto row = [=](const QString &name, const Intervention &intervention, const QStringList &journal) {
        addFailureRow(
            name,
            [=] {
                return !tracker()->addMessages({message(1), message(2)}, channelUri);
            },
            {intervention}, journal);
    };
    const QString update = piece(message(1), "URN1") + piece(message(2), "URN2");
    const QStringList all = {lookupLine(1), lookupLine(2), insertLine(update)};
    for (int i = 0; i < 2; ++i) {
        row(QString("lookup %1, no result").arg(i), {i, StatementGate::NoResult},
            all.mid(0, i + 1) + QStringList(criticalLine("addMessages", {"Query Execution failed"})));
        row(QString("lookup %1, refused").arg(i), {i, StatementGate::Refuse},
            all.mid(0, i + 1)
                + QStringList(criticalLine(
                    "addMessages", {"Query Execution Failed", quoted(S::messageLookup(linkOf(i + 1)))})));
    }
    row("update, no result", {2, StatementGate::NoResult},
        all + QStringList(criticalLine("addMessages", {"Query Execution failed"})));
}

void TestAddMessages::failure()
{
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
}

void TestAddMessages::failedLookupKeepsEarlierEnclosuresOnly()
{
    bool done = true;
    const QStringList journal = journalOf(
        [&] {
            done = tracker()->addMessages({messageWith(1, {enclosure()}), message(2)}, channelUri);
        },
        {{3, StatementGate::NoResult}});
    QVERIFY(!done);
    QCOMPARE(journal.mid(3),
             QStringList({lookupLine(2), criticalLine("addMessages", {"Query Execution failed"})}));
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 1);
    QCOMPARE(store().count("?anything a mfo:FeedMessage"), 0);
}

void TestAddMessages::refusedUpdateKeepsEnclosuresOnly()
{
    bool done = true;
    const QStringList journal =
        journalOf([&] { done = tracker()->addMessages({messageWith(1, {enclosure()})}, channelUri); },
                  {{3, StatementGate::Refuse}});
    QVERIFY(!done);
    QCOMPARE(journal.last(), criticalLine("addMessages", {"Failed: ", refusalError()}));
    QCOMPARE(journal.at(3), insertLine(piece(message(1), "URN2")));
    QCOMPARE(journal.size(), 5);
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 1);
    QCOMPARE(store().count("?anything a mfo:FeedMessage"), 0);
}

void TestAddMessages::textsAreStoredAsTheyAre_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("non-ASCII") << QString::fromUtf8(
        "Gr\u00fc\u00dfe \u4f60\u597d \U0001f4f0 \u202eabc\u202c \u2028 \u00a0");
    QTest::newRow("quotes") << QString("\"double\" 'single' \"\"\" '''");
    QTest::newRow("quote at the end") << QString("a\"");
    QTest::newRow("backslashes") << QString("\\ \\\\ \\\" \\n \\u0022 \\U00000022 \\");
    QTest::newRow("line breaks") << QString("a\nb\r\nc\td\be\ff\n");
    QTest::newRow("places of the template") << QString("%2 %3 %4 %5 %6 %7 %7E %25 %5%4");
    QTest::newRow("places of another template") << QString("%link %channelUri %messageUri %size");
    QTest::newRow("placeholders") << QString("?:link ?:title $:title ?:x ?_x $_x");
    QTest::newRow("a statement") << QString(
        "\" } DELETE { ?c a rdfs:Resource } WHERE { ?c a mfo:FeedChannel } INSERT { <urn:x> nie:title \"");
    QTest::newRow("IRIs") << QString("<> <urn:x> <a b>");
    QTest::newRow("typed dates") << QString(
        "\"2020-01-01T10:00:00+02:00\"^^xsd:dateTime 2020-01-01T10:00:00+02:00");
    QTest::newRow("only a date") << QString("2020-01-01T10:00:00+02:00");
    QTest::newRow("comment") << QString("# comment\n# comment");
    QTest::newRow("braces") << QString("} { } ; . , INSERT {");
    QTest::newRow("HTML") << QString("<p class=\"a\">it's &amp; <br/>\n</p>");
    QTest::newRow("blanks") << QString("  two  blanks  ");
    QTest::newRow("long") << QString("0123456789 \"quoted\"\n").repeated(10000) + "end";
}

void TestAddMessages::textsAreStoredAsTheyAre()
{
    QFETCH(QString, text);
    const FeedMessage value(text, linkOf(1), QString(), text, text, QDateTime(), {}, QDateTime(), false);
    // The text must not change the messages before and behind it.
    QVERIFY(tracker()->addMessages({message(2), value, message(3)}, channelUri));
    const auto rows =
        store().select(QString("SELECT ?t ?d ?s { ?m nie:links <%1> ; nie:title ?t ; nie:description ?d ; "
                               "nie:subject ?s }")
                           .arg(linkOf(1)));
    QCOMPARE(rows.size(), size_t(1));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(rows.front().value(i).toString(), text);
    QCOMPARE(tracker()->messagesForChannel(channelUri).size(), 3);
    QCOMPARE(store().count("?anything a mfo:FeedChannel"), 2);
}

void TestAddMessages::linksAreStoredAsTheyAre_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("escapes") << "http://example.org/%7Euser/%2Fa%20b?q=%22#top";
    QTest::newRow("places of the template") << "http://example.org/%5/%7E%4%2";
    QTest::newRow("non-ASCII") << QString::fromUtf8("http://example.org/\u00e4/\u4f60");
    QTest::newRow("apostrophe") << "http://example.org/it's";
    QTest::newRow("ampersands") << "http://example.org/?a=1&b=2;c=(3)*$!,@";
    QTest::newRow("URN") << "urn:feed:http%3A%2F%2Fexample.org:1";
    QTest::newRow("placeholder") << "http://example.org/?:link?_x";
}

void TestAddMessages::linksAreStoredAsTheyAre()
{
    QFETCH(QString, link);
    FeedMessage value = message();
    value.setLink(link);
    QVERIFY(tracker()->addMessages({value}, channelUri));
    QCOMPARE(tracker()->messageLinksOfChannel(channelUri), QStringList(link));
}

void TestAddMessages::hundredsOfMessages()
{
    QList<FeedMessage> messages;
    for (int i = 0; i < 300; ++i)
        messages.append(message(i));
    QVERIFY(tracker()->addMessages(messages, channelUri));
    QVERIFY(tracker()->addMessages(messages, "urn:d"));
    QCOMPARE(store().count("?anything a mfo:FeedMessage"), 300);
    QCOMPARE(tracker()->messagesForChannel("urn:d").size(), 300);
}

QTEST_GUILESS_MAIN(TestAddMessages)
#include "tst_addmessages.moc"
