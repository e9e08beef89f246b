// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/itemkey.h>
#include <TidelReader/retention.h>
#include <TidelReader/retentionrules.h>

#include <QRegularExpression>

using namespace Tidel;

namespace {

/// The rule that the newest \a count messages stay, read or not.
RetentionRule newest(int count) { return {count, {}, true}; }

} // namespace

class TestMessageRetention : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void ruleTexts_data();
    void ruleTexts();
    void noRules();
    void excess_data();
    void excess();
    void firstDownloadedGoesFirst();
    void favoritesDoNotCount();
    void excessOfUnknownChannels();
    void headlines();
    void manyHeadlines();

    void drop();
    void dropNothing();
    void oneUpdateRemembersAndDeletes();
    void changesInTheMeantime_data();
    void changesInTheMeantime();
    void becomesUnread();
    void messagesWithoutLinks();
    void sharedMessages();
    void enclosures();
    void manyMessages();
    void waitsForItsTurn();
    void failureInALaterStep_data();
    void failureInALaterStep();
    void enclosuresGoWithTheirMessages();
    void failureIsNotQuotedForTheNextChannel();

private:
    Result<void> drop(const QStringList &names, const QString &channel = "news")
    {
        return Retention(reader()).drop(channelUri(channel), messageUris(names), newest(0),
                                        m_steps.listener());
    }

    StepLog m_steps;
};

void TestMessageRetention::init()
{
    ReaderTestCase::init();
    m_steps = StepLog();
    addChannel("news");
    addChannel("radio");
}

void TestMessageRetention::ruleTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isRule");
    for (const char *rule : {"all", "keep=0", "keep=100", "days=90", "keep=5 days=0", "keep=5 unread",
                             "days=7 unread", "keep=999999999 days=999999999 unread"})
        QTest::newRow(rule) << rule << true;
    for (const char *text :
         {"", " ", "unread", "all unread", "keep=", "keep=-1", "keep=x", "days=1 keep=1", "keep=1  days=1",
          "keep=1days=1", "keep=1 unread ", "keep=01", "keep=1000000000", "keep=1\n"})
        QTest::newRow(text) << text << false;
}

void TestMessageRetention::ruleTexts()
{
    QFETCH(QString, text);
    const auto rule = RetentionRule::fromString(text);
    QTEST(rule.has_value(), "isRule");
    if (rule)
        QCOMPARE(rule->toString(), text);
}

/// What another program has written in place of a rule is no rule.
void TestMessageRetention::noRules()
{
    store().update("INSERT DATA { <urn:channel:news> tidel:retention 'everything' }");
    const auto rules = RetentionRules(reader()).all();
    VERIFY_OK(rules);
    QVERIFY(rules->isEmpty());
    VERIFY_OK(RetentionRules(reader()).set(channelUri("unknown"), RetentionRule{1, 2, true}));
    QCOMPARE(store().count("?x tidel:retention ?rule"), 1);
    VERIFY_OK(RetentionRules(reader()).set(channelUri("news"), RetentionRule{1, 2, true}));
    QCOMPARE(store().texts("SELECT ?r { ?x tidel:retention ?r }"), QStringList("keep=1 days=2 unread"));
}

void TestMessageRetention::excess_data()
{
    QTest::addColumn<int>("keep");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("keep none") << 0 << QStringList({"undated", "a", "b", "c"});
    QTest::newRow("keep one") << 1 << QStringList({"undated", "a", "b"});
    QTest::newRow("keep those with dates") << 3 << QStringList("undated");
    QTest::newRow("keep all") << 4 << QStringList();
    QTest::newRow("keep more than there are") << 5 << QStringList();
    QTest::newRow("keep the most") << 2147483647 << QStringList();
}

void TestMessageRetention::excess()
{
    QFETCH(int, keep);
    QFETCH(QStringList, names);
    addMessages({"b", "c"}, "news", 2);
    addMessages({"a"}, "news", 1);
    addMessages({"undated"}, "news");
    addMessages({"other"}, "radio", 1);
    const auto uris = Retention(reader()).excess(channelUri("news"), newest(keep));
    VERIFY_OK(uris);
    QCOMPARE(*uris, messageUris(names));
}

void TestMessageRetention::firstDownloadedGoesFirst()
{
    addMessages({"first", "second", "third"}, "news");
    for (const auto &[name, minute] :
         {std::pair("first", "00"), std::pair("second", "10"), std::pair("third", "20")}) {
        store().update(QString("DELETE { <%1> mfo:downloadedTime ?t } WHERE { <%1> mfo:downloadedTime ?t } "
                               "INSERT { <%1> mfo:downloadedTime '2026-11-20T10:%2:00Z' }")
                           .arg(messageUri(name), QString(minute)));
    }
    QCOMPARE(*Retention(reader()).excess(channelUri("news"), newest(1)), messageUris({"first", "second"}));
}

void TestMessageRetention::favoritesDoNotCount()
{
    addMessages({"a", "b", "c", "d"}, "news", 1);
    addFavorite("a");
    addFavorite("d");
    // Other tags do not protect a message.
    store().update("INSERT { <urn:tag> a nao:Tag . <urn:message:a> nao:hasTag <urn:tag> . "
                   "<urn:message:b> nao:hasTag <urn:tag> }");
    QCOMPARE(*Retention(reader()).excess(channelUri("news"), newest(1)), messageUris({"b"}));
    QCOMPARE(*Retention(reader()).excess(channelUri("news"), newest(0)), messageUris({"b", "c"}));
    QCOMPARE(*Retention(reader()).excess(channelUri("news"), newest(2)), QStringList());
}

void TestMessageRetention::excessOfUnknownChannels()
{
    addMessages({"a"}, "news", 1);
    for (const QString &uri : {channelUri("unknown"), QString(), QString("> } #")}) {
        const auto uris = Retention(reader()).excess(uri, newest(0));
        VERIFY_OK(uris);
        QCOMPARE(*uris, QStringList());
    }
}

void TestMessageRetention::headlines()
{
    addMessages({"a", "b"}, "news", 1);
    store().update("INSERT { <urn:message:bare> a mfo:FeedMessage }");
    const auto found = Retention(reader()).headlines(messageUris({"b", "unknown", "bare", "a"}));
    VERIFY_OK(found);
    QCOMPARE(found->size(), 3);
    QCOMPARE(found->at(0).title(), QString("Title of b"));
    QCOMPARE(found->at(0).link(), linkOf("b"));
    QCOMPARE(found->at(0).publishedDate(), QDateTime(QDate(2026, 11, 2), QTime(12, 0), Qt::UTC));
    QCOMPARE(found->at(0).description(), QString());
    QCOMPARE(found->at(1).title(), QString());
    QCOMPARE(found->at(1).link(), QString());
    QCOMPARE(found->at(2).title(), QString("Title of a"));
}

void TestMessageRetention::manyHeadlines()
{
    const QStringList names = numberedNames("m", 250);
    addMessages(names, "news");
    StatementGate::reset();
    const auto found = Retention(reader()).headlines(messageUris(names));
    VERIFY_OK(found);
    QCOMPARE(StatementGate::statements().size(), 3);
    for (int i = 0; i < 250; ++i)
        QCOMPARE(found->at(i).link(), linkOf(names.at(i)));
}

void TestMessageRetention::drop()
{
    addMessages({"b"}, "news", 2);
    addMessages({"other"}, "radio", 1);
    addDropped({"a"}, "news");
    const QStringList expected = contents();
    store().update("DELETE DATA { <urn:channel:news> tidel:droppedLink '" + linkOf("a") + "' }");
    addMessages({"a"}, "news", 1);
    VERIFY_OK(drop({"a"}));
    QCOMPARE(contents(), expected);
    QCOMPARE(m_steps.lines(), QStringList("1"));
    // Dropping it once more does not fail.
    VERIFY_OK(drop({"a"}));
    QCOMPARE(contents(), expected);
}

void TestMessageRetention::dropNothing()
{
    addMessages({"a"}, "news");
    StatementGate::reset();
    VERIFY_OK(drop({}));
    QCOMPARE(StatementGate::statements().size(), 0);
    QCOMPARE(m_steps.lines(), QStringList());
}

void TestMessageRetention::oneUpdateRemembersAndDeletes()
{
    addMessages({"a", "b"}, "news", 1);
    StatementGate::reset();
    VERIFY_OK(drop({"a", "b"}));
    const QStringList updates = StatementGate::statements().filter(QRegularExpression("^(?:INSERT|DELETE) "));
    QVERIFY2(updates.size() == 1, qPrintable(updates.join('\n')));
    QCOMPARE(droppedFrom("news"), linksOf({"a", "b"}));
}

void TestMessageRetention::changesInTheMeantime_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isInTime");
    QTest::newRow("before the links are read") << 0 << true;
    QTest::newRow("before the enclosures are read") << 1 << true;
    QTest::newRow("before the update") << 2 << true;
    QTest::newRow("after the update") << 3 << false;
    QTest::newRow("before enclosures are deleted") << 4 << false;
}

/// While messages are dropped, another program marks one as a favorite, and adds one to another channel.
void TestMessageRetention::changesInTheMeantime()
{
    QFETCH(int, index);
    QFETCH(bool, isInTime);
    addMessages({"marked", "keyed", "joined", "other"}, "news");
    store().update("INSERT { <urn:message:keyed> tidel:itemKey '" + itemKey(channelUri("news"), "1") + "' }");
    addEnclosure("marked.ogg", messageUri("marked"));
    addEnclosure("other.ogg", messageUri("other"));
    StatementGate::setJudge([&, seen = 0](const QString &) mutable {
        if (seen++ == index) {
            store().update(
                "INSERT { ?m nao:hasTag nao:predefined-tag-favorite } WHERE { ?m a mfo:FeedMessage "
                "FILTER(?m IN (<urn:message:marked>, <urn:message:keyed>)) } "
                "INSERT { ?m nie:isLogicalPartOf <urn:channel:radio> } WHERE { "
                "?m a mfo:FeedMessage FILTER(?m = <urn:message:joined>) }");
        }
        return StatementGate::Pass;
    });
    const auto dropped = drop({"marked", "keyed", "joined", "other"});
    StatementGate::reset();
    VERIFY_OK(dropped);
    QCOMPARE(messagesIn("news"), isInTime ? QStringList({"keyed", "marked"}) : QStringList());
    QCOMPARE(messagesIn("radio"), isInTime ? QStringList("joined") : QStringList());
    QCOMPARE(droppedFrom("news"),
             isInTime ? linksOf({"joined", "other"}) : linksOf({"joined", "marked", "other"}));
    QCOMPARE(store().count("<urn:channel:news> tidel:droppedKey ?key"), isInTime ? 0 : 1);
    QCOMPARE(store().count("?e a mfo:Enclosure"), isInTime ? 1 : 0);
    QCOMPARE(m_steps.lines(),
             QStringList(isInTime ? "2 urn:enclosure:other.ogg"
                                  : "4 urn:enclosure:marked.ogg urn:enclosure:other.ogg"));
}

/// A message that another program has marked as unread stays.
void TestMessageRetention::becomesUnread()
{
    addMessages({"read", "unread"}, "news");
    store().update("INSERT DATA { <urn:message:read> tidel:readTime '2026-11-20T10:00:00Z' }");
    VERIFY_OK(Retention(reader()).drop(channelUri("news"), messageUris({"read", "unread"}),
                                       RetentionRule{0, {}, false}, m_steps.listener()));
    QCOMPARE(messagesIn("news"), QStringList("unread"));
    QCOMPARE(droppedFrom("news"), linksOf({"read"}));
    QCOMPARE(m_steps.lines(), QStringList("1"));
}

void TestMessageRetention::messagesWithoutLinks()
{
    addMessages({"a"}, "news");
    store().update(
        "INSERT { <urn:message:bare> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:news> }");
    VERIFY_OK(drop({"bare"}));
    QCOMPARE(messagesIn("news"), QStringList("a"));
    QCOMPARE(droppedFrom("news"), QStringList());
}

void TestMessageRetention::sharedMessages()
{
    addMessages({"own", "shared"}, "news", 1);
    addEnclosure("shared.ogg", messageUri("shared"));
    share("shared", "radio");
    VERIFY_OK(drop({"own", "shared"}));
    QCOMPARE(m_steps.lines(), QStringList("2"));
    QCOMPARE(messagesIn("news"), QStringList());
    QCOMPARE(messagesIn("radio"), QStringList("shared"));
    QCOMPARE(droppedFrom("news"), linksOf({"own", "shared"}));
    QCOMPARE(droppedFrom("radio"), QStringList());
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 1);
    QCOMPARE(store().count("?e a mfo:Enclosure ; nie:isLogicalPartOf <urn:message:shared>"), 1);
    VERIFY_OK(drop({"shared"}, "radio"));
    QCOMPARE(m_steps.lines(), QStringList({"2", "1 urn:enclosure:shared.ogg"}));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
}

void TestMessageRetention::enclosures()
{
    addOwnAndSharedEnclosures();
    VERIFY_OK(drop({"a"}));
    QCOMPARE(m_steps.lines(), QStringList("1 urn:enclosure:own.ogg"));
    QCOMPARE(m_steps.enclosures().constFirst().remoteUrl(), linkOf("own.ogg"));
    QCOMPARE(m_steps.enclosures().constFirst().localUrl(), QString("file:///files/own.ogg"));
    QCOMPARE(store().count("?e a mfo:Enclosure"), 2);
}

void TestMessageRetention::manyMessages()
{
    const QStringList names = numberedNames("m", 250);
    addMessages(names, "news");
    addMessages({"newest"}, "news", 1);
    QStringList oldest = *Retention(reader()).excess(channelUri("news"), newest(1));
    QCOMPARE(oldest.size(), 250);
    VERIFY_OK(Retention(reader()).drop(channelUri("news"), oldest, newest(0), m_steps.listener()));
    QCOMPARE(m_steps.lines(), QStringList({"100", "100", "50"}));
    QCOMPARE(messagesIn("news"), QStringList("newest"));
    QStringList links = linksOf(names);
    links.sort();
    QCOMPARE(droppedFrom("news"), links);
}

void TestMessageRetention::waitsForItsTurn()
{
    addMessages({"a"}, "news");
    QVERIFY(takesTurn([this] { VERIFY_OK(drop({"a"})); }));
}

void TestMessageRetention::failureInALaterStep_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("attempt");
    QTest::newRow("headlines") << "SELECT \\?m \\?link \\?key"
                               << "delete messages from the store";
    QTest::newRow("enclosures") << "SELECT DISTINCT \\?e"
                                << "delete messages from the store";
    QTest::newRow("update") << "INSERT"
                            << "delete messages from the store";
}

/// The second step fails at its statement of one kind.
void TestMessageRetention::failureInALaterStep()
{
    QFETCH(QString, statement);
    const QStringList names = numberedNames("m", 250);
    addMessages(names, "news");
    int seen = 0;
    StatementGate::setJudge([&](const QString &text) {
        const bool isOfThisKind = QRegularExpression('^' + statement).match(text).hasMatch();
        return isOfThisKind && ++seen == 2 ? StatementGate::NoResult : StatementGate::Pass;
    });
    const auto failed = drop(names);
    StatementGate::reset();
    QVERIFY(!failed);
    QCOMPARE(failed.error().kind(), Error::StoreFailed);
    QTEST(failed.error().attempt(), "attempt");
    QCOMPARE(m_steps.lines(), QStringList("100"));
    QCOMPARE(messagesIn("news").size(), 150);
    VERIFY_OK(drop(messagesIn("news")));
    QCOMPARE(droppedFrom("news").size(), 250);
    QCOMPARE(messagesIn("news"), QStringList());
}

// Whatever is interrupted, no enclosure stays without its message.
void TestMessageRetention::enclosuresGoWithTheirMessages()
{
    for (int statement = 0; statement < 5; ++statement) {
        addMessages({"a"}, "news");
        addEnclosure("a.ogg", messageUri("a"));
        StatementGate::reset();
        StatementGate::failAt(statement, StatementGate::NoResult);
        QVERIFY(!drop({"a"}));
        StatementGate::reset();
        QCOMPARE(store().count("?e a mfo:Enclosure"), store().count("?m a mfo:FeedMessage"));
    }
}

void TestMessageRetention::failureIsNotQuotedForTheNextChannel()
{
    addMessages({"a", "b"}, "news", 1);
    addMessages({"c", "d"}, "radio", 1);
    StatementGate::setJudge([](const QString &statement) {
        return statement.contains("urn:channel:news") ? StatementGate::Refuse : StatementGate::Pass;
    });
    const Retention retention(reader());
    QVERIFY(!retention.excess(channelUri("news"), newest(1)));
    const auto excess = retention.excess(channelUri("radio"), newest(1));
    VERIFY_OK(excess);
    QCOMPARE(*excess, messageUris({"c"}));
    QVERIFY(!drop({"a"}, "news"));
    VERIFY_OK(drop({"c"}, "radio"));
    StatementGate::reset();
    QCOMPARE(messagesIn("news"), QStringList({"a", "b"}));
    QCOMPARE(messagesIn("radio"), QStringList("d"));
    QCOMPARE(m_steps.lines(), QStringList("1"));
}

QTEST_GUILESS_MAIN(TestMessageRetention)
#include "tst_messageretention.moc"
