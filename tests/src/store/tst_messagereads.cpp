// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QtTest>

namespace {

QDateTime utc(int hour) { return QDateTime(QDate(2020, 1, 2), QTime(hour, 0), Qt::UTC); }

/// The properties that messagesForChannel() requires.
QStringList requiredOfAMessage(int number)
{
    return {QString("nie:title 'Title %1'").arg(number), QString("nie:description 'Text %1'").arg(number),
            QString("nie:subject 'Summary %1'").arg(number),
            QString("nie:links <http://example.org/%1>").arg(number),
            QString("mfo:downloadedTime '2020-01-02T%1:00:00Z'").arg(10 + number)};
}

/// Returns a statement that stores a message of <urn:c>.
QString insertMessage(int number, const QStringList &properties)
{
    return QString("INSERT { <urn:m:%1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c> ; %2 }")
        .arg(number)
        .arg(properties.join(" ; "));
}

QString insertMessage(int number) { return insertMessage(number, requiredOfAMessage(number)); }

const char insertChannel[] = "INSERT { <urn:c> a mfo:FeedChannel }";

/// The properties that enclosuresForMessage() requires.
QStringList requiredOfAnEnclosure()
{
    return {"mfo:remoteLink <http://example.org/1.ogg>",
            "mfo:localLink <file:///1.ogg>",
            "nie:identifier 3",
            "nie:contentSize 4000",
            "mfo:groupDefault true",
            "mfo:optional false"};
}

/// Returns a statement that stores an enclosure of <urn:m:1>.
QString insertEnclosure(const QStringList &properties)
{
    return QString("INSERT { <urn:e> a mfo:Enclosure ; nie:isLogicalPartOf <urn:m:1> ; %1 }")
        .arg(properties.join(" ; "));
}

QStringList titles(const QList<FeedMessage> &messages)
{
    QStringList result;
    for (const FeedMessage &message : messages)
        result.append(message.title());
    return result;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

class TestMessageReads : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void channelWithoutMessagesWritesNoTrace();
    void messageIsListedWithItsFields();
    void messagesAreSortedByDownloadedTime();
    void messagesOfOtherChannelsAreLeftOut();
    void messageOfTwoChannelsBelongsToBoth();
    void untaggedMessageIsListedOnce();
    void messageIsListedOncePerTag();
    void incompleteMessageIsNotListed_data();
    void incompleteMessageIsNotListed();
    void messagesAreSelectedByText();

    void messageWithoutEnclosuresHasNone();
    void enclosuresOfAMessageCarryTheMimeTypeAsIcon();
    void enclosureWithoutMimeTypeOrImageIsListed();
    void incompleteEnclosureIsNotListed_data();
    void incompleteEnclosureIsNotListed();
    void sharedEnclosureBelongsToBothMessages();

    void enclosureIsFoundWithAllFields();
    void bareEnclosureIsFound();
    void emptyUriYieldsADefaultEnclosure();
    void unknownUriYieldsADefaultEnclosure();
    void otherResourceIsNoEnclosure();

    void messageUrisAreListed();
    void messageLinksAreListed();
    void messageWithoutLinksHasAnEmptyOne();
    void messageWithSeveralLinksIsListedOncePerLink();

    void newestPublishedDateIsTheLatest();
    void newestInstantIsTheLatestInAnyZone();
    void channelWithoutPublishedDatesHasNoLatest();
    void channelWithoutMessagesHasNoLatest();
    void undatedMessageDoesNotHideTheLatest();

    void emptyArgumentIsQueried();
    void uriIsBoundAsAResource();
    void failure_data();
    void failure();
};

void TestMessageReads::init()
{
    StoreTestCase::init();
    store().update(insertChannel);
}

void TestMessageReads::channelWithoutMessagesWritesNoTrace()
{
    QList<FeedMessage> messages = {FeedMessage()};
    QCOMPARE(journalOf([&] { messages = tracker()->messagesForChannel("urn:c"); }),
             QStringList(selectLine(Statements::messagesForChannel("urn:c"))));
    QVERIFY(messages.isEmpty());
}

void TestMessageReads::messageIsListedWithItsFields()
{
    store().update(insertMessage(1,
                                 requiredOfAMessage(1)
                                     + QStringList({"nie:contentCreated '2020-01-02T09:00:00Z'",
                                                    "nao:hasTag nao:predefined-tag-favorite"})));
    QList<FeedMessage> messages;
    QCOMPARE(journalOf([&] { messages = tracker()->messagesForChannel("urn:c"); }),
             QStringList(selectLine(Statements::messagesForChannel("urn:c"))));
    QCOMPARE(messages.size(), 1);
    const FeedMessage message = messages.first();
    QCOMPARE(message.title(), QString("Title 1"));
    QCOMPARE(message.description(), QString("Text 1"));
    QCOMPARE(message.summary(), QString("Summary 1"));
    QCOMPARE(message.link(), QString("http://example.org/1"));
    QCOMPARE(message.downloadedTime(), utc(11));
    QCOMPARE(message.publishedDate(), utc(9));
    QVERIFY(message.isFavorite());
}

void TestMessageReads::messagesAreSortedByDownloadedTime()
{
    for (int number : {3, 1, 4, 2})
        store().update(insertMessage(number));
    QCOMPARE(titles(tracker()->messagesForChannel("urn:c")),
             QStringList({"Title 1", "Title 2", "Title 3", "Title 4"}));
}

void TestMessageReads::messagesOfOtherChannelsAreLeftOut()
{
    store().update("INSERT { <urn:d> a mfo:FeedChannel }");
    store().update(insertMessage(1));
    QVERIFY(tracker()->messagesForChannel("urn:d").isEmpty());
    QVERIFY(tracker()->allMessageUrls("urn:d").isEmpty());
    QVERIFY(tracker()->messageLinksOfChannel("urn:d").isEmpty());
    QCOMPARE(tracker()->messagesForChannel("urn:c").size(), 1);
}

void TestMessageReads::messageOfTwoChannelsBelongsToBoth()
{
    store().update("INSERT { <urn:d> a mfo:FeedChannel }");
    store().update(insertMessage(1));
    store().update("INSERT { <urn:m:1> nie:isLogicalPartOf <urn:d> }");
    for (const char *channel : {"urn:c", "urn:d"}) {
        QCOMPARE(titles(tracker()->messagesForChannel(channel)), QStringList("Title 1"));
        QCOMPARE(tracker()->allMessageUrls(channel), QStringList("urn:m:1"));
    }
}

void TestMessageReads::untaggedMessageIsListedOnce()
{
    store().update(insertMessage(1));
    const QList<FeedMessage> messages = tracker()->messagesForChannel("urn:c");
    QCOMPARE(messages.size(), 1);
    QVERIFY(!messages.first().isFavorite());
}

void TestMessageReads::messageIsListedOncePerTag()
{
    store().update("INSERT { <urn:tag> a nao:Tag }");
    store().update(insertMessage(
        1, requiredOfAMessage(1) + QStringList("nao:hasTag nao:predefined-tag-favorite, <urn:tag>")));
    const QList<FeedMessage> messages = tracker()->messagesForChannel("urn:c");
    QCOMPARE(titles(messages), QStringList({"Title 1", "Title 1"}));
    QVERIFY(messages.first().isFavorite());
    QVERIFY(messages.last().isFavorite());
}

void TestMessageReads::incompleteMessageIsNotListed_data()
{
    QTest::addColumn<int>("missing");
    const QStringList properties = requiredOfAMessage(1);
    for (int i = 0; i < properties.size(); ++i)
        QTest::newRow(qPrintable(properties.at(i).section(' ', 0, 0))) << i;
}

void TestMessageReads::incompleteMessageIsNotListed()
{
    QFETCH(int, missing);
    QStringList properties = requiredOfAMessage(1);
    properties.removeAt(missing);
    store().update(insertMessage(1, properties));
    QVERIFY(tracker()->messagesForChannel("urn:c").isEmpty());
    QCOMPARE(tracker()->allMessageUrls("urn:c"), QStringList("urn:m:1"));
}

void TestMessageReads::messagesAreSelectedByText()
{
    // The URI is bound as a text, which is escaped, and not as a resource, which is encoded.
    const QString uri = "urn:\"c\\";
    QCOMPARE(journalOf([&] { tracker()->messagesForChannel(uri); }),
             QStringList(selectLine(Statements::messagesForChannel("urn:\\\"c\\\\"))));
}

void TestMessageReads::messageWithoutEnclosuresHasNone()
{
    store().update(insertMessage(1));
    QList<FeedEnclosure> enclosures = {FeedEnclosure()};
    QCOMPARE(journalOf([&] { enclosures = tracker()->enclosuresForMessage("urn:m:1"); }),
             QStringList(selectLine(Statements::enclosuresForMessage("urn:m:1"))));
    QVERIFY(enclosures.isEmpty());
}

void TestMessageReads::enclosuresOfAMessageCarryTheMimeTypeAsIcon()
{
    store().update(insertMessage(1));
    store().update(insertEnclosure(requiredOfAnEnclosure()
                                   + QStringList({"nie:mimeType 'audio/ogg'", "mfo:image '/audio.png'"})));
    const QList<FeedEnclosure> enclosures = tracker()->enclosuresForMessage("urn:m:1");
    QCOMPARE(enclosures.size(), 1);
    FeedEnclosure expected("urn:e", "http://example.org/1.ogg", "file:///1.ogg", QString(), 4000,
                           FeedEnclosure::Essential, 3, true);
    expected.setTypeIcon("audio/ogg");
    QCOMPARE(debugText(enclosures.first()), debugText(expected));
}

void TestMessageReads::enclosureWithoutMimeTypeOrImageIsListed()
{
    store().update(insertMessage(1));
    store().update(insertEnclosure(requiredOfAnEnclosure()));
    const QList<FeedEnclosure> enclosures = tracker()->enclosuresForMessage("urn:m:1");
    QCOMPARE(enclosures.size(), 1);
    QCOMPARE(enclosures.first().typeIcon(), QString());
}

void TestMessageReads::incompleteEnclosureIsNotListed_data()
{
    QTest::addColumn<int>("missing");
    const QStringList properties = requiredOfAnEnclosure();
    for (int i = 0; i < properties.size(); ++i)
        QTest::newRow(qPrintable(properties.at(i).section(' ', 0, 0))) << i;
}

void TestMessageReads::incompleteEnclosureIsNotListed()
{
    QFETCH(int, missing);
    QStringList properties = requiredOfAnEnclosure();
    properties.removeAt(missing);
    store().update(insertMessage(1));
    store().update(insertEnclosure(properties));
    QVERIFY(tracker()->enclosuresForMessage("urn:m:1").isEmpty());
    QCOMPARE(tracker()->enclosureForUri("urn:e").uri(), QString("urn:e"));
}

void TestMessageReads::sharedEnclosureBelongsToBothMessages()
{
    store().update(insertMessage(1));
    store().update(insertMessage(2));
    store().update(insertEnclosure(requiredOfAnEnclosure()));
    QVERIFY(tracker()->enclosuresForMessage("urn:m:2").isEmpty());
    store().update("INSERT { <urn:e> nie:isLogicalPartOf <urn:m:2> }");
    QCOMPARE(tracker()->enclosuresForMessage("urn:m:1").size(), 1);
    QCOMPARE(tracker()->enclosuresForMessage("urn:m:2").size(), 1);
}

void TestMessageReads::enclosureIsFoundWithAllFields()
{
    store().update(insertMessage(1));
    store().update(insertEnclosure(requiredOfAnEnclosure()
                                   + QStringList({"nie:mimeType 'audio/ogg'", "mfo:image '/audio.png'"})));
    FeedEnclosure enclosure;
    const QStringList journal = journalOf([&] { enclosure = tracker()->enclosureForUri("urn:e"); });
    QCOMPARE(journal,
             QStringList({selectLine(Statements::enclosureForUri("urn:e")),
                          debugLine("enclosureForUri", {quoted("urn:e")})}));
    FeedEnclosure expected("urn:e", "http://example.org/1.ogg", "file:///1.ogg", QString(), 4000,
                           FeedEnclosure::Essential, 3, true);
    expected.setTypeIcon("/audio.png");
    expected.setMimeType("audio/ogg");
    QCOMPARE(debugText(enclosure), debugText(expected));
}

void TestMessageReads::bareEnclosureIsFound()
{
    store().update("INSERT { <urn:e> a mfo:Enclosure }");
    const FeedEnclosure expected("urn:e", QString(), QString(), QString(), 0, FeedEnclosure::Essential, 0,
                                 false);
    QCOMPARE(debugText(tracker()->enclosureForUri("urn:e")), debugText(expected));
}

void TestMessageReads::emptyUriYieldsADefaultEnclosure()
{
    FeedEnclosure enclosure;
    enclosure.setUri("urn:e");
    QCOMPARE(journalOf([&] { enclosure = tracker()->enclosureForUri(""); }),
             QStringList(criticalLine("enclosureForUri", {"Empty uri: returning empty enclosure"})));
    QCOMPARE(debugText(enclosure), debugText(FeedEnclosure()));
}

void TestMessageReads::unknownUriYieldsADefaultEnclosure()
{
    FeedEnclosure enclosure;
    enclosure.setUri("urn:e");
    QCOMPARE(
        journalOf([&] { enclosure = tracker()->enclosureForUri("urn:unknown"); }),
        QStringList({selectLine(Statements::enclosureForUri("urn:unknown")),
                     criticalLine("enclosureForUri", {"Result not retrieved: returning empty enclosure"})}));
    QCOMPARE(debugText(enclosure), debugText(FeedEnclosure()));
}

void TestMessageReads::otherResourceIsNoEnclosure()
{
    QCOMPARE(debugText(tracker()->enclosureForUri("urn:c")), debugText(FeedEnclosure()));
}

void TestMessageReads::messageUrisAreListed()
{
    store().update(insertMessage(1));
    store().update(insertMessage(2, {"nie:title 'Another'"}));
    store().update("INSERT { <urn:e> a mfo:Enclosure ; nie:isLogicalPartOf <urn:c> }");
    QStringList uris;
    QCOMPARE(journalOf([&] { uris = tracker()->allMessageUrls("urn:c"); }),
             QStringList(selectLine(Statements::allMessageUrls("urn:c"))));
    QCOMPARE(sorted(uris), QStringList({"urn:m:1", "urn:m:2"}));
}

void TestMessageReads::messageLinksAreListed()
{
    store().update(insertMessage(1));
    store().update(insertMessage(2));
    store().update("INSERT { <urn:e> a mfo:Enclosure ; nie:isLogicalPartOf <urn:c> }");
    QStringList links;
    QCOMPARE(journalOf([&] { links = tracker()->messageLinksOfChannel("urn:c"); }),
             QStringList(selectLine(Statements::messageLinksOfChannel("urn:c"))));
    QCOMPARE(sorted(links), QStringList({"http://example.org/1", "http://example.org/2"}));
}

void TestMessageReads::messageWithoutLinksHasAnEmptyOne()
{
    store().update(insertMessage(1, {"nie:title 'T'"}));
    QCOMPARE(tracker()->messageLinksOfChannel("urn:c"), QStringList(QString()));
}

void TestMessageReads::messageWithSeveralLinksIsListedOncePerLink()
{
    store().update(insertMessage(1));
    store().update("INSERT { GRAPH <urn:g> { <urn:m:1> a nie:InformationElement ; "
                   "nie:links <http://example.org/2> } }");
    // A connection only knows the graphs that existed when it was opened.
    FeedTrackerSparql::releaseInstance();
    QCOMPARE(sorted(tracker()->messageLinksOfChannel("urn:c")),
             QStringList({"http://example.org/1", "http://example.org/2"}));
}

void TestMessageReads::newestPublishedDateIsTheLatest()
{
    for (int hour : {11, 15, 13}) {
        store().update(insertMessage(hour, {QString("nie:contentCreated '2020-01-02T%1:00:00Z'").arg(hour)}));
    }
    QDateTime latest;
    QCOMPARE(journalOf([&] { latest = tracker()->latestPostPublishedTime("urn:c"); }),
             QStringList(selectLine(Statements::latestPostPublishedTime("urn:c"))));
    QCOMPARE(latest, utc(15));
    QCOMPARE(latest,
             store().select(Statements::latestPostPublishedTime("urn:c")).front().value(0).toDateTime());
}

void TestMessageReads::newestInstantIsTheLatestInAnyZone()
{
    store().update(insertMessage(1, {"nie:contentCreated '2020-01-02T10:00:00Z'^^xsd:dateTime"}));
    store().update(insertMessage(2, {"nie:contentCreated '2020-01-02T09:00:00-03:00'^^xsd:dateTime"}));
    store().update(insertMessage(3, {"nie:contentCreated '2020-01-02T16:00:00'^^xsd:dateTime"}));
    QCOMPARE(tracker()->latestPostPublishedTime("urn:c"), utc(12));
}

void TestMessageReads::channelWithoutPublishedDatesHasNoLatest()
{
    store().update(insertMessage(1));
    QDateTime latest = utc(1);
    QCOMPARE(journalOf([&] { latest = tracker()->latestPostPublishedTime("urn:c"); }),
             QStringList(selectLine(Statements::latestPostPublishedTime("urn:c"))));
    QVERIFY(!latest.isValid());
}

void TestMessageReads::channelWithoutMessagesHasNoLatest()
{
    QDateTime latest = utc(1);
    QCOMPARE(journalOf([&] { latest = tracker()->latestPostPublishedTime("urn:c"); }),
             QStringList(selectLine(Statements::latestPostPublishedTime("urn:c"))));
    QVERIFY(!latest.isValid());
}

void TestMessageReads::undatedMessageDoesNotHideTheLatest()
{
    store().update(insertMessage(1));
    store().update(insertMessage(2, {"nie:contentCreated '2020-01-02T10:00:00Z'"}));
    store().update(insertMessage(3));
    QCOMPARE(tracker()->latestPostPublishedTime("urn:c"), utc(10));
}

void TestMessageReads::emptyArgumentIsQueried()
{
    QCOMPARE(journalOf([&] {
                 tracker()->messagesForChannel("");
                 tracker()->enclosuresForMessage("");
                 tracker()->allMessageUrls("");
                 tracker()->messageLinksOfChannel("");
                 tracker()->latestPostPublishedTime("");
             }),
             QStringList({selectLine(Statements::messagesForChannel("")),
                          selectLine(Statements::enclosuresForMessage("")),
                          selectLine(Statements::allMessageUrls("")),
                          selectLine(Statements::messageLinksOfChannel("")),
                          selectLine(Statements::latestPostPublishedTime(""))}));
}

void TestMessageReads::uriIsBoundAsAResource()
{
    const QString uri = "http://example.org/a b?q=\">";
    const QString encoded = "http://example.org/a%20b?q=%22%3E";
    QCOMPARE(
        journalOf([&] {
            tracker()->enclosuresForMessage(uri);
            tracker()->enclosureForUri(uri);
            tracker()->allMessageUrls(uri);
            tracker()->messageLinksOfChannel(uri);
            tracker()->latestPostPublishedTime(uri);
        }),
        QStringList({selectLine(Statements::enclosuresForMessage(encoded)),
                     selectLine(Statements::enclosureForUri(encoded)),
                     criticalLine("enclosureForUri", {"Result not retrieved: returning empty enclosure"}),
                     selectLine(Statements::allMessageUrls(encoded)),
                     selectLine(Statements::messageLinksOfChannel(encoded)),
                     selectLine(Statements::latestPostPublishedTime(encoded))}));
}

void TestMessageReads::failure_data()
{
    namespace S = Statements;
    addFailureRows(
        {{"messagesForChannel", [=] { return tracker()->messagesForChannel("urn:c").isEmpty(); },
          S::messagesForChannel("urn:c"), "Query Execution Failed", "Query Execution Failed"},
         {"enclosuresForMessage", [=] { return tracker()->enclosuresForMessage("urn:m:1").isEmpty(); },
          S::enclosuresForMessage("urn:m:1"), "Query Execution failed", "Query Execution Failed"},
         {"enclosureForUri",
          [=] { return debugText(tracker()->enclosureForUri("urn:e")) == debugText(FeedEnclosure()); },
          S::enclosureForUri("urn:e"), "Query Execution Failed",
          "Executing query failed: returning empty enclosure"},
         {"allMessageUrls", [=] { return tracker()->allMessageUrls("urn:c").isEmpty(); },
          S::allMessageUrls("urn:c"), "Query Execution failed",
          "Executing query failed: returning empty enclosure"},
         {"messageLinksOfChannel", [=] { return tracker()->messageLinksOfChannel("urn:c").isEmpty(); },
          S::messageLinksOfChannel("urn:c"), "Query Execution failed",
          "Executing query failed: returning empty list "},
         {"latestPostPublishedTime", [=] { return !tracker()->latestPostPublishedTime("urn:c").isValid(); },
          S::latestPostPublishedTime("urn:c"), "Query Execution failed",
          "Executing query failed: returning empty enclosure"}});
}

void TestMessageReads::failure()
{
    store().update(
        insertMessage(1, requiredOfAMessage(1) + QStringList("nie:contentCreated '2020-01-02T09:00:00Z'")));
    store().update(insertEnclosure(requiredOfAnEnclosure()));
    checkFailingOperation();
}

QTEST_GUILESS_MAIN(TestMessageReads)
#include "tst_messagereads.moc"
