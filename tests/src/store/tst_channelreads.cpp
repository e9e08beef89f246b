// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QtTest>

#include <algorithm>

namespace {

const char fullChannel[] =
    "INSERT { <urn:c> a mfo:FeedChannel, nie:DataObject ; nie:title 'Title' ; "
    "nie:links <http://example.org/feed> ; nie:characterSet 'rss' ; nie:comment 'yesterday' ; "
    "nie:created '2020-01-02T10:00:00Z' ; nie:contentLastModified '2020-01-02T11:00:00Z' }";

QDateTime utc(int hour) { return QDateTime(QDate(2020, 1, 2), QTime(hour, 0), Qt::UTC); }

template <typename T> QStringList sortedUris(const QList<T> &values)
{
    QStringList uris;
    for (const T &value : values)
        uris.append(value.uri());
    uris.sort();
    return uris;
}

/// Adds a second link in a graph of its own, because a property has one value in each graph.
void addSecondLink(const TestStore &store)
{
    store.update("INSERT { GRAPH <urn:g> { <urn:c> a nie:InformationElement ; "
                 "nie:links <http://example.org/2> } }");
    // A connection only knows the graphs that existed when it was opened.
    FeedTrackerSparql::releaseInstance();
    FeedTrackerSparql::instance();
}

bool isDefault(const FeedChannel &channel)
{
    return debugText(channel) == debugText(FeedChannel()) && channel.lastModifiedTime().isEmpty();
}

} // namespace

class TestChannelReads : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void emptyStoreHasNoChannels();
    void allChannelsGivesEachField();
    void channelWithoutAnythingIsListed();
    void onlyChannelsAreListed();
    void channelWithSeveralLinksIsListedOncePerLink();
    void manyChannelsAreListed();

    void urisAreTracedAsAList();

    void channelIsFoundByItsUri();
    void firstRowOfSeveralIsTaken();
    void emptyUriYieldsADefaultChannel();
    void unknownUriYieldsADefaultChannel();
    void otherResourceIsNoChannel();
    void uriIsBoundAsAResource();

    void typeIsFoundByUri();
    void emptyUriHasNoType();
    void channelWithoutCharacterSetHasNoType();
    void unknownChannelHasNoType();
    void emptyTypeIsNoFailure();
    void rowWithoutColumnsHasNoType();

    void failure_data();
    void failure();
    void readsChangeNothing();
};

void TestChannelReads::emptyStoreHasNoChannels()
{
    QList<FeedChannel> channels = {FeedChannel()};
    QCOMPARE(journalOf([&] { channels = tracker()->allChannels(); }),
             QStringList(selectLine(Statements::allChannels())));
    QVERIFY(channels.isEmpty());

    QStringList uris = {"none"};
    QCOMPARE(journalOf([&] { uris = tracker()->allChannelUrls(); }),
             QStringList({selectLine(Statements::allChannelUrls()),
                          debugLine("allChannelUrls", {"Channel Uris: ", "()"})}));
    QCOMPARE(uris, QStringList());
}

void TestChannelReads::allChannelsGivesEachField()
{
    store().update(fullChannel);
    QList<FeedChannel> channels;
    QCOMPARE(journalOf([&] { channels = tracker()->allChannels(); }),
             QStringList(selectLine(Statements::allChannels())));
    QCOMPARE(channels.size(), 1);
    const FeedChannel channel = channels.first();
    QCOMPARE(channel.uri(), QString("urn:c"));
    QCOMPARE(channel.title(), QString("Title"));
    QCOMPARE(channel.link(), QString("http://example.org/feed"));
    QCOMPARE(channel.type(), QString("rss"));
    QCOMPARE(channel.lastModifiedTime(), QString("yesterday"));
    QCOMPARE(channel.subscribedTime(), utc(10));
    QCOMPARE(channel.updatedTime(), utc(11));
}

void TestChannelReads::channelWithoutAnythingIsListed()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel }");
    const QList<FeedChannel> channels = tracker()->allChannels();
    QCOMPARE(channels.size(), 1);
    FeedChannel expected;
    expected.setUri("urn:c");
    QCOMPARE(debugText(channels.first()), debugText(expected));
    QVERIFY(!channels.first().subscribedTime().isValid());
    QVERIFY(!channels.first().updatedTime().isValid());
    QCOMPARE(channels.first().lastModifiedTime(), QString());
}

void TestChannelReads::onlyChannelsAreListed()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel . <urn:m> a mfo:FeedMessage ; "
                   "nie:isLogicalPartOf <urn:c> . <urn:e> a mfo:Enclosure . <urn:d> a mfo:FeedChannel }");
    QCOMPARE(sortedUris(tracker()->allChannels()), QStringList({"urn:c", "urn:d"}));
    QStringList uris = tracker()->allChannelUrls();
    uris.sort();
    QCOMPARE(uris, QStringList({"urn:c", "urn:d"}));
}

void TestChannelReads::channelWithSeveralLinksIsListedOncePerLink()
{
    store().update(fullChannel);
    addSecondLink(store());
    const QList<FeedChannel> channels = tracker()->allChannels();
    QCOMPARE(channels.size(), 2);
    QStringList links;
    for (const FeedChannel &channel : channels) {
        QCOMPARE(channel.uri(), QString("urn:c"));
        QCOMPARE(channel.title(), QString("Title"));
        links.append(channel.link());
    }
    links.sort();
    QCOMPARE(links, QStringList({"http://example.org/2", "http://example.org/feed"}));
    QCOMPARE(tracker()->allChannelUrls(), QStringList("urn:c"));
}

void TestChannelReads::manyChannelsAreListed()
{
    QString update = "INSERT {";
    for (int i = 0; i < 1000; ++i)
        update += QString(" <urn:c:%1> a mfo:FeedChannel .").arg(i);
    store().update(update + " }");
    QStringList uris = sortedUris(tracker()->allChannels());
    uris.removeDuplicates();
    QCOMPARE(uris.size(), 1000);
    QCOMPARE(tracker()->allChannelUrls().size(), 1000);
}

void TestChannelReads::urisAreTracedAsAList()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel . <urn:d> a mfo:FeedChannel }");
    QStringList uris;
    const QStringList journal = journalOf([&] { uris = tracker()->allChannelUrls(); });
    QCOMPARE(uris.size(), 2);
    QCOMPARE(journal,
             QStringList({selectLine(Statements::allChannelUrls()),
                          debugLine("allChannelUrls",
                                    {"Channel Uris: ",
                                     '(' + quoted(uris.first()) + ", " + quoted(uris.last()) + ')'})}));
}

void TestChannelReads::channelIsFoundByItsUri()
{
    store().update(fullChannel);
    store().update("INSERT { <urn:d> a mfo:FeedChannel ; nie:title 'Other' }");
    FeedChannel channel;
    const QStringList journal = journalOf([&] { channel = tracker()->channelForUri("urn:c"); });
    QCOMPARE(channel.uri(), QString("urn:c"));
    QCOMPARE(channel.title(), QString("Title"));
    QCOMPARE(channel.link(), QString("http://example.org/feed"));
    QCOMPARE(channel.type(), QString("rss"));
    QCOMPARE(channel.lastModifiedTime(), QString("yesterday"));
    QCOMPARE(channel.subscribedTime(), utc(10));
    QCOMPARE(channel.updatedTime(), utc(11));

    const QString statement = Statements::channelForUri("urn:c");
    QString text;
    QDebug(&text) << "channel = " << channel;
    QCOMPARE(journal,
             QStringList({debugLine("channelForUri", {"Prepared Query: ", quoted(statement)}),
                          selectLine(statement), "debug channelForUri: " + text}));
}

void TestChannelReads::firstRowOfSeveralIsTaken()
{
    store().update(fullChannel);
    addSecondLink(store());
    const std::vector<QSparqlResultRow> rows = store().select(Statements::channelForUri("urn:c"));
    QCOMPARE(rows.size(), size_t(2));
    QCOMPARE(tracker()->channelForUri("urn:c").link(), rows.front().value(2).toString());
}

void TestChannelReads::emptyUriYieldsADefaultChannel()
{
    FeedChannel channel;
    channel.setUri("urn:c");
    QCOMPARE(journalOf([&] { channel = tracker()->channelForUri(""); }),
             QStringList(criticalLine("channelForUri", {"Empty uri: returning empty channel"})));
    QVERIFY(isDefault(channel));
}

void TestChannelReads::unknownUriYieldsADefaultChannel()
{
    store().update(fullChannel);
    FeedChannel channel;
    channel.setUri("urn:c");
    const QString statement = Statements::channelForUri("urn:unknown");
    QCOMPARE(journalOf([&] { channel = tracker()->channelForUri("urn:unknown"); }),
             QStringList({debugLine("channelForUri", {"Prepared Query: ", quoted(statement)}),
                          selectLine(statement),
                          criticalLine("channelForUri", {"Result not retrieved: returning empty channel"})}));
    QVERIFY(isDefault(channel));
}

void TestChannelReads::otherResourceIsNoChannel()
{
    store().update("INSERT { <urn:m> a mfo:FeedMessage ; nie:title 'T' ; nie:characterSet 'rss' }");
    QVERIFY(isDefault(tracker()->channelForUri("urn:m")));
    QCOMPARE(tracker()->channelType("urn:m"), QString());
}

void TestChannelReads::uriIsBoundAsAResource()
{
    const QString encoded = "http://example.org/a%20b?q=%22%3E";
    store().update(QString("INSERT { <%1> a mfo:FeedChannel ; nie:characterSet 'rss' }").arg(encoded));
    QCOMPARE(tracker()->channelForUri("http://example.org/a b?q=\">").uri(), encoded);
    QCOMPARE(tracker()->channelType("http://example.org/a b?q=\">"), QString("rss"));
    QCOMPARE(tracker()->channelForUri(encoded).uri(), encoded);
}

void TestChannelReads::typeIsFoundByUri()
{
    store().update(fullChannel);
    store().update("INSERT { <urn:d> a mfo:FeedChannel ; nie:characterSet 'atom' }");
    QString type;
    QCOMPARE(journalOf([&] { type = tracker()->channelType("urn:c"); }),
             QStringList(selectLine(Statements::channelType("urn:c"))));
    QCOMPARE(type, QString("rss"));
    QCOMPARE(tracker()->channelType("urn:d"), QString("atom"));
}

void TestChannelReads::emptyUriHasNoType()
{
    QString type = "rss";
    QCOMPARE(journalOf([&] { type = tracker()->channelType(""); }),
             QStringList(criticalLine("channelType", {"Empty uri: returning empty channel uri"})));
    QCOMPARE(type, QString());
}

void TestChannelReads::channelWithoutCharacterSetHasNoType()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel ; nie:title 'T' }");
    QString type = "rss";
    QCOMPARE(
        journalOf([&] { type = tracker()->channelType("urn:c"); }),
        QStringList({selectLine(Statements::channelType("urn:c")),
                     criticalLine("channelType", {"Result not retrieved: returning empty channel uri"})}));
    QCOMPARE(type, QString());
}

void TestChannelReads::unknownChannelHasNoType()
{
    QCOMPARE(
        journalOf([&] { tracker()->channelType("urn:unknown"); }),
        QStringList({selectLine(Statements::channelType("urn:unknown")),
                     criticalLine("channelType", {"Result not retrieved: returning empty channel uri"})}));
}

void TestChannelReads::emptyTypeIsNoFailure()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel ; nie:characterSet '' }");
    QCOMPARE(journalOf([&] { tracker()->channelType("urn:c"); }),
             QStringList(selectLine(Statements::channelType("urn:c"))));
}

void TestChannelReads::rowWithoutColumnsHasNoType()
{
    QString type = "rss";
    QCOMPARE(
        journalOf([&] { type = tracker()->channelType("urn:c"); }, {{0, StatementGate::EmptyRow}}),
        QStringList({selectLine(Statements::channelType("urn:c")),
                     criticalLine("channelType", {"Result not retrieved: returning empty channel uri"})}));
    QCOMPARE(type, QString());
}

void TestChannelReads::failure_data()
{
    addFailureRows(
        {{"allChannels", [=] { return tracker()->allChannels().isEmpty(); }, Statements::allChannels(),
          "Query Execution Failed", "Executing query failed: returning empty list"},
         {"allChannelUrls", [=] { return tracker()->allChannelUrls().isEmpty(); },
          Statements::allChannelUrls(), "Query Execution Failed",
          "Executing query failed: returning empty list"},
         {"channelForUri",
          [=] { return isDefault(tracker()->channelForUri("urn:c")); },
          Statements::channelForUri("urn:c"),
          "Query Execution Failed",
          "Result not retrieved: returning empty channel",
          {debugLine("channelForUri", {"Prepared Query: ", quoted(Statements::channelForUri("urn:c"))})}},
         {"channelType", [=] { return tracker()->channelType("urn:c").isEmpty(); },
          Statements::channelType("urn:c"), "Query Execution Failed",
          "Executing query failed: returning empty channel"}});
}

void TestChannelReads::failure()
{
    store().update(fullChannel);
    checkFailingOperation();
}

void TestChannelReads::readsChangeNothing()
{
    store().update(fullChannel);
    const QStringList before = everythingIn(store());
    tracker()->allChannels();
    tracker()->allChannelUrls();
    tracker()->channelForUri("urn:c");
    tracker()->channelForUri("urn:unknown");
    tracker()->channelType("urn:c");
    QCOMPARE(everythingIn(store()), before);
}

QTEST_GUILESS_MAIN(TestChannelReads)
#include "tst_channelreads.moc"
