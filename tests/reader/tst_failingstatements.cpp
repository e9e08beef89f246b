// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channels.h>
#include <TidelReader/enclosurequeue.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/feeds.h>
#include <TidelReader/knownitems.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/messagelist.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/orphans.h>
#include <TidelReader/readstate.h>
#include <TidelReader/retention.h>
#include <TidelReader/schedule.h>

#include <storable.h>

using namespace Tidel;

namespace {

/// Calls a function of the library, and says whether it failed.
using Attempt = std::function<Result<void>(const Store &)>;

template <typename T> Result<void> outcome(const Result<T> &result)
{
    return result ? Result<void>() : Failure(result.error());
}

FeedChannel channel(const QString &name)
{
    FeedChannel channel;
    channel.setUri(channelUri(name));
    channel.setTitle(name);
    channel.setLink(linkOf(name));
    return channel;
}

FeedChannel newChannel()
{
    FeedEnclosure icon;
    icon.setRemoteUrl(linkOf("icon.png"));
    FeedChannel result = channel("new");
    result.setIcon(icon);
    return result;
}

FeedEnclosure file()
{
    FeedEnclosure enclosure;
    enclosure.setUri(enclosureUri("a.ogg"));
    enclosure.setLocalUrl("file:///other");
    return enclosure;
}

Result<void> writeEpisode(const Store &store)
{
    StorableMessage message(Link::fromEncoded(linkOf("new")), FeedMessage());
    message.addEnclosure(Link::fromEncoded(linkOf("new.ogg")), FeedEnclosure());
    return LinkUse::of(store, {message.link()}, channelUri("news")).and_then([&](const LinkUse &use) {
        return MessageWriter(store).write({message}, channelUri("news"), use);
    });
}

const QStringList manyNames = numberedNames("m", 150);

void ignoreStep(int, const QList<FeedEnclosure> &) { }

void addAttempt(const char *name, int statements, const Attempt &attempt)
{
    QTest::newRow(name) << statements << attempt;
}

} // namespace

Q_DECLARE_METATYPE(Attempt)

/// Every statement of every function fails, once by a refusal and once without an answer. Late answers are no
/// failures.
class TestFailingStatements : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void queriesAndUpdates_data();
    void queriesAndUpdates();
    void changesInSteps_data();
    void changesInSteps();

private:
    void fill() const;
    void fillForRemovals() const;
    void startAgain(const std::function<void()> &fillIt);
    void verifyFailure(const Attempt &attempt, int statement, StatementGate::Verdict verdict) const;
};

void TestFailingStatements::fill() const
{
    addChannel("news");
    addChannel("radio");
    addMessages({"a", "b", "shared"}, "news", 1);
    share("shared", "radio");
    addEnclosure("a.ogg", messageUri("a"));
    addEnclosure("image.png", channelUri("news"));
    addFavorite("b");
    addDropped({"dropped"}, "news");
}

void TestFailingStatements::fillForRemovals() const
{
    fill();
    addMessages(manyNames, "news");
    addMessages({"orphan"}, "gone");
    addEnclosure("orphan.ogg", messageUri("orphan"));
    addEnclosure("nobody.ogg", "urn:nobody");
}

void TestFailingStatements::startAgain(const std::function<void()> &fillIt)
{
    cleanup();
    init();
    fillIt();
    StatementGate::reset();
}

void TestFailingStatements::verifyFailure(const Attempt &attempt, int statement,
                                          StatementGate::Verdict verdict) const
{
    StatementGate::failAt(statement, verdict);
    const Result<void> failed = attempt(reader());
    StatementGate::reset();
    QVERIFY(!failed);
    const bool isRefused = verdict == StatementGate::Refuse;
    QCOMPARE(failed.error().kind(), isRefused ? Error::StoreRefused : Error::StoreFailed);
    QVERIFY2(failed.error().text().startsWith("could not "), qPrintable(failed.error().text()));
    QVERIFY2(!failed.error().text().contains('\n'), qPrintable(failed.error().text()));
    QVERIFY(!failed.error().reason().isEmpty());
    if (!isRefused)
        QCOMPARE(failed.error().reason(), QString("it gave no answer"));
}

/// Functions that only read or that write with one update.
void TestFailingStatements::queriesAndUpdates_data()
{
    QTest::addColumn<int>("statements");
    QTest::addColumn<Attempt>("attempt");
    using S = const Store &;
    const QString news = channelUri("news");
    const QStringList many = linksOf(manyNames);
    addAttempt("Channels::all", 1, [](S s) { return outcome(Channels(s).all()); });
    addAttempt("Channels::uri", 1, [](S s) { return outcome(Channels(s).uri(linkOf("news"))); });
    addAttempt("Channels::title", 1, [](S s) { return outcome(Channels(s).title(linkOf("news"))); });
    addAttempt("Channels::messageCounts", 2, [](S s) { return outcome(Channels(s).messageCounts()); });
    addAttempt("Channels::add", 3, [](S s) { return outcome(Channels(s).add(newChannel())); });
    addAttempt("Channels::edit, title", 1,
               [](S s) { return Channels(s).edit(channel("news"), "Moved", linkOf("news")); });
    addAttempt("Channels::edit, both", 3,
               [](S s) { return Channels(s).edit(channel("news"), "Moved", linkOf("moved")); });
    addAttempt("Messages::ofChannel", 1, [=](S s) { return outcome(Messages(s).ofChannel(news)); });
    addAttempt("Messages::headlines", 2, [=](S s) { return outcome(Messages(s).headlines(many)); });
    addAttempt("Messages::uri, link", 1, [](S s) { return outcome(Messages(s).uri(linkOf("a"))); });
    addAttempt("Messages::uri, URI", 2, [](S s) { return outcome(Messages(s).uri(messageUri("a"))); });
    addAttempt("Messages::setFavorite, false", 1,
               [](S s) { return Messages(s).setFavorite(messageUri("b"), false); });
    addAttempt("Enclosures::ofMessage", 1,
               [](S s) { return outcome(Enclosures(s).ofMessage(messageUri("a"))); });
    addAttempt("Enclosures::get", 1, [](S s) { return outcome(Enclosures(s).get(enclosureUri("a.ogg"))); });
    addAttempt("Enclosures::uris, message", 2, [](S s) { return outcome(Enclosures(s).uris(linkOf("a"))); });
    addAttempt("Enclosures::uris, URI", 4,
               [](S s) { return outcome(Enclosures(s).uris(enclosureUri("a.ogg"))); });
    addAttempt("Enclosures::newest", 4, [](S s) { return outcome(Enclosures(s).newest(5, {})); });
    addAttempt("EnclosureQueue::uris", 1, [](S s) { return outcome(EnclosureQueue(s).uris()); });
    addAttempt("EnclosureQueue::times", 1,
               [](S s) { return outcome(EnclosureQueue(s).times({enclosureUri("a.ogg")})); });
    addAttempt("EnclosureQueue::add", 1, [](S s) { return EnclosureQueue(s).add({enclosureUri("a.ogg")}); });
    addAttempt("EnclosureQueue::remove", 1,
               [](S s) { return EnclosureQueue(s).remove({enclosureUri("a.ogg")}); });
    addAttempt("Enclosures::setFile", 1, [](S s) { return Enclosures(s).setFile(file()); });
    addAttempt("Feeds::state", 1, [=](S s) { return outcome(Feeds(s).state(news)); });
    addAttempt("Feeds::noteReading", 1, [=](S s) {
        return Feeds(s).noteReading(news, {"tag", "then", {}, {}, {}});
    });
    addAttempt("Feeds::noteAnswer", 2, [=](S s) {
        return Feeds(s).noteAnswer(news, {404, "reason", 60, "host", {}},
                                   QDateTime::fromSecsSinceEpoch(1795348800, Qt::UTC));
    });
    addAttempt("Feeds::followMove", 1, [=](S s) { return outcome(Feeds(s).followMove(news)); });
    addAttempt("Schedule::read", 1,
               [](S s) { return outcome(Schedule::read(s, QDateTime::currentDateTimeUtc())); });
    addAttempt("Channels::setInterval", 1, [=](S s) { return Channels(s).setInterval(news, 60); });
    addAttempt("Feeds::memory", 1, [=](S s) { return outcome(Feeds(s).memory(news)); });
    addAttempt("Feeds::forgetDropped", 1,
               [=](S s) { return Feeds(s).forgetDropped(news, linksOf({"dropped"})); });
    addAttempt("LinkUse::of", 2, [=](S s) {
        QList<Link> links;
        for (const QString &link : many)
            links.append(Link::fromEncoded(link));
        return outcome(LinkUse::of(s, links, news));
    });
    addAttempt("MessageWriter::write", 3, writeEpisode);
    addAttempt("KnownItems::of", 2, [=](S s) { return outcome(KnownItems::of(s, manyNames, news)); });
    addAttempt("Messages::details", 2,
               [](S s) { return outcome(Messages(s).details(messageUris(manyNames))); });
    addAttempt("Messages::earlierVersions", 1,
               [](S s) { return outcome(Messages(s).earlierVersions(messageUri("a"))); });
    addAttempt("Enclosures::details", 1,
               [](S s) { return outcome(Enclosures(s).details({enclosureUri("a.ogg")})); });
    addAttempt("Channels::details", 1, [=](S s) { return outcome(Channels(s).details({news})); });
    addAttempt("MessageList::find", 3, [](S s) { return outcome(MessageList(s).find({})); });
    addAttempt("MessageList::find, unread", 5, [](S s) {
        MessageQuery query;
        query.onlyUnread = true;
        query.limit = 1;
        query.channelUris = QStringList("urn:none");
        return outcome(MessageList(s).find(query));
    });
    addAttempt("MessageList::find, channel", 4, [=](S s) {
        MessageQuery query;
        query.channelUris = QStringList(news);
        query.limit = 100;
        return outcome(MessageList(s).find(query));
    });
    addAttempt("MessageList::titled", 3, [](S s) { return outcome(MessageList(s).titled("of b", 9)); });
    addAttempt("ReadState::unread", 1, [](S s) { return outcome(ReadState(s).unread({})); });
    addAttempt("ReadState::counts", 3, [](S s) { return outcome(ReadState(s).counts()); });
    addAttempt("Retention::excess", 2, [=](S s) {
        return outcome(Retention(s).excess(news, RetentionRule{1, {}, true}));
    });
    addAttempt("Retention::headlines", 2,
               [](S s) { return outcome(Retention(s).headlines(messageUris(manyNames))); });
}

void TestFailingStatements::queriesAndUpdates()
{
    QFETCH(int, statements);
    QFETCH(Attempt, attempt);
    startAgain([this] { fill(); });
    const QStringList before = contents();
    StatementGate::reset();
    VERIFY_OK(attempt(reader()));
    QCOMPARE(StatementGate::statements().size(), statements);
    const QStringList after = contents();
    startAgain([this] { fill(); });
    StatementGate::setJudge([](const QString &) { return StatementGate::Late; });
    VERIFY_OK(attempt(reader()));
    StatementGate::reset();
    QCOMPARE(contents(), after);
    for (int at = 0; at < statements; ++at) {
        startAgain([this] { fill(); });
        for (StatementGate::Verdict verdict : {StatementGate::Refuse, StatementGate::NoResult}) {
            verifyFailure(attempt, at, verdict);
            if (QTest::currentTestFailed())
                return;
            QCOMPARE(contents(), before);
        }
        VERIFY_OK(attempt(reader()));
        QCOMPARE(contents(), after);
    }
}

void TestFailingStatements::changesInSteps_data()
{
    QTest::addColumn<int>("statements");
    QTest::addColumn<Attempt>("attempt");
    using S = const Store &;
    addAttempt("Channels::remove", 13, [](S s) { return Channels(s).remove(channel("news"), ignoreStep); });
    addAttempt("Messages::setFavorite, true", 2,
               [](S s) { return Messages(s).setFavorite(messageUri("a"), true); });
    addAttempt("Orphans::remove", 8, [](S s) { return Orphans(s).remove(ignoreStep); });
    addAttempt("Retention::drop", 9, [](S s) {
        return Retention(s).drop(channelUri("news"), messageUris(manyNames) + messageUris({"a", "shared"}),
                                 RetentionRule{0, {}, true}, ignoreStep);
    });
    addAttempt("Messages::remove", 11, [](S s) {
        return Messages(s).remove(messageUris(manyNames) + messageUris({"a", "b"}), ignoreStep);
    });
}

/// What a failure leaves behind is finished by trying again.
void TestFailingStatements::changesInSteps()
{
    QFETCH(int, statements);
    QFETCH(Attempt, attempt);
    startAgain([this] { fillForRemovals(); });
    VERIFY_OK(attempt(reader()));
    QCOMPARE(StatementGate::statements().size(), statements);
    const QStringList after = contents();
    for (int at = 0; at < statements; ++at) {
        for (StatementGate::Verdict verdict : {StatementGate::Refuse, StatementGate::NoResult}) {
            startAgain([this] { fillForRemovals(); });
            verifyFailure(attempt, at, verdict);
            if (QTest::currentTestFailed())
                return;
            QVERIFY(messagesIn("radio").contains("shared"));
            VERIFY_OK(attempt(reader()));
            QCOMPARE(contents(), after);
        }
    }
}

QTEST_GUILESS_MAIN(TestFailingStatements)
#include "tst_failingstatements.moc"
