// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QtTest>

#include <limits>

namespace S = Statements;

namespace {

const QString channelUri = "urn:c";
const QString favourite = "nao:hasTag nao:predefined-tag-favorite";

QString downloaded(int hour)
{
    return QString("mfo:downloadedTime '2020-02-01T%1:00:00Z'").arg(hour, 2, 10, QChar('0'));
}

QString published(int day)
{
    return QString("nie:contentCreated '2020-01-%1T00:00:00Z'").arg(day, 2, 10, QChar('0'));
}

/// Returns a statement that stores the message <urn:m:name> of <urn:c>.
QString insertMessage(const QString &name, const QStringList &properties)
{
    return QString("INSERT { <urn:m:%1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c> ; %2 }")
        .arg(name, properties.join(" ; "));
}

QStringList countJournal(int count)
{
    return {selectLine(S::deletableMessageCount(channelUri)),
            debugLine("deletableMessageCount", {QString::number(count)})};
}

QStringList listJournal(int limit)
{
    return QStringList(selectLine(S::deletableMessages(channelUri, limit)));
}

} // namespace

class TestRetention : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void messagesAreCounted();
    void oldestMessagesComeFirst();
    void timesInDifferentZonesAreCompared();
    void undatedMessagesComeFirst();
    void limits_data();
    void limits();
    void negativeLimitIsRefusedByTheStore_data();
    void negativeLimitIsRefusedByTheStore();

    void favouritesAreKept();
    void channelOfFavouritesHasNone();
    void otherTagsDoNotProtect();
    void favouriteWithAnotherTagIsKept();
    void favouriteIsKeptInEachOfItsChannels();
    void messageWithoutDownloadedTimeIsCountedButNotListed();

    void messagesOfOtherChannelsAreLeftOut();
    void messageOfTwoChannelsIsDeletableInBoth();
    void otherPartsOfTheChannelAreNoMessages();
    void unknownChannelHasNone();
    void emptyUriIsQueried();
    void uriIsBoundAsAResource();
    void countWithoutARowIsZeroWithoutATrace();
    void nothingIsChanged();
    void failure_data();
    void failure();

private:
    int count() const { return tracker()->deletableMessageCount(channelUri); }
    QStringList listed(int limit = 100) const { return tracker()->deletableMessages(channelUri, limit); }
};

void TestRetention::init()
{
    StoreTestCase::init();
    store().update("INSERT { <urn:c> a mfo:FeedChannel . <urn:d> a mfo:FeedChannel . <urn:tag> a nao:Tag . "
                   "<urn:tag:2> a nao:Tag }");
}

void TestRetention::messagesAreCounted()
{
    store().update(insertMessage("1", {downloaded(1)}));
    store().update(insertMessage("2", {downloaded(2), published(1)}));
    int count = 0;
    QCOMPARE(journalOf([&] { count = tracker()->deletableMessageCount(channelUri); }), countJournal(2));
    QCOMPARE(count, 2);
}

void TestRetention::oldestMessagesComeFirst()
{
    store().update(insertMessage("newest", {published(9), downloaded(1)}));
    store().update(insertMessage("tied:late", {published(5), downloaded(9)}));
    store().update(insertMessage("oldest", {published(1), downloaded(8)}));
    store().update(insertMessage("tied:early", {published(5), downloaded(2)}));
    store().update(insertMessage("new", {published(7), downloaded(3)}));
    QStringList uris;
    QCOMPARE(journalOf([&] { uris = tracker()->deletableMessages(channelUri, 3); }), listJournal(3));
    QCOMPARE(uris, QStringList({"urn:m:oldest", "urn:m:tied:early", "urn:m:tied:late"}));
    QCOMPARE(listed().mid(3), QStringList({"urn:m:new", "urn:m:newest"}));
}

void TestRetention::timesInDifferentZonesAreCompared()
{
    const auto at = [](const char *text) {
        return QStringList({QString("nie:contentCreated '%1'^^xsd:dateTime").arg(text), downloaded(1)});
    };
    store().update(insertMessage("last", at("2020-01-02T09:00:00-03:00")));
    store().update(insertMessage("first", at("2020-01-02T12:00:00+02:00")));
    store().update(insertMessage("second", at("2020-01-02T11:00:00Z")));
    QCOMPARE(listed(), QStringList({"urn:m:first", "urn:m:second", "urn:m:last"}));
}

void TestRetention::undatedMessagesComeFirst()
{
    store().update(insertMessage("dated", {published(1), downloaded(1)}));
    store().update(insertMessage("undated:late", {downloaded(8)}));
    store().update(insertMessage("undated:early", {downloaded(7)}));
    QCOMPARE(listed(), QStringList({"urn:m:undated:early", "urn:m:undated:late", "urn:m:dated"}));
    QCOMPARE(listed(1), QStringList("urn:m:undated:early"));
}

void TestRetention::limits_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("expected");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("all but one") << 4 << 4;
    QTest::newRow("all") << 5 << 5;
    QTest::newRow("more than there are") << 6 << 5;
    QTest::newRow("the greatest") << std::numeric_limits<int>::max() << 5;
}

void TestRetention::limits()
{
    QFETCH(int, limit);
    QFETCH(int, expected);
    for (int i = 1; i <= 5; ++i)
        store().update(insertMessage(QString::number(i), {published(i), downloaded(i)}));
    QStringList uris;
    QCOMPARE(journalOf([&] { uris = tracker()->deletableMessages(channelUri, limit); }), listJournal(limit));
    QCOMPARE(uris, QStringList({"urn:m:1", "urn:m:2", "urn:m:3", "urn:m:4", "urn:m:5"}).mid(0, expected));
}

void TestRetention::negativeLimitIsRefusedByTheStore_data()
{
    QTest::addColumn<int>("limit");
    QTest::newRow("minus one") << -1;
    QTest::newRow("the least") << std::numeric_limits<int>::min();
}

void TestRetention::negativeLimitIsRefusedByTheStore()
{
    QFETCH(int, limit);
    store().update(insertMessage("1", {published(1), downloaded(1)}));
    QStringList uris = {"urn:m"};
    QCOMPARE(journalOf([&] { uris = tracker()->deletableMessages(channelUri, limit); }),
             listJournal(limit)
                 + QStringList(criticalLine("deletableMessages",
                                            {"Executing query failed: returning empty enclosure",
                                             quoted(S::deletableMessages(channelUri, limit))})));
    QCOMPARE(uris, QStringList());
}

void TestRetention::favouritesAreKept()
{
    store().update(insertMessage("1", {published(1), downloaded(1), favourite}));
    store().update(insertMessage("2", {published(2), downloaded(2)}));
    store().update(insertMessage("3", {published(3), downloaded(3), favourite}));
    QCOMPARE(count(), 1);
    QCOMPARE(listed(), QStringList("urn:m:2"));
}

void TestRetention::channelOfFavouritesHasNone()
{
    for (int i = 1; i <= 3; ++i)
        store().update(insertMessage(QString::number(i), {published(i), downloaded(i), favourite}));
    QCOMPARE(journalOf([&] { QCOMPARE(count(), 0); }), countJournal(0));
    QCOMPARE(journalOf([&] { QCOMPARE(listed(), QStringList()); }), listJournal(100));
}

void TestRetention::otherTagsDoNotProtect()
{
    store().update(insertMessage("1", {published(1), downloaded(1), "nao:hasTag <urn:tag>"}));
    store().update(insertMessage("2", {published(2), downloaded(2), "nao:hasTag <urn:tag>, <urn:tag:2>"}));
    QCOMPARE(count(), 2);
    QCOMPARE(listed(), QStringList({"urn:m:1", "urn:m:2"}));
}

void TestRetention::favouriteWithAnotherTagIsKept()
{
    store().update(insertMessage("1", {published(1), downloaded(1), favourite + ", <urn:tag>"}));
    store().update(insertMessage("2", {published(1), downloaded(1), "nao:hasTag <urn:tag>"}));
    QCOMPARE(count(), 1);
    QCOMPARE(listed(), QStringList("urn:m:2"));
}

void TestRetention::favouriteIsKeptInEachOfItsChannels()
{
    store().update(insertMessage("1", {"nie:isLogicalPartOf <urn:d>", downloaded(1), favourite}));
    for (const char *channel : {"urn:c", "urn:d"}) {
        QCOMPARE(tracker()->deletableMessageCount(channel), 0);
        QCOMPARE(tracker()->deletableMessages(channel, 10), QStringList());
    }
}

void TestRetention::messageWithoutDownloadedTimeIsCountedButNotListed()
{
    store().update(insertMessage("1", {published(1)}));
    store().update(insertMessage("2", {published(2), downloaded(1)}));
    QCOMPARE(count(), 2);
    QCOMPARE(listed(), QStringList("urn:m:2"));
}

void TestRetention::messagesOfOtherChannelsAreLeftOut()
{
    store().update(insertMessage("1", {published(1), downloaded(1)}));
    QCOMPARE(tracker()->deletableMessageCount("urn:d"), 0);
    QCOMPARE(tracker()->deletableMessages("urn:d", 10), QStringList());
}

void TestRetention::messageOfTwoChannelsIsDeletableInBoth()
{
    store().update(insertMessage("1", {"nie:isLogicalPartOf <urn:d>", downloaded(1)}));
    for (const char *channel : {"urn:c", "urn:d"}) {
        QCOMPARE(tracker()->deletableMessageCount(channel), 1);
        QCOMPARE(tracker()->deletableMessages(channel, 10), QStringList("urn:m:1"));
    }
}

void TestRetention::otherPartsOfTheChannelAreNoMessages()
{
    store().update("INSERT { <urn:e> a mfo:Enclosure ; nie:isLogicalPartOf <urn:c> }");
    QCOMPARE(count(), 0);
    QCOMPARE(listed(), QStringList());
}

void TestRetention::unknownChannelHasNone()
{
    store().update(insertMessage("1", {downloaded(1)}));
    int count = -1;
    QStringList uris = {"urn:m"};
    QCOMPARE(journalOf([&] {
                 count = tracker()->deletableMessageCount("urn:unknown");
                 uris = tracker()->deletableMessages("urn:unknown", 10);
             }),
             QStringList({selectLine(S::deletableMessageCount("urn:unknown")),
                          debugLine("deletableMessageCount", {"0"}),
                          selectLine(S::deletableMessages("urn:unknown", 10))}));
    QCOMPARE(count, 0);
    QCOMPARE(uris, QStringList());
}

void TestRetention::emptyUriIsQueried()
{
    QCOMPARE(journalOf([&] {
                 tracker()->deletableMessageCount("");
                 tracker()->deletableMessages("", 10);
             }),
             QStringList({selectLine(S::deletableMessageCount("")), debugLine("deletableMessageCount", {"0"}),
                          selectLine(S::deletableMessages("", 10))}));
}

void TestRetention::uriIsBoundAsAResource()
{
    const QString uri = "http://example.org/a b?q=\">";
    const QString encoded = "http://example.org/a%20b?q=%22%3E";
    QCOMPARE(
        journalOf([&] {
            tracker()->deletableMessageCount(uri);
            tracker()->deletableMessages(uri, 10);
        }),
        QStringList({selectLine(S::deletableMessageCount(encoded)), debugLine("deletableMessageCount", {"0"}),
                     selectLine(S::deletableMessages(encoded, 10))}));
}

void TestRetention::countWithoutARowIsZeroWithoutATrace()
{
    store().update(insertMessage("1", {downloaded(1)}));
    int count = -1;
    QCOMPARE(journalOf([&] { count = tracker()->deletableMessageCount(channelUri); },
                       {{0, StatementGate::NoRows}}),
             QStringList(selectLine(S::deletableMessageCount(channelUri))));
    QCOMPARE(count, 0);
}

void TestRetention::nothingIsChanged()
{
    store().update(insertMessage("1", {published(1), downloaded(1)}));
    store().update(insertMessage("2", {published(2), downloaded(2), favourite}));
    const QStringList before = everythingIn(store());
    count();
    listed();
    QCOMPARE(everythingIn(store()), before);
}

void TestRetention::failure_data()
{
    addFailureRows(
        {{"deletableMessageCount", [=] { return count() == 0; }, S::deletableMessageCount(channelUri),
          "Query Execution Failed", "Executing query failed: returning empty enclosure"},
         {"deletableMessages", [=] { return listed().isEmpty(); }, S::deletableMessages(channelUri, 100),
          "Query Execution failed", "Executing query failed: returning empty enclosure"}});
}

void TestRetention::failure()
{
    store().update(insertMessage("1", {published(1), downloaded(1)}));
    checkFailingOperation();
}

QTEST_GUILESS_MAIN(TestRetention)
#include "tst_retention.moc"
