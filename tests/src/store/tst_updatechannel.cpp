// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QtTest>

namespace S = Statements;

namespace {

const QString channelUri = "urn:c";
const QString link = "http://example.org/feed";
const QString iconUrl = "http://example.org/icon.png";

/// 01:30 in the time zone of the tests.
const char created[] = "2020-01-01T20:00:00Z";

const char channels[] =
    "INSERT { <http://example.org/feed> a nie:DataObject ; nie:created '2020-01-01T20:00:00Z'^^xsd:dateTime . "
    "<urn:c> a mfo:FeedChannel ; nie:links <http://example.org/feed> ; nie:title 'Old' ; "
    "nie:characterSet 'rss' ; mfo:image '/old.png' ; nie:comment 'old text' ; "
    "nie:contentLastModified '2020-01-01T00:00:00Z'^^xsd:dateTime . "
    "<urn:d> a mfo:FeedChannel ; nie:title 'Other' ; mfo:image '/old.png' ; nie:comment 'old text' . "
    "<urn:m> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c> ; nie:title 'Old' }";

FeedChannel channel()
{
    FeedChannel result;
    result.setUri(channelUri);
    result.setTitle("New");
    result.setLastModifiedTime("new text");
    FeedEnclosure icon;
    icon.setLocalUrl("/new.png");
    result.setIcon(icon);
    return result;
}

FeedChannel channelWithIcon(const QString &remoteUrl = iconUrl)
{
    FeedChannel result = channel();
    FeedEnclosure icon = result.icon();
    icon.setRemoteUrl(remoteUrl);
    result.setIcon(icon);
    return result;
}

QStringList updateJournal(const FeedChannel &channel)
{
    const QString update = S::channelUpdate(channel);
    return {selectLine(S::channelToUpdate(channel.uri())), debugLine("updateChannel", {quoted(update)}),
            insertLine(update)};
}

QString notUpdated() { return criticalLine("updateChannel", {"Channel not found, unable to update"}); }

QStringList traced(const QString &statementLine)
{
    const QString statement = statementLine.section(": ", 1);
    return {debugLine("editChannel", {quoted(statement)}), statementLine};
}

QStringList found() { return traced(selectLine(S::channelToEdit(channelUri))); }

QStringList linkJournal(const QString &newLink, const QString &oldLink = link,
                        const QString &createdText = created)
{
    return traced(selectLine(S::linkOfChannel(channelUri)))
        + traced(insertLine(S::linkEdit(channelUri, oldLink, newLink, createdText)));
}

QStringList titleJournal(const QString &title) { return traced(insertLine(S::titleEdit(channelUri, title))); }

QStringList timeJournal(const QString &time)
{
    return traced(insertLine(S::lastModifiedTimeEdit(channelUri, time)));
}

/// Return the journal of an edit of all properties, and these properties.
QStringList editJournal()
{
    return found() + linkJournal("http://example.org/new") + titleJournal("New")
        + timeJournal("2021-01-01T00:00:00Z");
}

QVariantMap everyProperty()
{
    return {{FeedTrackerSparql::LastModifiedTimeKey, "2021-01-01T00:00:00Z"},
            {FeedTrackerSparql::TitleKey, "New"},
            {FeedTrackerSparql::LinkKey, "http://example.org/new"}};
}

} // namespace

class TestUpdateChannel : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void updateReplacesFourProperties();
    void updateAddsMissingProperties();
    void everyOldValueIsReplaced();
    void emptyValuesReplaceToo();
    void updatedTimeIsNow();
    void otherFieldsAreNotWritten();
    void iconWithoutRemoteUrlIsNoEnclosure();
    void newIconIsAddedToTheChannel();
    void storedIconIsLinkedToTheChannel();
    void failingIconDoesNotFailTheUpdate_data();
    void failingIconDoesNotFailTheUpdate();
    void updateOfAnUnknownChannelIsRefused_data();
    void updateOfAnUnknownChannelIsRefused();
    void updatedTextsAreStoredAsTheyAre_data();
    void updatedTextsAreStoredAsTheyAre();
    void updateThatTheStoreRefusesChangesNothing();
    void updateFailure_data();
    void updateFailure();

    void editWithoutPropertiesIsRefused();
    void unknownKeysChangeNothing();
    void editOfAnUnknownChannelIsRefused_data();
    void editOfAnUnknownChannelIsRefused();
    void linkIsReplaced();
    void subscriptionTimeIsKeptAsAnInstant();
    void linkGetsItsScheme();
    void sameLinkStays();
    void emptyLinkIsALinkToo();
    void onlyTheFirstLinkIsReplaced();
    void linkWithoutTimeCannotBeReplaced();
    void titleIsReplaced();
    void lastModifiedTimeIsReplaced_data();
    void lastModifiedTimeIsReplaced();
    void propertiesAreEditedInAFixedOrder();
    void valuesAreReadAsText();
    void editedTextsAreStoredAsTheyAre_data();
    void editedTextsAreStoredAsTheyAre();
    void textThatIsNoTimeIsRefusedByTheStore_data();
    void textThatIsNoTimeIsRefusedByTheStore();
    void titleThatTheStoreRefusesKeepsTheNewLink();
    void editFailure_data();
    void editFailure();
};

void TestUpdateChannel::init()
{
    StoreTestCase::init();
    store().update(channels);
}

void TestUpdateChannel::updateReplacesFourProperties()
{
    QStringList expected = everythingIn(store());
    expected.removeOne("urn:c nie:title Old");
    expected.removeOne("urn:c mfo:image /old.png");
    expected.removeOne("urn:c nie:comment old text");
    expected.removeOne("urn:c nie:contentLastModified 2020-01-01T00:00:00.000Z");
    expected += QStringList({"urn:c nie:title New", "urn:c mfo:image /new.png", "urn:c nie:comment new text",
                             "urn:c nie:contentLastModified NOW.000+05:30"});
    expected.sort();
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->updateChannel(channel()); }), updateJournal(channel()));
    QVERIFY(done);
    QCOMPARE(patterned(everythingIn(store()).join('\n')).split('\n'), expected);
}

void TestUpdateChannel::updateAddsMissingProperties()
{
    store().update("INSERT { <urn:bare> a mfo:FeedChannel }");
    FeedChannel value = channel();
    value.setUri("urn:bare");
    QVERIFY(tracker()->updateChannel(value));
    QCOMPARE(patterned(propertiesOf(store(), "urn:bare").join('\n')).split('\n'),
             QStringList({"a mfo:FeedChannel", "mfo:image /new.png", "nie:comment new text",
                          "nie:contentLastModified NOW.000+05:30", "nie:title New"}));
}

void TestUpdateChannel::everyOldValueIsReplaced()
{
    store().update("INSERT { <urn:c> nie:title 'Older' ; "
                   "nie:contentLastModified '2019-01-01T00:00:00Z'^^xsd:dateTime }");
    QVERIFY(tracker()->updateChannel(channel()));
    const QStringList properties = propertiesOf(store(), channelUri);
    QCOMPARE(properties.filter("nie:title"), QStringList("nie:title New"));
    QCOMPARE(properties.filter("nie:contentLastModified").size(), 1);
}

void TestUpdateChannel::emptyValuesReplaceToo()
{
    FeedChannel bare;
    bare.setUri(channelUri);
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->updateChannel(bare); }), updateJournal(bare));
    QVERIFY(done);
    const QStringList properties = propertiesOf(store(), channelUri);
    QCOMPARE(properties.filter("nie:title"), QStringList("nie:title "));
    QCOMPARE(properties.filter("nie:comment"), QStringList("nie:comment "));
    QCOMPARE(properties.filter("mfo:image"), QStringList("mfo:image "));
}

void TestUpdateChannel::updatedTimeIsNow()
{
    const QDateTime start = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch());
    FeedChannel value = channel();
    value.setUpdatedTime(QDateTime(QDate(2000, 1, 1), QTime(0, 0)));
    QVERIFY(tracker()->updateChannel(value));
    const FeedChannel stored = tracker()->channelForUri(channelUri);
    QVERIFY(stored.updatedTime() >= start);
    QVERIFY(stored.updatedTime() <= QDateTime::currentDateTime());
    QCOMPARE(stored.updatedTime().timeSpec(), Qt::LocalTime);
    QCOMPARE(stored.lastModifiedTime(), QString("new text"));
    QCOMPARE(stored.title(), QString("New"));
}

void TestUpdateChannel::otherFieldsAreNotWritten()
{
    FeedChannel value = channel();
    value.setLink("http://example.org/other");
    value.setType("atom");
    value.setDescription("Description");
    value.setSubscribedTime(QDateTime::currentDateTime());
    FeedMessage message("T", "http://example.org/1", "D", QDateTime());
    value.addChild(&message);
    QCOMPARE(journalOf([&] { tracker()->updateChannel(value); }), updateJournal(channel()));
    QCOMPARE(tracker()->channelForUri(channelUri).link(), link);
    QCOMPARE(tracker()->channelType(channelUri), QString("rss"));
}

void TestUpdateChannel::iconWithoutRemoteUrlIsNoEnclosure()
{
    QVERIFY(tracker()->updateChannel(channel()));
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 0);
    QCOMPARE(propertiesOf(store(), channelUri).filter("mfo:image"), QStringList("mfo:image /new.png"));
}

void TestUpdateChannel::newIconIsAddedToTheChannel()
{
    const FeedChannel value = channelWithIcon();
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->updateChannel(value); }),
             updateJournal(value)
                 + QStringList({selectLine(S::enclosureLookup(iconUrl)),
                                insertLine(S::enclosureInsert(value.icon(), channelUri, "URN1"))}));
    QVERIFY(done);
    QCOMPARE(store().texts("SELECT ?r ?l ?o { ?e mfo:remoteLink ?r ; mfo:localLink ?l ; "
                           "nie:isLogicalPartOf ?o }"),
             QStringList("http://example.org/icon.png /new.png urn:c"));
}

void TestUpdateChannel::storedIconIsLinkedToTheChannel()
{
    store().update("INSERT { <urn:i> a mfo:Enclosure ; mfo:remoteLink <http://example.org/icon.png> ; "
                   "mfo:localLink </old.png> ; nie:isLogicalPartOf <urn:d> }");
    QCOMPARE(journalOf([&] { tracker()->updateChannel(channelWithIcon()); }),
             updateJournal(channelWithIcon())
                 + QStringList({selectLine(S::enclosureLookup(iconUrl)),
                                insertLine(S::enclosureLink("urn:i", channelUri))}));
    // The local link does not change.
    QCOMPARE(propertiesOf(store(), "urn:i"),
             QStringList({"a mfo:Enclosure", "mfo:localLink /old.png",
                          "mfo:remoteLink http://example.org/icon.png", "nie:isLogicalPartOf urn:c",
                          "nie:isLogicalPartOf urn:d"}));
}

void TestUpdateChannel::failingIconDoesNotFailTheUpdate_data()
{
    QTest::addColumn<int>("statement");
    QTest::addColumn<int>("verdict");
    QTest::newRow("lookup, no result") << 2 << int(StatementGate::NoResult);
    QTest::newRow("lookup, refused") << 2 << int(StatementGate::Refuse);
    QTest::newRow("update, no result") << 3 << int(StatementGate::NoResult);
    QTest::newRow("update, refused") << 3 << int(StatementGate::Refuse);
}

void TestUpdateChannel::failingIconDoesNotFailTheUpdate()
{
    QFETCH(int, statement);
    QFETCH(int, verdict);
    bool done = false;
    const QStringList journal = journalOf([&] { done = tracker()->updateChannel(channelWithIcon()); },
                                          {{statement, StatementGate::Verdict(verdict)}});
    QVERIFY(done);
    QCOMPARE(journal.filter("critical ").size(), 1);
    QCOMPARE(journal.filter("critical addEnclosures: ").size(), 1);
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 0);
    QCOMPARE(tracker()->channelForUri(channelUri).title(), QString("New"));
}

void TestUpdateChannel::updateOfAnUnknownChannelIsRefused_data()
{
    QTest::addColumn<QString>("uri");
    QTest::addColumn<QString>("bound");
    QTest::newRow("unknown") << "urn:unknown"
                             << "urn:unknown";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("a message") << "urn:m"
                               << "urn:m";
    QTest::newRow("found in another spelling") << QString::fromUtf8("urn:\u00e4") << "urn:%C3%A4";
}

void TestUpdateChannel::updateOfAnUnknownChannelIsRefused()
{
    QFETCH(QString, uri);
    QFETCH(QString, bound);
    store().update("INSERT { <urn:%C3%A4> a mfo:FeedChannel }");
    const QStringList before = everythingIn(store());
    FeedChannel value = channelWithIcon();
    value.setUri(uri);
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->updateChannel(value); }),
             QStringList({selectLine(S::channelToUpdate(bound)), notUpdated()}));
    QVERIFY(!done);
    QCOMPARE(everythingIn(store()), before);
}

static void addTexts()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("non-ASCII") << QString::fromUtf8("Gr\u00fc\u00dfe \u4f60\u597d \U0001f4f0 \u2028");
    QTest::newRow("quotes") << "\"double\" 'single' \"\"\"";
    QTest::newRow("backslashes") << "\\ \\\" \\n \\u0022 \\";
    QTest::newRow("line breaks") << "a\nb\r\nc\td";
    QTest::newRow("placeholders") << "?:new_title ?:channelUri $:x %link";
    QTest::newRow("a statement") << "\" } DELETE { ?c a rdfs:Resource } WHERE { ?c a mfo:FeedChannel } #";
    QTest::newRow("only a date") << "2020-01-01T10:00:00+02:00";
    QTest::newRow("long") << QString("0123456789 \"quoted\"\n").repeated(5000);
}

void TestUpdateChannel::updatedTextsAreStoredAsTheyAre_data() { addTexts(); }

void TestUpdateChannel::updatedTextsAreStoredAsTheyAre()
{
    QFETCH(QString, text);
    FeedChannel value = channel();
    value.setTitle(text);
    value.setLastModifiedTime(text);
    FeedEnclosure icon;
    icon.setLocalUrl(text);
    value.setIcon(icon);
    QVERIFY(tracker()->updateChannel(value));
    QCOMPARE(store().texts("SELECT ?t { <urn:c> nie:title ?t }"), QStringList(value.title()));
    for (const char *property : {"nie:comment", "mfo:image"})
        QCOMPARE(store().texts(QString("SELECT ?t { <urn:c> %1 ?t }").arg(property)), QStringList(text));
    QCOMPARE(tracker()->channelForUri("urn:d").title(), QString("Other"));
}

void TestUpdateChannel::updateThatTheStoreRefusesChangesNothing()
{
    const QStringList before = everythingIn(store());
    FeedChannel value = channelWithIcon();
    value.setTitle(QString("a") + QChar(u'\0') + 'b');
    const QString update = S::channelUpdate(value);
    bool done = true;
    const QStringList journal = journalOf([&] { done = tracker()->updateChannel(value); });
    QVERIFY(!done);
    QCOMPARE(journal.size(), 4);
    QCOMPARE(journal.last(),
             criticalLine("updateChannel", {"Query Execution Failed - update Channel", quoted(update)}));
    QCOMPARE(everythingIn(store()), before);
}

void TestUpdateChannel::updateFailure_data()
{
    addFailureColumns();
    const QStringList all = updateJournal(channelWithIcon());
    const auto row = [=](const QString &name, const Intervention &intervention, const QStringList &items) {
        addFailureRow(
            name, [=] { return !tracker()->updateChannel(channelWithIcon()); }, {intervention},
            throughStatement(all, intervention.statement)
                + QStringList(criticalLine("updateChannel", items)));
    };
    row("lookup, no result", {0, StatementGate::NoResult}, {"Query Execution failed"});
    row("lookup, refused", {0, StatementGate::Refuse},
        {"Query Execution Failed - get Channel", quoted(S::channelToUpdate(channelUri))});
    row("update, no result", {1, StatementGate::NoResult}, {"Query Execution Failed"});
    row("update, refused", {1, StatementGate::Refuse},
        {"Query Execution Failed - update Channel", quoted(S::channelUpdate(channelWithIcon()))});
}

void TestUpdateChannel::updateFailure()
{
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
}

void TestUpdateChannel::editWithoutPropertiesIsRefused()
{
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->editChannel(channelUri, {}); }),
             QStringList(criticalLine("editChannel", {"No Properties to Update"})));
    QVERIFY(!done);
}

void TestUpdateChannel::unknownKeysChangeNothing()
{
    const QStringList before = everythingIn(store());
    bool done = false;
    QCOMPARE(journalOf([&] {
                 done = tracker()->editChannel(
                     channelUri,
                     {{"0", "x"}, {"4", "x"}, {"", "x"}, {"title", "x"}, {"01", "x"}, {"11", "x"}});
             }),
             found());
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestUpdateChannel::editOfAnUnknownChannelIsRefused_data() { updateOfAnUnknownChannelIsRefused_data(); }

void TestUpdateChannel::editOfAnUnknownChannelIsRefused()
{
    QFETCH(QString, uri);
    QFETCH(QString, bound);
    store().update("INSERT { <urn:%C3%A4> a mfo:FeedChannel }");
    const QStringList before = everythingIn(store());
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->editChannel(uri, everyProperty()); }),
             traced(selectLine(S::channelToEdit(bound)))
                 + QStringList(criticalLine("editChannel", {"Channel not found"})));
    QVERIFY(!done);
    QCOMPARE(everythingIn(store()), before);
}

void TestUpdateChannel::linkIsReplaced()
{
    QStringList expected = everythingIn(store());
    expected.removeOne("http://example.org/feed a nie:DataObject");
    expected.removeOne("http://example.org/feed nie:created 2020-01-01T20:00:00.000Z");
    expected.removeOne("urn:c nie:links http://example.org/feed");
    expected += QStringList({"http://example.org/new a nie:DataObject",
                             "http://example.org/new nie:created 2020-01-01T20:00:00.000Z",
                             "urn:c nie:links http://example.org/new"});
    expected.sort();
    bool done = false;
    QCOMPARE(journalOf([&] {
                 done = tracker()->editChannel(channelUri,
                                               {{FeedTrackerSparql::LinkKey, "http://example.org/new"}});
             }),
             found() + linkJournal("http://example.org/new"));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), expected);
    QCOMPARE(tracker()->channelForUri(channelUri).link(), QString("http://example.org/new"));
}

void TestUpdateChannel::subscriptionTimeIsKeptAsAnInstant()
{
    FeedChannel subscribed;
    subscribed.setLink("http://example.org/subscribed");
    const QString uri = tracker()->addChannel(subscribed);
    const auto time = [this](const QString &node) {
        return store().select("SELECT ?c { <" + node + "> nie:created ?c }").front().value(0).toDateTime();
    };
    const QDateTime before = time("http://example.org/subscribed");
    QCOMPARE(before.offsetFromUtc(), 19800);
    // The second change replaces a time that the first change has written.
    for (const char *next : {"http://example.org/moved", "http://example.org/moved/again"}) {
        QVERIFY(tracker()->editChannel(uri, {{FeedTrackerSparql::LinkKey, next}}));
        QCOMPARE(time(next).toSecsSinceEpoch(), before.toSecsSinceEpoch());
    }
    QCOMPARE(store().count("?anything a nie:DataObject"), 2);
}

void TestUpdateChannel::linkGetsItsScheme()
{
    QCOMPARE(journalOf([&] {
                 tracker()->editChannel(channelUri, {{FeedTrackerSparql::LinkKey, "example.org/a b"}});
             }),
             found() + linkJournal("http://example.org/a%20b"));
    QCOMPARE(tracker()->channelForUri(channelUri).link(), QString("http://example.org/a%20b"));
}

void TestUpdateChannel::sameLinkStays()
{
    const QStringList before = everythingIn(store());
    QVERIFY(tracker()->editChannel(channelUri, {{FeedTrackerSparql::LinkKey, link}}));
    QCOMPARE(everythingIn(store()), before);
}

void TestUpdateChannel::emptyLinkIsALinkToo()
{
    bool done = false;
    QCOMPARE(journalOf([&] {
                 done = tracker()->editChannel(channelUri, {{FeedTrackerSparql::LinkKey, ""}});
             }),
             found() + linkJournal(""));
    QVERIFY(done);
    QCOMPARE(propertiesOf(store(), channelUri).filter("nie:links"), QStringList("nie:links "));
    // The store keeps no properties of the empty IRI. Without its time such a link cannot be replaced.
    const QStringList before = everythingIn(store());
    QVERIFY(!tracker()->editChannel(channelUri, {{FeedTrackerSparql::LinkKey, link}}));
    QCOMPARE(everythingIn(store()), before);
}

void TestUpdateChannel::onlyTheFirstLinkIsReplaced()
{
    const QString second = "http://example.org/second";
    store().update(
        "INSERT { <http://example.org/second> a nie:DataObject ; nie:created '2020-01-02T00:00:00Z' . "
        "<urn:c> nie:links <http://example.org/second> }");
    const QString first = store().texts(S::linkOfChannel(channelUri)).first().section(' ', 0, 0);
    QVERIFY(tracker()->editChannel(channelUri, {{FeedTrackerSparql::LinkKey, "http://example.org/new"}}));
    QStringList expected = {"nie:links http://example.org/new",
                            "nie:links " + (first == link ? second : link)};
    expected.sort();
    QCOMPARE(propertiesOf(store(), channelUri).filter("nie:links"), expected);
}

void TestUpdateChannel::linkWithoutTimeCannotBeReplaced()
{
    store().update("DELETE { <http://example.org/feed> nie:created ?c } "
                   "WHERE { <http://example.org/feed> nie:created ?c }");
    const QStringList before = everythingIn(store());
    const QString update = S::linkEdit(channelUri, "", "http://example.org/new", "");
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->editChannel(channelUri, everyProperty()); }),
             found() + linkJournal("http://example.org/new", "", "")
                 + QStringList(
                     criticalLine("editChannel", {"Query Execution Failed - link Query", quoted(update)})));
    QVERIFY(!done);
    QCOMPARE(everythingIn(store()), before);
}

void TestUpdateChannel::titleIsReplaced()
{
    store().update("INSERT { <urn:c> nie:title 'Older' }");
    const QStringList before = propertiesOf(store(), channelUri);
    bool done = false;
    QCOMPARE(journalOf([&] {
                 done = tracker()->editChannel(channelUri, {{FeedTrackerSparql::TitleKey, "New"}});
             }),
             found() + titleJournal("New"));
    QVERIFY(done);
    QStringList expected = before;
    expected.removeOne("nie:title Old");
    expected[expected.indexOf("nie:title Older")] = "nie:title New";
    QCOMPARE(propertiesOf(store(), channelUri), expected);
    QCOMPARE(tracker()->channelForUri("urn:d").title(), QString("Other"));
}

void TestUpdateChannel::lastModifiedTimeIsReplaced_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("time");
    const QDate day(2021, 2, 3);
    QTest::newRow("local") << "2021-02-03T04:05:06" << QDateTime(day, QTime(4, 5, 6));
    QTest::newRow("UTC") << "2021-02-03T04:05:06Z" << QDateTime(day, QTime(4, 5, 6), Qt::UTC);
    QTest::newRow("offset") << "2021-02-03T04:05:06-03:30"
                            << QDateTime(day, QTime(4, 5, 6), Qt::OffsetFromUTC, -12600);
}

void TestUpdateChannel::lastModifiedTimeIsReplaced()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, time);
    bool done = false;
    QCOMPARE(journalOf([&] {
                 done = tracker()->editChannel(channelUri, {{FeedTrackerSparql::LastModifiedTimeKey, text}});
             }),
             found() + timeJournal(text));
    QVERIFY(done);
    const FeedChannel stored = tracker()->channelForUri(channelUri);
    QCOMPARE(stored.updatedTime(), time);
    QCOMPARE(stored.updatedTime().timeSpec(), Qt::LocalTime);
    // The last-modified text of the feed is another property.
    QCOMPARE(stored.lastModifiedTime(), QString("old text"));
    QCOMPARE(propertiesOf(store(), channelUri).filter("nie:contentLastModified").size(), 1);
}

void TestUpdateChannel::propertiesAreEditedInAFixedOrder()
{
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->editChannel(channelUri, everyProperty()); }), editJournal());
    QVERIFY(done);
    const FeedChannel stored = tracker()->channelForUri(channelUri);
    QCOMPARE(stored.link(), QString("http://example.org/new"));
    QCOMPARE(stored.title(), QString("New"));
    QCOMPARE(stored.updatedTime(), QDateTime(QDate(2021, 1, 1), QTime(0, 0), Qt::UTC));
}

void TestUpdateChannel::valuesAreReadAsText()
{
    QCOMPARE(journalOf([&] {
                 tracker()->editChannel(channelUri,
                                        {{FeedTrackerSparql::LinkKey, QUrl("http://example.org/new")},
                                         {FeedTrackerSparql::TitleKey, 42},
                                         {FeedTrackerSparql::LastModifiedTimeKey, QDate(2021, 2, 3)}});
             }).filter("insert: "),
             QStringList({insertLine(S::linkEdit(channelUri, link, "http://example.org/new", created)),
                          insertLine(S::titleEdit(channelUri, "42")),
                          insertLine(S::lastModifiedTimeEdit(channelUri, "2021-02-03"))}));
}

void TestUpdateChannel::editedTextsAreStoredAsTheyAre_data() { addTexts(); }

void TestUpdateChannel::editedTextsAreStoredAsTheyAre()
{
    QFETCH(QString, text);
    QVERIFY(tracker()->editChannel(channelUri, {{FeedTrackerSparql::TitleKey, text}}));
    QCOMPARE(store().texts("SELECT ?t { <urn:c> nie:title ?t }"), QStringList(text));
    QCOMPARE(tracker()->channelForUri("urn:d").title(), QString("Other"));
}

void TestUpdateChannel::textThatIsNoTimeIsRefusedByTheStore_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("word") << "yesterday";
    QTest::newRow("empty") << "";
    QTest::newRow("of a header") << "Wed, 03 Feb 2021 04:05:06 GMT";
}

void TestUpdateChannel::textThatIsNoTimeIsRefusedByTheStore()
{
    QFETCH(QString, text);
    QVariantMap properties = everyProperty();
    properties[FeedTrackerSparql::LastModifiedTimeKey] = text;
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->editChannel(channelUri, properties); }),
             throughStatement(editJournal(), 3) + timeJournal(text)
                 + QStringList(criticalLine("editChannel",
                                            {"Updation of Last Modified time failed",
                                             quoted(S::lastModifiedTimeEdit(channelUri, text))})));
    QVERIFY(!done);
    const FeedChannel stored = tracker()->channelForUri(channelUri);
    QCOMPARE(stored.link(), QString("http://example.org/new"));
    QCOMPARE(stored.title(), QString("New"));
    QCOMPARE(stored.updatedTime(), QDateTime(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC));
}

void TestUpdateChannel::titleThatTheStoreRefusesKeepsTheNewLink()
{
    QVariantMap properties = everyProperty();
    const QString title = QString("a") + QChar(u'\0') + 'b';
    properties[FeedTrackerSparql::TitleKey] = title;
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->editChannel(channelUri, properties); }),
             throughStatement(editJournal(), 2) + titleJournal(title)
                 + QStringList(criticalLine(
                     "editChannel", {"Query Execution Failed!!!", quoted(S::titleEdit(channelUri, title))})));
    QVERIFY(!done);
    QCOMPARE(tracker()->channelForUri(channelUri).link(), QString("http://example.org/new"));
    QCOMPARE(tracker()->channelForUri(channelUri).title(), QString("Old"));
}

void TestUpdateChannel::editFailure_data()
{
    addFailureColumns();
    QTest::addColumn<QStringList>("edited");
    const QStringList all = editJournal();
    const std::vector<std::pair<QString, QStringList>> errors = {
        {"Query Execution Failed", {}},
        {"Query Execution Failed - getCreated", {}},
        {"Query Execution Failed - link Query", {}},
        {"Query Execution Failed!!!", {"link"}},
        {"Updation of Last Modified time failed", {"link", "title"}}};
    for (int i = 0; i < int(errors.size()); ++i) {
        const auto &[error, edited] = errors.at(size_t(i));
        const QStringList start = throughStatement(all, i);
        const QString statement = start.last().section(": ", 1);
        const Operation edit = [=] { return !tracker()->editChannel(channelUri, everyProperty()); };
        QTest::addRow("statement %d, no result", i)
            << edit << Interventions{{i, StatementGate::NoResult}}
            << start + QStringList(criticalLine("editChannel", {"Query Execution failed"})) << edited;
        QTest::addRow("statement %d, refused", i)
            << edit << Interventions{{i, StatementGate::Refuse}}
            << start + QStringList(criticalLine("editChannel", {error, quoted(statement)})) << edited;
    }
}

void TestUpdateChannel::editFailure()
{
    QFETCH(QStringList, edited);
    checkFailingOperation();
    const FeedChannel stored = tracker()->channelForUri(channelUri);
    QCOMPARE(stored.link(), edited.contains("link") ? QString("http://example.org/new") : link);
    QCOMPARE(stored.title(), QString(edited.contains("title") ? "New" : "Old"));
    QCOMPARE(stored.updatedTime(), QDateTime(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC));
}

QTEST_GUILESS_MAIN(TestUpdateChannel)
#include "tst_updatechannel.moc"
