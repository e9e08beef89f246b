// SPDX-License-Identifier: LGPL-2.1-or-later
#include "deletions.h"
#include "statements.h"
#include "storetest.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <type_traits>

using namespace Deletions;
namespace S = Statements;

using Store = FeedTrackerSparql;
static_assert(std::is_same_v<decltype(&Store::deleteChannel), void (Store::*)(const QString &)>);
static_assert(std::is_same_v<decltype(&Store::deleteAllChannels), void (Store::*)()>);
static_assert(
    std::is_same_v<decltype(&Store::deleteMessage), void (Store::*)(const QString &, const QString &)>);
static_assert(std::is_same_v<decltype(std::declval<Store>().deleteMessages(QString())), bool>);
static_assert(std::is_same_v<decltype(std::declval<Store>().deleteMessages(QList<QUrl>())), void>);

namespace {

const QString channelUri = "urn:c:1";
const QString messageUri = "urn:m:1";
const QString messageLink = "http://example.org/1";
/// A placeholder for the error of the store.
const QString storeError = "STORE ERROR";

QStringList lookupJournal(const QString &uri)
{
    const QString statement = S::channelToDelete(uri);
    return {debugLine("deleteChannel", {quoted(statement)}), selectLine(statement)};
}

QStringList nothingToDelete()
{
    return QStringList(criticalLine("deleteMessages(QList<QUrl>)", {"Nothing to delete"}));
}

/// Returns the journal of deleteChannel() before its messages.
QStringList startOfChannelJournal(const QString &name, const QString &image)
{
    const QString uri = "urn:c:" + name;
    return lookupJournal(uri)
        + QStringList({deleteLine(S::channelDeletion(uri, "http://example.org/feed/" + name)),
                       selectLine(S::imageFile(uri)), deleteLine(S::imageDeletion(uri)),
                       selectLine(S::imageUsers(image))});
}

/// Returns the journal for a channel without an image and messages. No other channel is without an image.
QStringList bareChannelJournal(const QString &name)
{
    return startOfChannelJournal(name, QString())
        + QStringList({emptyPathWarning(), selectLine(S::messagesToDelete("urn:c:" + name))})
        + nothingToDelete();
}

QStringList messageLookup(const QString &uri = messageUri, const QString &channel = channelUri)
{
    const QString statement = S::messageToDelete(uri, channel);
    return {debugLine("deleteMessage", {quoted(statement)}), selectLine(statement)};
}

QStringList singleMessageJournal(const QStringList &enclosures, const QString &link = messageLink)
{
    return messageLookup() + enclosuresOfMessageJournal(messageUri, enclosures)
        + QStringList(deleteLine(S::messageDeletion(messageUri, link)));
}

QString messageNotFound() { return criticalLine("deleteMessage", {"Message not found"}); }

/// A failing statement of an operation, and the journal behind it.
struct FailingStep
{
    int statement;
    const char *function;
    QStringList noResult;
    QStringList error;
    /// The other lines of the same list.
    QStringList after;
    /// The statement with which the operation continues; -1 if it stops.
    int resumedAt;
    /// The resources that are not deleted.
    QStringList left;
};

void addFailingSteps(const QStringList &all, const std::vector<FailingStep> &steps)
{
    QTest::addColumn<Interventions>("interventions");
    QTest::addColumn<QStringList>("journal");
    QTest::addColumn<QStringList>("left");
    for (const FailingStep &step : steps) {
        for (const auto verdict : {StatementGate::NoResult, StatementGate::Refuse}) {
            const bool isRefused = verdict == StatementGate::Refuse;
            const QStringList start = throughStatement(all, step.statement);
            QStringList items = isRefused ? step.error : step.noResult;
            // "STATEMENT" stands for the failing statement.
            items.replaceInStrings("STATEMENT", quoted(start.last().section(": ", 1)));
            QTest::addRow("statement %d, %s", step.statement, isRefused ? "refused" : "no result")
                << Interventions{{step.statement, verdict}}
                << start + QStringList(criticalLine(step.function, items)) + step.after
                    + (step.resumedAt == -1 ? QStringList() : fromStatement(all, step.resumedAt))
                << step.left;
        }
    }
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

class TestDeleteChannels : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void emptyChannelUriIsRefused();
    void unknownChannelIsNotFound_data();
    void unknownChannelIsNotFound();
    void channelIsDeletedWithItsResources();
    void channelWithoutImage();
    void channelWithoutImageBesideAnother();
    void propertiesOfFeedReadersAreDeletedWithTheChannel();
    void onlyTheFirstLinkNodeIsDeleted();
    void channelUriIsBoundAsAResource();
    void failureOfAChannel_data();
    void failureOfAChannel();

    void withoutChannelsNothingIsDeleted();
    void allChannelsAreDeleted();
    void channelsThatCannotBeListedStay_data();
    void channelsThatCannotBeListedStay();
    void failingChannelDoesNotStopTheOthers();

    void messageIsDeletedAfterItsEnclosures();
    void messageWithoutEnclosures();
    void linkNodeOfAMessageIsDeletedToo();
    void linkNodeInAnotherSpellingStays();
    void messageOfAnotherChannelIsNotFound_data();
    void messageOfAnotherChannelIsNotFound();
    void messageOfNoChannelIsDeleted();
    void otherOwnersDoNotProtectAMessage();
    void messageThatIsNotStoredIsNotFound_data();
    void messageThatIsNotStoredIsNotFound();
    void messageWithAnEmptyLinkLosesItsEnclosures();
    void messageWithoutLinkKeepsItsEnclosures();
    void failureOfAMessage_data();
    void failureOfAMessage();

    void emptyUriDeletesNoMessages();
    void messagesOfAChannelAreDeleted();
    void channelWithoutMessages();
    void orphansAreDeletedToo();
    void unknownChannelDeletesOrphansOnly();
    void failureOfMessagesOfAChannel_data();
    void failureOfMessagesOfAChannel();

    void emptyListIsRefused();
    void listIsOneUpdateInItsOrder();
    void listIsDeletedDespiteOtherOwners();
    void otherResourcesStay();
    void linkNodesOfAListStay();
    void enclosureOfTwoMessagesOfTheListGoesWithTheFirst();
    void messagesWithoutLinkAreDeleted();
    void urisArePastedAsTheyAreShown();
    void failureOfAList_data();
    void failureOfAList();
    void hundredsOfMessages();

private:
    void checkFailingStep(const Operation &operation);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestDeleteChannels::init()
{
    StoreTestCase::init();
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestDeleteChannels::checkFailingStep(const Operation &operation)
{
    QFETCH(Interventions, interventions);
    QFETCH(QStringList, journal);
    QFETCH(QStringList, left);
    bool isAsExpected = false;
    QCOMPARE(journalOf([&] { isAsExpected = operation(); }, interventions),
             journal.replaceInStrings(storeError, refusalError()));
    QVERIFY(isAsExpected);
    QCOMPARE(subjectsIn(store()), left);
}

void TestDeleteChannels::emptyChannelUriIsRefused()
{
    store().update(storedMessage("orphan", {}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteChannel(QString()); }),
             QStringList(criticalLine("deleteChannel", {"channelUri empty"})));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::unknownChannelIsNotFound_data()
{
    QTest::addColumn<QString>("uri");
    QTest::newRow("unknown") << "urn:c:2";
    QTest::newRow("a message") << "urn:m:1";
    QTest::newRow("a channel without a link") << "urn:bare";
}

void TestDeleteChannels::unknownChannelIsNotFound()
{
    QFETCH(QString, uri);
    store().update(storedChannel("1") + storedMessage("1", {channelUri}) + storedMessage("orphan", {})
                   + "INSERT { <urn:bare> a mfo:FeedChannel }");
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteChannel(uri); }),
             lookupJournal(uri)
                 + QStringList(criticalLine("deleteChannel", {"Channel not found for given channelUri"})));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::channelIsDeletedWithItsResources()
{
    store().update(storedChannel("2", "mfo:image '/other.png'") + storedMessage("2", {"urn:c:2"})
                   + storedEnclosure("2", {"urn:m:2"}));
    const QStringList before = everythingIn(store());
    QFile image(m_folder->filePath("image.png"));
    QVERIFY(image.open(QIODevice::WriteOnly));
    store().update(storedChannel("1", "mfo:image '/image.png'") + storedMessage("1", {channelUri})
                   + storedEnclosure("1", {messageUri})
                   + QString("INSERT { <urn:i> a mfo:Enclosure ; mfo:remoteLink <urn:r> ; "
                             "mfo:localLink <%1> ; nie:isLogicalPartOf <urn:c:1> }")
                         .arg(image.fileName()));
    QCOMPARE(journalOf([&] { tracker()->deleteChannel(channelUri); }),
             startOfChannelJournal("1", "/image.png")
                 + QStringList(selectLine(S::messagesToDelete(channelUri))) + messageJournal({{"1", {"1"}}}));
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(!image.exists());
}

void TestDeleteChannels::channelWithoutImage()
{
    store().update(storedChannel("1"));
    QCOMPARE(journalOf([&] { tracker()->deleteChannel(channelUri); }), bareChannelJournal("1"));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteChannels::channelWithoutImageBesideAnother()
{
    store().update(storedChannel("2", "mfo:image ''"));
    const QStringList before = everythingIn(store());
    store().update(storedChannel("1"));
    QStringList expected = bareChannelJournal("1");
    // The other channel has an empty image too, so the file is in use.
    expected.removeOne(emptyPathWarning());
    QCOMPARE(journalOf([&] { tracker()->deleteChannel(channelUri); }), expected);
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::propertiesOfFeedReadersAreDeletedWithTheChannel()
{
    store().update(storedChannel("1", "tidel:entityTag 'x' ; tidel:droppedLink 'a', 'b'"));
    tracker()->deleteChannel(channelUri);
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteChannels::onlyTheFirstLinkNodeIsDeleted()
{
    store().update(storedChannel("1", "nie:links <urn:second>") + storedNode("urn:second"));
    const QString first = store().texts(S::channelToDelete(channelUri)).first().section(' ', 1, 1);
    tracker()->deleteChannel(channelUri);
    QCOMPARE(subjectsIn(store()),
             QStringList(first == "urn:second" ? "http://example.org/feed/1" : "urn:second"));
}

void TestDeleteChannels::channelUriIsBoundAsAResource()
{
    QCOMPARE(journalOf([&] { tracker()->deleteChannel("urn:a b\">"); }).mid(0, 2),
             lookupJournal("urn:a%20b%22%3E"));
    QCOMPARE(journalOf([&] { tracker()->deleteMessages("urn:a b\">"); }).first(),
             selectLine(S::messagesToDelete("urn:a%20b%22%3E")));
    QCOMPARE(journalOf([&] { tracker()->deleteMessage("urn:a b", "urn:c d"); }).mid(0, 2),
             messageLookup("urn:a%20b", "urn:c%20d"));
}

void TestDeleteChannels::failureOfAChannel_data()
{
    const QStringList all = startOfChannelJournal("1", "/image.png")
        + QStringList(selectLine(S::messagesToDelete(channelUri))) + messageJournal({{"1", {"1"}}});
    const QString none = "Query Execution failed";
    const QString text = "STATEMENT";
    const QString link = "http://example.org/feed/1";
    const char *image = "deleteChannelImageIfNotInUse";
    const char *list = "deleteEnclosures(QList<QUrl>)";
    const QStringList everything = {link, "urn:c:1", "urn:e:1", "urn:i", "urn:m:1"};
    addFailingSteps(all,
                    {{0, "deleteChannel", {none}, {"Query Execution Failed", text}, {}, -1, everything},
                     {1, "deleteChannel", {none}, {"Query Execution Failed ", text}, {}, -1, everything},
                     {2, image, {none}, {"Query Execution Failed", text}, {}, 5, {"urn:i"}},
                     {3, image, {none}, {"Query Execution Failed", text}, {}, 5, {"urn:i"}},
                     {4, image, {none}, {"Query Execution Failed", text}, {}, 5, {}},
                     {5,
                      "deleteMessages(const QString&)",
                      {none},
                      {"Query execution failed ", text},
                      {},
                      -1,
                      {"urn:e:1", "urn:m:1"}},
                     {6,
                      "deleteMessages(QList<QUrl>)",
                      {none},
                      {"Delete Query Failed", storeError},
                      {},
                      -1,
                      {"urn:e:1", "urn:m:1"}},
                     {7,
                      "deleteEnclosures(const QString&)",
                      {none},
                      {"Query execution failed ", text},
                      {},
                      -1,
                      {"urn:e:1"}},
                     {8,
                      list,
                      {none},
                      {"Not able to find enclosure information", text},
                      {debugLine(list, {"No enclosures found"})},
                      -1,
                      {"urn:e:1"}},
                     {9, list, {none}, {"Delete Query Failed", storeError}, {}, -1, {"urn:e:1"}}});
}

void TestDeleteChannels::failureOfAChannel()
{
    QFETCH(Interventions, interventions);
    QFile image(m_folder->filePath("image.png"));
    QVERIFY(image.open(QIODevice::WriteOnly));
    store().update(storedChannel("1", "mfo:image '/image.png'") + storedMessage("1", {channelUri})
                   + storedEnclosure("1", {messageUri})
                   + QString("INSERT { <urn:i> a mfo:Enclosure ; mfo:remoteLink <urn:r> ; "
                             "mfo:localLink <%1> ; nie:isLogicalPartOf <urn:c:1> }")
                         .arg(image.fileName()));
    checkFailingStep([this] {
        tracker()->deleteChannel(channelUri);
        return true;
    });
    QCOMPARE(image.exists(), interventions.front().statement <= 4);
}

void TestDeleteChannels::withoutChannelsNothingIsDeleted()
{
    store().update(storedMessage("orphan", {}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteAllChannels(); }),
             QStringList(
                 {selectLine(S::allChannelUrls()), debugLine("allChannelUrls", {"Channel Uris: ", "()"})}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::allChannelsAreDeleted()
{
    store().update(storedChannel("1") + storedChannel("2") + storedChannel("3"));
    const QStringList uris = store().texts(S::allChannelUrls());
    QCOMPARE(sorted(uris), QStringList({"urn:c:1", "urn:c:2", "urn:c:3"}));
    QStringList expected = {
        selectLine(S::allChannelUrls()),
        debugLine("allChannelUrls", {"Channel Uris: ", "(\"" + uris.join("\", \"") + "\")"})};
    for (const QString &uri : uris)
        expected += bareChannelJournal(uri.section(':', 2));
    QCOMPARE(journalOf([&] { tracker()->deleteAllChannels(); }), expected);
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteChannels::channelsThatCannotBeListedStay_data()
{
    QTest::addColumn<int>("verdict");
    QTest::addColumn<QStringList>("items");
    QTest::newRow("no result") << int(StatementGate::NoResult) << QStringList("Query Execution Failed");
    QTest::newRow("refused") << int(StatementGate::Refuse)
                             << QStringList({"Executing query failed: returning empty list",
                                             quoted(S::allChannelUrls())});
}

void TestDeleteChannels::channelsThatCannotBeListedStay()
{
    QFETCH(int, verdict);
    QFETCH(QStringList, items);
    store().update(storedChannel("1"));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteAllChannels(); }, {{0, StatementGate::Verdict(verdict)}}),
             QStringList({selectLine(S::allChannelUrls()), criticalLine("allChannelUrls", items)}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::failingChannelDoesNotStopTheOthers()
{
    store().update(storedChannel("1") + storedChannel("2"));
    const QStringList uris = store().texts(S::allChannelUrls());
    const QStringList journal =
        journalOf([&] { tracker()->deleteAllChannels(); }, {{2, StatementGate::NoResult}});
    QCOMPARE(journal.mid(5),
             QStringList(criticalLine("deleteChannel", {"Query Execution failed"}))
                 + bareChannelJournal(uris.last().section(':', 2)));
    QCOMPARE(tracker()->allChannelUrls(), QStringList(uris.first()));
}

void TestDeleteChannels::messageIsDeletedAfterItsEnclosures()
{
    store().update(storedChannel("1") + storedMessage("2", {channelUri}) + storedEnclosure("2", {"urn:m:2"}));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {channelUri}) + storedEnclosure("1", {messageUri}));
    QCOMPARE(journalOf([&] { tracker()->deleteMessage(messageUri, channelUri); }),
             singleMessageJournal({"1"}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::messageWithoutEnclosures()
{
    store().update(storedChannel("1"));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {channelUri}));
    QCOMPARE(journalOf([&] { tracker()->deleteMessage(messageUri, channelUri); }), singleMessageJournal({}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::linkNodeOfAMessageIsDeletedToo()
{
    store().update(storedNode("http://example.org/2"));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {}) + storedNode(messageLink));
    tracker()->deleteMessage(messageUri, channelUri);
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::linkNodeInAnotherSpellingStays()
{
    const QString link = QString::fromUtf8("http://example.org/\u00e4");
    store().update("INSERT { <urn:m:1> a mfo:FeedMessage ; nie:links <" + link + "> } " + storedNode(link));
    QCOMPARE(journalOf([&] { tracker()->deleteMessage(messageUri, channelUri); }),
             singleMessageJournal({}, "http://example.org/%C3%A4"));
    QCOMPARE(subjectsIn(store()), QStringList(link));
}

void TestDeleteChannels::messageOfAnotherChannelIsNotFound_data()
{
    QTest::addColumn<QStringList>("owners");
    QTest::newRow("shared") << QStringList({"urn:c:1", "urn:c:2"});
    QTest::newRow("the other's only") << QStringList("urn:c:2");
}

void TestDeleteChannels::messageOfAnotherChannelIsNotFound()
{
    QFETCH(QStringList, owners);
    store().update(storedChannel("1") + storedChannel("2") + storedMessage("1", owners)
                   + storedEnclosure("1", {messageUri}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteMessage(messageUri, channelUri); }),
             messageLookup() + QStringList(messageNotFound()));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::messageOfNoChannelIsDeleted()
{
    store().update(storedMessage("1", {}) + storedEnclosure("1", {messageUri}));
    QCOMPARE(journalOf([&] { tracker()->deleteMessage(messageUri, QString()); }),
             messageLookup(messageUri, QString()) + singleMessageJournal({"1"}).mid(2));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteChannels::otherOwnersDoNotProtectAMessage()
{
    store().update(storedMessage("1", {"urn:c:1", "urn:deleted", "urn:e:other"})
                   + "INSERT { <urn:e:other> a mfo:Enclosure }");
    tracker()->deleteMessage(messageUri, channelUri);
    QCOMPARE(subjectsIn(store()), QStringList("urn:e:other"));
}

void TestDeleteChannels::messageThatIsNotStoredIsNotFound_data()
{
    QTest::addColumn<QString>("uri");
    QTest::newRow("unknown") << "urn:m:2";
    QTest::newRow("empty") << "";
    QTest::newRow("a channel") << "urn:c:1";
}

void TestDeleteChannels::messageThatIsNotStoredIsNotFound()
{
    QFETCH(QString, uri);
    store().update(storedChannel("1") + storedMessage("1", {channelUri})
                   + storedEnclosure("1", {messageUri}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteMessage(uri, channelUri); }),
             messageLookup(uri) + QStringList(messageNotFound()));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::messageWithAnEmptyLinkLosesItsEnclosures()
{
    store().update("INSERT { <urn:m:1> a mfo:FeedMessage ; nie:links <> }");
    const QStringList before = everythingIn(store());
    store().update(storedEnclosure("1", {messageUri}));
    QCOMPARE(journalOf([&] { tracker()->deleteMessage(messageUri, channelUri); }),
             messageLookup() + enclosuresOfMessageJournal(messageUri, {"1"})
                 + QStringList(messageNotFound()));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::messageWithoutLinkKeepsItsEnclosures()
{
    store().update("INSERT { <urn:m:1> a mfo:FeedMessage } " + storedEnclosure("1", {messageUri}));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->deleteMessage(messageUri, channelUri); }),
             messageLookup() + QStringList(messageNotFound()));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::failureOfAMessage_data()
{
    const QString text = "STATEMENT";
    const QString none = "Query Execution failed";
    const char *list = "deleteEnclosures(QList<QUrl>)";
    addFailingSteps(singleMessageJournal({"1"}),
                    {{0,
                      "deleteMessage",
                      {"query execution failed"},
                      {"query execution failed", text},
                      {},
                      -1,
                      {"urn:e:1", "urn:m:1"}},
                     {1,
                      "deleteEnclosures(const QString&)",
                      {none},
                      {"Query execution failed ", text},
                      {},
                      4,
                      {"urn:e:1"}},
                     {2,
                      list,
                      {none},
                      {"Not able to find enclosure information", text},
                      {debugLine(list, {"No enclosures found"})},
                      4,
                      {"urn:e:1"}},
                     {3, list, {none}, {"Delete Query Failed", storeError}, {}, 4, {"urn:e:1"}},
                     {4, "deleteMessage", {none, text}, {none, text}, {}, -1, {"urn:m:1"}}});
}

void TestDeleteChannels::failureOfAMessage()
{
    store().update(storedMessage("1", {}) + storedEnclosure("1", {messageUri}));
    checkFailingStep([this] {
        tracker()->deleteMessage(messageUri, channelUri);
        return true;
    });
}

void TestDeleteChannels::emptyUriDeletesNoMessages()
{
    store().update(storedMessage("orphan", {}));
    const QStringList before = everythingIn(store());
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->deleteMessages(QString()); }),
             QStringList(criticalLine("deleteMessages(const QString&)", {"Channel uri empty"})));
    QVERIFY(!done);
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::messagesOfAChannelAreDeleted()
{
    store().update(storedChannel("1") + storedChannel("2") + storedMessage("other", {"urn:c:2"})
                   + storedMessage("shared", {"urn:c:1", "urn:c:2"})
                   + storedEnclosure("other", {"urn:m:other"}) + storedEnclosure("shared", {"urn:m:shared"}));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {channelUri}) + storedMessage("2", {channelUri})
                   + storedEnclosure("1", {"urn:m:1"}) + storedEnclosure("2", {"urn:m:2"}));
    QList<QPair<QString, QStringList>> messages;
    for (const QString &uri : store().texts(S::messagesToDelete(channelUri)))
        messages.append({uri.section(':', 2), {uri.section(':', 2)}});
    QCOMPARE(messages.size(), 2);
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->deleteMessages(channelUri); }),
             QStringList(selectLine(S::messagesToDelete(channelUri))) + messageJournal(messages));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::channelWithoutMessages()
{
    store().update(storedChannel("1") + storedChannel("2") + storedMessage("2", {"urn:c:2"}));
    const QStringList before = everythingIn(store());
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->deleteMessages(channelUri); }),
             QStringList(selectLine(S::messagesToDelete(channelUri))) + nothingToDelete());
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::orphansAreDeletedToo()
{
    store().update(storedChannel("1"));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {channelUri}) + storedMessage("orphan", {})
                   + storedMessage("of-a-deleted-channel", {"urn:c:deleted"})
                   + storedEnclosure("orphan", {"urn:m:orphan"}));
    QVERIFY(tracker()->deleteMessages(channelUri));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::unknownChannelDeletesOrphansOnly()
{
    store().update(storedChannel("1") + storedMessage("1", {channelUri}));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("orphan", {}));
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->deleteMessages("urn:unknown"); }),
             QStringList(selectLine(S::messagesToDelete("urn:unknown"))) + messageJournal({{"orphan", {}}}));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::failureOfMessagesOfAChannel_data()
{
    const char *list = "deleteMessages(QList<QUrl>)";
    const QString none = "Query Execution failed";
    addFailingSteps(QStringList(selectLine(S::messagesToDelete(channelUri))) + messageJournal({{"1", {}}}),
                    {{0,
                      "deleteMessages(const QString&)",
                      {none},
                      {"Query execution failed ", "STATEMENT"},
                      {},
                      -1,
                      {"urn:m:1"}},
                     {1, list, {none}, {"Delete Query Failed", storeError}, {}, -1, {"urn:m:1"}},
                     {2,
                      "deleteEnclosures(const QString&)",
                      {none},
                      {"Query execution failed ", "STATEMENT"},
                      {},
                      -1,
                      {}}});
}

void TestDeleteChannels::failureOfMessagesOfAChannel()
{
    QFETCH(Interventions, interventions);
    store().update(storedMessage("1", {channelUri}));
    // The result only depends on the first statement, which lists the messages.
    const bool answer = interventions.front().statement > 0;
    checkFailingStep([this, answer] { return tracker()->deleteMessages(channelUri) == answer; });
}

void TestDeleteChannels::emptyListIsRefused()
{
    QCOMPARE(journalOf([&] { tracker()->deleteMessages(QList<QUrl>()); }), nothingToDelete());
}

void TestDeleteChannels::listIsOneUpdateInItsOrder()
{
    store().update(storedMessage("4", {}) + storedEnclosure("4", {"urn:m:4"}));
    const QStringList before = everythingIn(store());
    for (const char *name : {"1", "2", "3"})
        store().update(storedMessage(name, {channelUri}));
    store().update(storedEnclosure("2", {"urn:m:2"}) + storedEnclosure("3", {"urn:m:3"}));
    QCOMPARE(journalOf([&] {
                 tracker()->deleteMessages(messageUris({"3", "1", "unknown", "2"}));
             }),
             messageJournal({{"3", {"3"}}, {"1", {}}, {"unknown", {}}, {"2", {"2"}}}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::listIsDeletedDespiteOtherOwners()
{
    store().update(storedChannel("1") + storedChannel("2"));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {"urn:c:1", "urn:c:2"}, "nao:hasTag nao:predefined-tag-favorite"));
    QCOMPARE(journalOf([&] {
                 tracker()->deleteMessages(messageUris({"1", "1"}));
             }),
             messageJournal({{"1", {}}, {"1", {}}}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::otherResourcesStay()
{
    store().update(storedChannel("1") + storedEnclosure("1", {"urn:m:1"}));
    const QStringList before = everythingIn(store());
    tracker()->deleteMessages({QUrl("urn:c:1"), QUrl("urn:e:1"), QUrl("http://example.org/feed/1"), QUrl()});
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::linkNodesOfAListStay()
{
    store().update(storedNode(messageLink));
    const QStringList before = everythingIn(store());
    store().update(storedMessage("1", {}));
    tracker()->deleteMessages(messageUris({"1"}));
    QCOMPARE(everythingIn(store()), before);
}

void TestDeleteChannels::enclosureOfTwoMessagesOfTheListGoesWithTheFirst()
{
    store().update(storedMessage("1", {}) + storedMessage("2", {})
                   + storedEnclosure("shared", {"urn:m:1", "urn:m:2"}));
    QCOMPARE(journalOf([&] {
                 tracker()->deleteMessages(messageUris({"2", "1"}));
             }),
             messageJournal({{"2", {"shared"}}, {"1", {}}}));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteChannels::messagesWithoutLinkAreDeleted()
{
    store().update("INSERT { <urn:m:1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c:1> . "
                   "<urn:m:2> a mfo:FeedMessage ; nie:links <> ; nie:isLogicalPartOf <urn:c:1> }");
    QVERIFY(tracker()->deleteMessages(channelUri));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestDeleteChannels::urisArePastedAsTheyAreShown()
{
    const QString shown = QString::fromUtf8("urn:m:\u00e4");
    store().update("INSERT { <urn:m:%C3%A4> a mfo:FeedMessage . <" + shown + "> a mfo:FeedMessage }");
    QCOMPARE(journalOf([&] { tracker()->deleteMessages({QUrl("urn:m:%C3%A4")}); }).first(),
             deleteLine(S::messagePiece(shown)));
    QCOMPARE(subjectsIn(store()), QStringList("urn:m:%C3%A4"));
}

void TestDeleteChannels::failureOfAList_data()
{
    const QString none = "Query Execution failed";
    const char *list = "deleteEnclosures(QList<QUrl>)";
    const QStringList error = {"Query execution failed ", "STATEMENT"};
    // A failure of one message's enclosures does not stop the deletion of the next ones.
    addFailingSteps(messageJournal({{"1", {"1"}}, {"2", {"2"}}}),
                    {{0,
                      "deleteMessages(QList<QUrl>)",
                      {none},
                      {"Delete Query Failed", storeError},
                      {},
                      -1,
                      {"urn:e:1", "urn:e:2", "urn:m:1", "urn:m:2"}},
                     {1, "deleteEnclosures(const QString&)", {none}, error, {}, 4, {"urn:e:1"}},
                     {2,
                      list,
                      {none},
                      {"Not able to find enclosure information", "STATEMENT"},
                      {debugLine(list, {"No enclosures found"})},
                      4,
                      {"urn:e:1"}},
                     {3, list, {none}, {"Delete Query Failed", storeError}, {}, 4, {"urn:e:1"}},
                     {4, "deleteEnclosures(const QString&)", {none}, error, {}, -1, {"urn:e:2"}}});
}

void TestDeleteChannels::failureOfAList()
{
    store().update(storedMessage("1", {}) + storedMessage("2", {}) + storedEnclosure("1", {"urn:m:1"})
                   + storedEnclosure("2", {"urn:m:2"}));
    checkFailingStep([this] {
        tracker()->deleteMessages(messageUris({"1", "2"}));
        return true;
    });
}

void TestDeleteChannels::hundredsOfMessages()
{
    QStringList names;
    QString insert;
    QList<QPair<QString, QStringList>> messages;
    for (int i = 0; i < 500; ++i) {
        names.append(QString::number(i));
        messages.append({names.last(), {}});
        insert += storedMessage(names.last(), {channelUri});
    }
    store().update(insert);
    const QStringList journal = journalOf([&] { tracker()->deleteMessages(messageUris(names)); });
    QCOMPARE(journal, messageJournal(messages));
    QCOMPARE(journal.filter("delete: ").size(), 1);
    QCOMPARE(everythingIn(store()), QStringList());
}

QTEST_GUILESS_MAIN(TestDeleteChannels)
#include "tst_deletechannels.moc"
