// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QSparqlResultRow>

#include <QtTest>

namespace {

/// Returns a row as a driver returns it. An invalid value stands for an unbound column.
QSparqlResultRow row(const QVariantList &values)
{
    QSparqlResultRow result;
    int column = 0;
    for (const QVariant &value : values)
        result.append(QSparqlBinding(QString("column%1").arg(++column), value));
    return result;
}

QDateTime local(int hour, int minute) { return QDateTime(QDate(2020, 1, 2), QTime(hour, minute)); }

/// Return all fields as text, for comparisons.
QString dump(const FeedChannel &channel)
{
    return debugText(channel) + channel.lastModifiedTime() + debugText(channel.subscribedTime())
        + debugText(channel.updatedTime());
}

QString dump(const FeedMessage &message) { return debugText(message) + message.baseUrl().toString(); }

QString dump(const FeedEnclosure &enclosure) { return debugText(enclosure); }

} // namespace

class TestRowExtraction : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void emptyRowYieldsADefaultChannel();
    void emptyRowYieldsADefaultMessage();
    void emptyRowYieldsADefaultEnclosure();
    void rowOfUnboundColumnsIsNotEmpty();

    void channelTakesEachColumn();
    void channelTimesBecomeLocal_data();
    void channelTimesBecomeLocal();
    void narrowChannelRowLeavesTheRestEmpty();
    void channelsAreReadFromTheStore();

    void messageTakesEachColumn();
    void messageTextsAreKeptAsTheyAre();
    void messageDates_data();
    void messageDates();
    void messageFavorite_data();
    void messageFavorite();
    void narrowMessageRowLeavesTheRestEmpty();
    void messagesAreReadFromTheStore();
    void unboundPublishedDateIsInvalid();

    void enclosureTakesEachColumn();
    void enclosureNumbers_data();
    void enclosureNumbers();
    void enclosureFlags_data();
    void enclosureFlags();
    void eightColumnsPutTheMimeTypeInTheTypeIcon();
    void enclosuresAreReadFromTheStore();
    void enclosuresOfAMessageAreReadFromTheStore();
};

void TestRowExtraction::emptyRowYieldsADefaultChannel()
{
    FeedChannel channel;
    const QStringList journal = journalOf([&channel] { channel = extractChannel(QSparqlResultRow()); });
    QCOMPARE(journal, QStringList(criticalLine("extractChannel", {"Empty row: returning empty channel"})));
    QCOMPARE(dump(channel), dump(FeedChannel()));
}

void TestRowExtraction::emptyRowYieldsADefaultMessage()
{
    FeedMessage message;
    const QStringList journal = journalOf([&message] { message = extractMessage(QSparqlResultRow()); });
    QCOMPARE(journal, QStringList(criticalLine("extractMessage", {"Empty row: returning empty message"})));
    QCOMPARE(dump(message), dump(FeedMessage()));
}

void TestRowExtraction::emptyRowYieldsADefaultEnclosure()
{
    FeedEnclosure enclosure;
    const QStringList journal = journalOf([&enclosure] { enclosure = extractEnclosure(QSparqlResultRow()); });
    QCOMPARE(journal,
             QStringList(criticalLine("extractEnclosure", {"Empty row: returning empty enclosure"})));
    QCOMPARE(dump(enclosure), dump(FeedEnclosure()));
    QCOMPARE(enclosure.type(), FeedEnclosure::Optional);
}

void TestRowExtraction::rowOfUnboundColumnsIsNotEmpty()
{
    FeedEnclosure enclosure;
    const QStringList journal = journalOf([&enclosure] {
        extractChannel(row({QVariant()}));
        extractMessage(row({QVariant()}));
        enclosure = extractEnclosure(row({QVariant()}));
    });
    QCOMPARE(journal, QStringList());
    QCOMPARE(enclosure.type(), FeedEnclosure::Essential);
}

void TestRowExtraction::channelTakesEachColumn()
{
    FeedChannel channel;
    const QStringList journal = journalOf([&channel] {
        channel = extractChannel(row({"urn:c", " A  title ", "http://example.org/feed", "rss", "Thu, 02 Jan",
                                      "2020-01-02T10:00:00", "2020-01-02T11:00:00", "beyond"}));
    });
    QCOMPARE(journal, QStringList());
    QCOMPARE(channel.uri(), QString("urn:c"));
    QCOMPARE(channel.title(), QString("A title"));
    QCOMPARE(channel.link(), QString("http://example.org/feed"));
    QCOMPARE(channel.type(), QString("rss"));
    QCOMPARE(channel.lastModifiedTime(), QString("Thu, 02 Jan"));
    QCOMPARE(channel.subscribedTime(), local(10, 0));
    QCOMPARE(channel.updatedTime(), local(11, 0));
    QCOMPARE(channel.description(), QString());
    QCOMPARE(debugText(channel.icon()), debugText(FeedEnclosure()));
    QVERIFY(channel.messages().isEmpty());
}

void TestRowExtraction::channelTimesBecomeLocal_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QDateTime>("time");

    QTest::newRow("UTC") << QVariant("2020-01-02T10:00:00Z") << local(15, 30);
    QTest::newRow("offset") << QVariant("2020-01-02T10:00:00+02:00") << local(13, 30);
    QTest::newRow("local") << QVariant("2020-01-02T10:00:00") << local(10, 0);
    QTest::newRow("typed") << QVariant(QDateTime(QDate(2020, 1, 2), QTime(10, 0), Qt::UTC)) << local(15, 30);
    QTest::newRow("not ISO 8601") << QVariant("Thu, 02 Jan 2020 10:00:00 GMT") << QDateTime();
    QTest::newRow("number") << QVariant(5) << QDateTime();
    QTest::newRow("empty") << QVariant("") << QDateTime();
    QTest::newRow("unbound") << QVariant() << QDateTime();
}

void TestRowExtraction::channelTimesBecomeLocal()
{
    QFETCH(QVariant, value);
    QFETCH(QDateTime, time);
    const FeedChannel subscribed =
        extractChannel(row({"urn:c", "", "", "", "", value, "2020-01-02T00:00:00"}));
    const FeedChannel updated = extractChannel(row({"urn:c", "", "", "", "", "2020-01-02T00:00:00", value}));
    for (const QDateTime &actual : {subscribed.subscribedTime(), updated.updatedTime()}) {
        QCOMPARE(actual.isValid(), time.isValid());
        QCOMPARE(actual.timeSpec(), Qt::LocalTime);
        if (time.isValid())
            QCOMPARE(actual, time);
    }
    QCOMPARE(subscribed.updatedTime(), local(0, 0));
    QCOMPARE(updated.subscribedTime(), local(0, 0));
}

void TestRowExtraction::narrowChannelRowLeavesTheRestEmpty()
{
    FeedChannel expected;
    expected.setUri("urn:c");
    expected.setTitle("title");
    QCOMPARE(dump(extractChannel(row({"urn:c", "title"}))), dump(expected));
}

void TestRowExtraction::channelsAreReadFromTheStore()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel, nie:DataObject ; nie:title 'T' ; "
                   "nie:links <http://example.org/feed> ; nie:characterSet 'rss' ; nie:comment 'yesterday' ; "
                   "nie:created '2020-01-02T10:00:00Z' ; nie:contentLastModified '2020-01-02T11:00:00' }");
    for (const QString &statement : {Statements::allChannels(), Statements::channelForUri("urn:c")}) {
        const std::vector<QSparqlResultRow> rows = store().select(statement);
        QCOMPARE(rows.size(), size_t(1));
        const FeedChannel channel = extractChannel(rows.front());
        QCOMPARE(channel.uri(), QString("urn:c"));
        QCOMPARE(channel.title(), QString("T"));
        QCOMPARE(channel.link(), QString("http://example.org/feed"));
        QCOMPARE(channel.type(), QString("rss"));
        QCOMPARE(channel.lastModifiedTime(), QString("yesterday"));
        QCOMPARE(channel.subscribedTime(), local(15, 30));
        QCOMPARE(channel.subscribedTime().timeSpec(), Qt::LocalTime);
        QCOMPARE(channel.updatedTime(), local(11, 0));
    }
}

void TestRowExtraction::messageTakesEachColumn()
{
    FeedMessage message;
    const QStringList journal = journalOf([&message] {
        message = extractMessage(row({"urn:m", "title", "text", "http://example.org/1", local(10, 0),
                                      local(11, 0), "urn:tag", "summary", "beyond"}));
    });
    QCOMPARE(journal, QStringList());
    QCOMPARE(message.title(), QString("title"));
    QCOMPARE(message.description(), QString("text"));
    QCOMPARE(message.link(), QString("http://example.org/1"));
    QCOMPARE(message.publishedDate(), local(10, 0));
    QCOMPARE(message.downloadedTime(), local(11, 0));
    QVERIFY(message.isFavorite());
    QCOMPARE(message.summary(), QString("summary"));
    QCOMPARE(message.id(), QString());
    QVERIFY(message.baseUrl().isEmpty());
    QVERIFY(message.enclosures().isEmpty());
}

void TestRowExtraction::messageTextsAreKeptAsTheyAre()
{
    const QString text = " two  blanks\nand lines ";
    const FeedMessage message = extractMessage(
        row({"urn:m", text, text, " http://example.org/1 ", QVariant(), QVariant(), "", text}));
    QCOMPARE(message.title(), text);
    QCOMPARE(message.description(), text);
    QCOMPARE(message.summary(), text);
    // setLink() is the only setter that changes its value.
    QCOMPARE(message.link(), QString("http://example.org/1"));
}

void TestRowExtraction::messageDates_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QDateTime>("time");

    const QDateTime utc(QDate(2020, 1, 2), QTime(10, 0), Qt::UTC);
    QTest::newRow("typed") << QVariant(utc) << utc;
    QTest::newRow("text") << QVariant("2020-01-02T10:00:00Z") << utc;
    QTest::newRow("text with an offset") << QVariant("2020-01-02T12:00:00+02:00") << utc;
    QTest::newRow("text without a zone") << QVariant("2020-01-02T15:30:00") << utc;
    QTest::newRow("not ISO 8601") << QVariant("yesterday") << QDateTime();
    QTest::newRow("unbound") << QVariant() << QDateTime();
}

void TestRowExtraction::messageDates()
{
    QFETCH(QVariant, value);
    QFETCH(QDateTime, time);
    const FeedMessage message = extractMessage(row({"urn:m", "", "", "", value, value}));
    QCOMPARE(message.publishedDate().isValid(), time.isValid());
    QCOMPARE(message.publishedDate(), time);
    QCOMPARE(message.downloadedTime(), time);
    // The value has the zone that the driver gives it.
    QCOMPARE(message.publishedDate().timeSpec(), value.toDateTime().timeSpec());
}

void TestRowExtraction::messageFavorite_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isFavorite");

    QTest::newRow("resource") << QVariant("urn:tag") << true;
    QTest::newRow("true") << QVariant(true) << true;
    QTest::newRow("false") << QVariant(false) << false;
    QTest::newRow("word false") << QVariant("false") << false;
    QTest::newRow("zero") << QVariant("0") << false;
    QTest::newRow("empty") << QVariant("") << false;
    QTest::newRow("unbound") << QVariant() << false;
}

void TestRowExtraction::messageFavorite()
{
    QFETCH(QVariant, value);
    QTEST(extractMessage(row({"urn:m", "", "", "", "", "", value, "true"})).isFavorite(), "isFavorite");
}

void TestRowExtraction::narrowMessageRowLeavesTheRestEmpty()
{
    QCOMPARE(dump(extractMessage(row({"urn:m"}))), dump(FeedMessage()));
}

void TestRowExtraction::messagesAreReadFromTheStore()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel . <urn:m> a mfo:FeedMessage ; nie:title 'T' ; "
                   "nie:isLogicalPartOf <urn:c> ; nie:description 'D' ; nie:subject 'S' ; "
                   "nie:links <http://example.org/1> ; mfo:downloadedTime '2020-01-02T11:00:00Z' ; "
                   "nie:contentCreated '2020-01-02T10:00:00Z' ; nao:hasTag nao:predefined-tag-favorite }");
    const std::vector<QSparqlResultRow> rows = store().select(Statements::messagesForChannel("urn:c"));
    QCOMPARE(rows.size(), size_t(1));
    const FeedMessage message = extractMessage(rows.front());
    QCOMPARE(message.title(), QString("T"));
    QCOMPARE(message.description(), QString("D"));
    QCOMPARE(message.link(), QString("http://example.org/1"));
    QCOMPARE(message.publishedDate(), local(15, 30));
    QCOMPARE(message.downloadedTime(), local(16, 30));
    QVERIFY(message.isFavorite());
    QCOMPARE(message.summary(), QString("S"));
}

void TestRowExtraction::unboundPublishedDateIsInvalid()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel . <urn:m> a mfo:FeedMessage ; nie:title 'T' ; "
                   "nie:isLogicalPartOf <urn:c> ; nie:description 'D' ; nie:subject 'S' ; "
                   "nie:links <http://example.org/1> ; mfo:downloadedTime '2020-01-02T11:00:00Z' }");
    const std::vector<QSparqlResultRow> rows = store().select(Statements::messagesForChannel("urn:c"));
    QCOMPARE(rows.size(), size_t(1));
    const FeedMessage message = extractMessage(rows.front());
    QVERIFY(!message.publishedDate().isValid());
    QVERIFY(message.downloadedTime().isValid());
    QVERIFY(!message.isFavorite());
}

void TestRowExtraction::enclosureTakesEachColumn()
{
    FeedEnclosure enclosure;
    const QStringList journal = journalOf([&enclosure] {
        enclosure = extractEnclosure(row({"urn:e", "http://example.org/1.ogg", "file:///1.ogg", 3, "4000",
                                          "true", "false", "/icons/audio.png", "audio/ogg", "beyond"}));
    });
    QCOMPARE(journal, QStringList());
    FeedEnclosure expected("urn:e", "http://example.org/1.ogg", "file:///1.ogg", QString(), 4000,
                           FeedEnclosure::Essential, 3, true);
    expected.setTypeIcon("/icons/audio.png");
    expected.setMimeType("audio/ogg");
    QCOMPARE(dump(enclosure), dump(expected));
}

void TestRowExtraction::enclosureNumbers_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<unsigned>("number");

    QTest::newRow("text") << QVariant("42") << 42u;
    QTest::newRow("integer") << QVariant(42) << 42u;
    QTest::newRow("the driver's integer") << QVariant(qlonglong(42)) << 42u;
    QTest::newRow("greatest") << QVariant("2147483647") << 2147483647u;
    QTest::newRow("beyond a signed integer") << QVariant("2147483648") << 0u;
    QTest::newRow("not a number") << QVariant("abc") << 0u;
    QTest::newRow("number and more") << QVariant("42 kB") << 0u;
    QTest::newRow("hexadecimal") << QVariant("0x2a") << 0u;
    QTest::newRow("fraction") << QVariant("4.2") << 0u;
    QTest::newRow("empty") << QVariant("") << 0u;
    QTest::newRow("unbound") << QVariant() << 0u;
}

void TestRowExtraction::enclosureNumbers()
{
    QFETCH(QVariant, value);
    QFETCH(unsigned, number);
    const FeedEnclosure group = extractEnclosure(row({"urn:e", "", "", value, 7}));
    QCOMPARE(group.groupId(), number);
    QCOMPARE(group.length(), 7u);
    const FeedEnclosure length = extractEnclosure(row({"urn:e", "", "", 7, value}));
    QCOMPARE(length.length(), number);
    QCOMPARE(length.groupId(), 7u);
}

void TestRowExtraction::enclosureFlags_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isTrue");

    QTest::newRow("true") << QVariant("true") << true;
    QTest::newRow("boolean true") << QVariant(true) << true;
    QTest::newRow("false") << QVariant("false") << false;
    QTest::newRow("boolean false") << QVariant(false) << false;
    QTest::newRow("capital letter") << QVariant("True") << false;
    QTest::newRow("capital letters") << QVariant("TRUE") << false;
    QTest::newRow("blank") << QVariant("true ") << false;
    QTest::newRow("one") << QVariant("1") << false;
    QTest::newRow("unbound") << QVariant() << false;
}

void TestRowExtraction::enclosureFlags()
{
    QFETCH(QVariant, value);
    QFETCH(bool, isTrue);
    const FeedEnclosure isDefault = extractEnclosure(row({"urn:e", "", "", "", "", value, "true"}));
    QCOMPARE(isDefault.isDefault(), isTrue);
    QCOMPARE(isDefault.type(), FeedEnclosure::Optional);
    const FeedEnclosure isOptional = extractEnclosure(row({"urn:e", "", "", "", "", "true", value}));
    QCOMPARE(isOptional.type(), isTrue ? FeedEnclosure::Optional : FeedEnclosure::Essential);
    QVERIFY(isOptional.isDefault());
}

void TestRowExtraction::eightColumnsPutTheMimeTypeInTheTypeIcon()
{
    const FeedEnclosure enclosure = extractEnclosure(
        row({"urn:e", "http://example.org/1.ogg", "", "0", "0", "false", "true", "audio/ogg"}));
    QCOMPARE(enclosure.typeIcon(), QString("audio/ogg"));
    QCOMPARE(enclosure.mimeType(), QString());
}

static const char storedEnclosure[] =
    "INSERT { <urn:m> a mfo:FeedMessage . <urn:e> a mfo:Enclosure ; nie:isLogicalPartOf <urn:m> ; "
    "mfo:remoteLink <http://example.org/1.ogg> ; mfo:localLink <file:///1.ogg> ; nie:identifier 3 ; "
    "nie:contentSize 4000 ; mfo:groupDefault true ; mfo:optional false ; mfo:image '/icons/audio.png' ; "
    "nie:mimeType 'audio/ogg' }";

void TestRowExtraction::enclosuresAreReadFromTheStore()
{
    store().update(storedEnclosure);
    const std::vector<QSparqlResultRow> rows = store().select(Statements::enclosureForUri("urn:e"));
    QCOMPARE(rows.size(), size_t(1));
    FeedEnclosure expected("urn:e", "http://example.org/1.ogg", "file:///1.ogg", QString(), 4000,
                           FeedEnclosure::Essential, 3, true);
    expected.setTypeIcon("/icons/audio.png");
    expected.setMimeType("audio/ogg");
    QCOMPARE(dump(extractEnclosure(rows.front())), dump(expected));
}

void TestRowExtraction::enclosuresOfAMessageAreReadFromTheStore()
{
    store().update(storedEnclosure);
    const std::vector<QSparqlResultRow> rows = store().select(Statements::enclosuresForMessage("urn:m"));
    QCOMPARE(rows.size(), size_t(1));
    QCOMPARE(rows.front().count(), 8);
    FeedEnclosure expected("urn:e", "http://example.org/1.ogg", "file:///1.ogg", QString(), 4000,
                           FeedEnclosure::Essential, 3, true);
    expected.setTypeIcon("audio/ogg");
    QCOMPARE(dump(extractEnclosure(rows.front())), dump(expected));
}

QTEST_GUILESS_MAIN(TestRowExtraction)
#include "tst_rowextraction.moc"
