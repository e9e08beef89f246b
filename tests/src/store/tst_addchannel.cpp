// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QSparqlBinding>

#include <QRegularExpression>
#include <QtTest>

namespace {

const QString link = "http://example.org/feed";

FeedEnclosure icon()
{
    FeedEnclosure result;
    result.setLocalUrl("/icons/example.png");
    return result;
}

FeedChannel channel(const QString &itsLink = link)
{
    FeedChannel result;
    result.setLink(itsLink);
    result.setTitle("Example");
    result.setType("rss");
    result.setIcon(icon());
    return result;
}

/// Returns the journal up to the insert statement for a new channel.
QStringList untilInsert(const FeedChannel &channel, const QString &boundLink)
{
    const QString lookup = Statements::channelLookup(boundLink);
    const QString insert = Statements::channelInsert(channel, boundLink, "URN1");
    return {debugLine("addChannel", {quoted(lookup)}), selectLine(lookup),
            debugLine("addChannel", {quoted(insert)}), insertLine(insert)};
}

QStringList uriTrace() { return {debugLine("addChannel", {"Channel Uri: ", quoted("URN1")})}; }

} // namespace

class TestAddChannel : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void newChannelIsInserted();
    void exactlyTheseStatementsAreWritten();
    void subscriptionTimeIsLocalTime();
    void uriOfTheValueIsNotTheIdentity();
    void eachChannelGetsItsOwnUri();
    void otherFieldsAreNotWritten();
    void messagesAreNotStored();

    void channelIsRefusedWhenItsLinkIsStored();
    void secondCallWithTheSameLinkIsRefused();
    void linkOfAMessageIsNotALinkOfAChannel();

    void linkWithoutSchemeIsStoredWithOne();
    void linkWithoutSchemeNeverCountsAsStored();
    void linkInOtherCaseNeverCountsAsStored();
    void existingLinkResourceWithAnotherTimeIsRefused();
    void emptyLink();
    void linkIsEncodedWhereItIsBound();

    void iconWithoutRemoteUrlIsNoEnclosure();
    void iconBelongsToTheUriInTheValue();
    void iconOfAChannelWithoutUriBelongsToTheEmptyOne();
    void failingIconDoesNotFailTheChannel_data();
    void failingIconDoesNotFailTheChannel();

    void textsAreStoredAsTheyAre_data();
    void textsAreStoredAsTheyAre();

    void failure_data();
    void failure();
};

void TestAddChannel::newChannelIsInserted()
{
    QString uri;
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(channel()); }),
             untilInsert(channel(), link) + uriTrace());
    QCOMPARE(patterned(uri), QString("URN1"));
    QCOMPARE(tracker()->allChannelUrls(), QStringList(uri));
    const FeedChannel stored = tracker()->channelForUri(uri);
    QCOMPARE(stored.link(), link);
    QCOMPARE(stored.title(), QString("Example"));
    QCOMPARE(stored.type(), QString("rss"));
    // The time is a property of the link, so it is not read.
    QVERIFY(!stored.subscribedTime().isValid());
}

void TestAddChannel::exactlyTheseStatementsAreWritten()
{
    const QStringList before = everythingIn(store());
    const QString uri = tracker()->addChannel(channel());
    QStringList added = everythingIn(store());
    for (const QString &line : before)
        added.removeOne(line);
    for (QString &line : added)
        line = patterned(line.replace(uri, "CHANNEL"));
    QCOMPARE(added,
             QStringList({"http://example.org/feed a nie:DataObject",
                          "http://example.org/feed nie:created NOW.000+05:30", "CHANNEL a mfo:FeedChannel",
                          "CHANNEL mfo:image /icons/example.png", "CHANNEL nie:characterSet rss",
                          "CHANNEL nie:links http://example.org/feed", "CHANNEL nie:title Example"}));
}

void TestAddChannel::subscriptionTimeIsLocalTime()
{
    const QDateTime before = QDateTime::currentDateTime();
    tracker()->addChannel(channel());
    const QDateTime after = QDateTime::currentDateTime();
    const auto rows = store().select("SELECT ?t { <http://example.org/feed> nie:created ?t }");
    QCOMPARE(rows.size(), size_t(1));
    const QDateTime created = rows.front().value(0).toDateTime();
    QVERIFY(created.isValid());
    QVERIFY(created.toSecsSinceEpoch() >= before.toSecsSinceEpoch());
    QVERIFY(created <= after);
}

void TestAddChannel::uriOfTheValueIsNotTheIdentity()
{
    FeedChannel value = channel();
    value.setUri("urn:mine");
    const QString uri = tracker()->addChannel(value);
    QCOMPARE(patterned(uri), QString("URN1"));
    QCOMPARE(tracker()->allChannelUrls(), QStringList(uri));
    QCOMPARE(propertiesOf(store(), "urn:mine"), QStringList());
}

void TestAddChannel::eachChannelGetsItsOwnUri()
{
    const QString first = tracker()->addChannel(channel("http://example.org/1"));
    const QString second = tracker()->addChannel(channel("http://example.org/2"));
    QVERIFY(!first.isEmpty());
    QVERIFY(!second.isEmpty());
    QVERIFY(first != second);
    QCOMPARE(tracker()->allChannelUrls().size(), 2);
}

void TestAddChannel::otherFieldsAreNotWritten()
{
    FeedChannel value = channel();
    value.setDescription("description");
    value.setLastModifiedTime("yesterday");
    value.setSubscribedTime(QDateTime(QDate(2020, 1, 1), QTime(0, 0)));
    value.setUpdatedTime(QDateTime(QDate(2020, 1, 1), QTime(0, 0)));
    QCOMPARE(journalOf([&] { tracker()->addChannel(value); }), untilInsert(channel(), link) + uriTrace());
}

void TestAddChannel::messagesAreNotStored()
{
    FeedChannel value = channel();
    FeedMessage message("title", "http://example.org/1", "text", QDateTime());
    value.addChild(&message);
    const QString uri = tracker()->addChannel(value);
    QVERIFY(!uri.isEmpty());
    QCOMPARE(store().count("?anything a mfo:FeedMessage"), 0);
    QVERIFY(tracker()->addMessages(value.messages(), uri));
    QCOMPARE(tracker()->messagesForChannel(uri).size(), 1);
}

void TestAddChannel::channelIsRefusedWhenItsLinkIsStored()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel ; nie:links <http://example.org/feed> }");
    const QStringList before = everythingIn(store());
    QString uri = "none";
    const QString lookup = Statements::channelLookup(link);
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(channel()); }),
             QStringList({debugLine("addChannel", {quoted(lookup)}), selectLine(lookup),
                          criticalLine("addChannel", {"Channel exists"})}));
    QCOMPARE(uri, QString());
    QCOMPARE(everythingIn(store()), before);
}

void TestAddChannel::secondCallWithTheSameLinkIsRefused()
{
    const QString first = tracker()->addChannel(channel());
    QVERIFY(!first.isEmpty());
    QCOMPARE(tracker()->addChannel(channel()), QString());
    QCOMPARE(tracker()->allChannelUrls(), QStringList(first));
}

void TestAddChannel::linkOfAMessageIsNotALinkOfAChannel()
{
    store().update("INSERT { <urn:m> a mfo:FeedMessage ; nie:links <http://example.org/feed> }");
    QVERIFY(!tracker()->addChannel(channel()).isEmpty());
}

void TestAddChannel::linkWithoutSchemeIsStoredWithOne()
{
    const FeedChannel value = channel("example.org/feed");
    QString uri;
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(value); }),
             untilInsert(value, "http://example.org/feed") + uriTrace());
    QCOMPARE(tracker()->channelForUri(uri).link(), QString("http://example.org/feed"));
}

void TestAddChannel::linkWithoutSchemeNeverCountsAsStored()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel ; nie:links <http://example.org/feed> }");
    const FeedChannel value = channel("example.org/feed");
    QString uri;
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(value); }),
             untilInsert(value, "http://example.org/feed") + uriTrace());
    QVERIFY(!uri.isEmpty());
    QCOMPARE(tracker()->allChannelUrls().size(), 2);
}

void TestAddChannel::linkInOtherCaseNeverCountsAsStored()
{
    store().update("INSERT { <urn:c> a mfo:FeedChannel ; nie:links <http://example.org/feed> }");
    const FeedChannel value = channel("HTTP://Example.ORG/feed");
    QString uri;
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(value); }),
             untilInsert(value, "http://example.org/feed") + uriTrace());
    QVERIFY(!uri.isEmpty());

    // Paths are case-sensitive, so this link is not found.
    QVERIFY(!tracker()->addChannel(channel("http://example.org/FEED")).isEmpty());
    QCOMPARE(tracker()->allChannelUrls().size(), 3);
}

void TestAddChannel::existingLinkResourceWithAnotherTimeIsRefused()
{
    store().update("INSERT { <http://example.org/feed> a nie:DataObject ; "
                   "nie:created '2020-01-02T10:00:00Z' }");
    const QStringList before = everythingIn(store());
    QString uri = "none";
    const QString insert = Statements::channelInsert(channel(), link, "URN1");
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(channel()); }),
             untilInsert(channel(), link)
                 + QStringList(
                     criticalLine("addChannel", {"Query Execution Failed - addChannel", quoted(insert)})));
    QCOMPARE(uri, QString());
    QCOMPARE(everythingIn(store()), before);
}

void TestAddChannel::emptyLink()
{
    const FeedChannel value = channel("");
    const QStringList before = everythingIn(store());
    QString uri;
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(value); }), untilInsert(value, "") + uriTrace());
    QVERIFY(!uri.isEmpty());
    QCOMPARE(tracker()->addChannel(value), QString());

    QCOMPARE(tracker()->allChannels().size(), 1);
    QCOMPARE(tracker()->allChannels().first().uri(), uri);
    QCOMPARE(tracker()->allChannels().first().link(), QString());
    tracker()->deleteChannel(uri);
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(!tracker()->addChannel(value).isEmpty());
}

void TestAddChannel::linkIsEncodedWhereItIsBound()
{
    const FeedChannel value = channel("http://example.org/\u00e4 b?q=\">");
    const QString encoded = "http://example.org/%C3%A4%20b?q=%22%3E";
    QString uri;
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(value); }),
             untilInsert(value, encoded) + uriTrace());
    QCOMPARE(tracker()->channelForUri(uri).link(), encoded);
}

void TestAddChannel::iconWithoutRemoteUrlIsNoEnclosure()
{
    FeedChannel value = channel();
    value.setIcon(FeedEnclosure());
    QString uri;
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(value); }), untilInsert(value, link) + uriTrace());
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 0);
    QCOMPARE(store().select(QString("SELECT ?i { <%1> mfo:image ?i }").arg(uri)).size(), size_t(1));
}

void TestAddChannel::iconBelongsToTheUriInTheValue()
{
    FeedEnclosure image = icon();
    image.setRemoteUrl("http://example.org/icon.png");
    image.setMimeType("image/png");
    FeedChannel value = channel();
    value.setIcon(image);
    value.setUri("urn:mine");
    QString uri;
    QCOMPARE(journalOf([&] { uri = tracker()->addChannel(value); }),
             untilInsert(value, link) + uriTrace()
                 + QStringList({selectLine(Statements::enclosureLookup(image.remoteUrl())),
                                insertLine(Statements::enclosureInsert(image, "urn:mine", "URN2"))}));
    QCOMPARE(tracker()->enclosuresForMessage(uri).size(), 0);
    const QList<FeedEnclosure> icons = tracker()->enclosuresForMessage("urn:mine");
    QCOMPARE(icons.size(), 1);
    QCOMPARE(icons.first().remoteUrl(), image.remoteUrl());
}

void TestAddChannel::iconOfAChannelWithoutUriBelongsToTheEmptyOne()
{
    FeedEnclosure image = icon();
    image.setRemoteUrl("http://example.org/icon.png");
    FeedChannel value = channel();
    value.setIcon(image);
    QCOMPARE(journalOf([&] { tracker()->addChannel(value); }).last(),
             insertLine(Statements::enclosureInsert(image, "", "URN2")));
    QCOMPARE(tracker()->enclosuresForMessage("").size(), 1);
}

void TestAddChannel::failingIconDoesNotFailTheChannel_data()
{
    QTest::addColumn<int>("statement");
    QTest::addColumn<int>("verdict");
    for (int statement : {2, 3}) {
        QTest::addRow("statement %d, no result", statement) << statement << int(StatementGate::NoResult);
        QTest::addRow("statement %d, refused", statement) << statement << int(StatementGate::Refuse);
    }
}

void TestAddChannel::failingIconDoesNotFailTheChannel()
{
    QFETCH(int, statement);
    QFETCH(int, verdict);
    FeedEnclosure image = icon();
    image.setRemoteUrl("http://example.org/icon.png");
    FeedChannel value = channel();
    value.setIcon(image);
    QString uri;
    const QStringList journal = journalOf([&] { uri = tracker()->addChannel(value); },
                                          {{statement, StatementGate::Verdict(verdict)}});
    QCOMPARE(journal.filter("critical addEnclosures: ").size(), 1);
    QCOMPARE(tracker()->allChannelUrls(), QStringList(uri));
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 0);
}

void TestAddChannel::textsAreStoredAsTheyAre_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("non-ASCII") << QString::fromUtf8(
        "Gr\u00fc\u00dfe \u4f60\u597d \U0001f4f0 \u202eabc\u202c");
    QTest::newRow("quotes") << QString("\"double\" 'single' \"\"\" '''");
    QTest::newRow("backslashes") << QString("\\ \\\\ \\\" \\n \\u0022 \\");
    QTest::newRow("line breaks") << QString("a\nb\r\nc\td\be\ff");
    QTest::newRow("placeholders") << QString("?:link ?:title $:type %1 %5 %7E ?_x");
    QTest::newRow("a statement") << QString(
        "\" } DELETE { ?c a rdfs:Resource } WHERE { ?c a mfo:FeedChannel } #");
    QTest::newRow("an empty IRI") << QString("<> <http://example.org/>");
    QTest::newRow("a typed date") << QString("\"2020-01-01T10:00:00+02:00\"^^xsd:dateTime");
    QTest::newRow("a comment") << QString("# comment");
    QTest::newRow("long") << QString("0123456789 ").repeated(100000) + "end";
}

void TestAddChannel::textsAreStoredAsTheyAre()
{
    QFETCH(QString, text);
    FeedEnclosure image;
    image.setLocalUrl(text);
    // The setter of the title would simplify it.
    const FeedChannel value(QString(), link, text, image, text, QString(), QDateTime(), QDateTime(),
                            QString(), {});
    const QString uri = tracker()->addChannel(value);
    QVERIFY(!uri.isEmpty());
    const auto rows = store().select(
        QString("SELECT ?t ?i ?c { <%1> nie:title ?t ; mfo:image ?i ; nie:characterSet ?c }").arg(uri));
    QCOMPARE(rows.size(), size_t(1));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(rows.front().value(i).toString(), text);
    QCOMPARE(tracker()->channelType(uri), text);
    QCOMPARE(tracker()->allChannelUrls(), QStringList(uri));
}

void TestAddChannel::failure_data()
{
    addFailureColumns();
    const auto row = [=](const QString &name, const Intervention &intervention, const QStringList &journal) {
        addFailureRow(
            name, [=] { return tracker()->addChannel(channel()).isEmpty(); }, {intervention}, journal);
    };
    const QStringList all = untilInsert(channel(), link);
    const QString lookup = Statements::channelLookup(link);
    row("lookup, no result", {0, StatementGate::NoResult},
        all.mid(0, 2) + QStringList(criticalLine("addChannel", {"Query Execution failed"})));
    row("lookup, refused", {0, StatementGate::Refuse},
        all.mid(0, 2) + QStringList(criticalLine("addChannel", {"Query Execution Failed", quoted(lookup)})));
    const QString insert = Statements::channelInsert(channel(), link, "URN1");
    row("insert, no result", {1, StatementGate::NoResult},
        all + QStringList(criticalLine("addChannel", {"Query Execution failed"})));
    row("insert, refused", {1, StatementGate::Refuse},
        all
            + QStringList(
                criticalLine("addChannel", {"Query Execution Failed - addChannel", quoted(insert)})));
}

void TestAddChannel::failure()
{
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
}

QTEST_GUILESS_MAIN(TestAddChannel)
#include "tst_addchannel.moc"
