// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channels.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>
#include <TidelReader/search.h>

using namespace Tidel;

class TestReadState : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void newMessagesAreUnread();
    void set();
    void timesOfChanges();
    void whatIsNotStored();
    void inGroups();
    void unread_data();
    void unread();
    void counts();
    void failures();
    void isDeletedWithTheMessage();
    void indexNeedsNoTextsAgain();
    void changedTextsAreFoundAllTheSame();

private:
    ReadState state() const { return ReadState(reader()); }
    QStringList unreadNames(const QStringList &channels = {}, const QDateTime &before = {}) const;
    QString countsText() const;
};

QStringList TestReadState::unreadNames(const QStringList &channels, const QDateTime &before) const
{
    QStringList uris;
    for (const QString &channel : channels)
        uris.append(channelUri(channel));
    QStringList names;
    const QStringList found = state().unread(uris, before).value();
    for (const QString &uri : found)
        names.append(uri.section(':', 2));
    return sorted(names);
}

/// "CHANNEL UNREAD/ALL" for each channel that has messages.
QString TestReadState::countsText() const
{
    const auto counts = state().counts();
    QStringList texts;
    for (auto channel = counts->cbegin(); channel != counts->cend(); ++channel)
        texts.append(
            QString("%1 %2/%3").arg(channel.key().section(':', 2)).arg(channel->unread).arg(channel->all));
    return sorted(texts).join(", ");
}

void TestReadState::newMessagesAreUnread()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    QCOMPARE(unreadNames(), QStringList({"a", "b"}));
    QCOMPARE(countsText(), QString("news 2/2"));
}

void TestReadState::set()
{
    addChannel("news");
    addMessages({"a", "b", "c"}, "news", 1);
    QCOMPARE(state().set(messageUris({"a", "b", "a"}), true).value(), 2);
    QCOMPARE(unreadNames(), QStringList("c"));
    QCOMPARE(state().set(messageUris({"a", "c"}), true).value(), 1);
    QCOMPARE(unreadNames(), QStringList());
    QCOMPARE(state().set(messageUris({"b"}), false).value(), 1);
    QCOMPARE(state().set(messageUris({"b"}), false).value(), 0);
    QCOMPARE(unreadNames(), QStringList("b"));
    QCOMPARE(state().set({}, true).value(), 0);
}

// The time is that of the change, not of a mark that changes nothing. There is never more than one.
void TestReadState::timesOfChanges()
{
    const QString times =
        "SELECT COALESCE(?r, 'none') COALESCE(?u, 'none') { <urn:message:a> a mfo:FeedMessage "
        "OPTIONAL { ?m tidel:readTime ?r FILTER(?m = <urn:message:a>) } "
        "OPTIONAL { ?n tidel:unreadTime ?u FILTER(?n = <urn:message:a>) } }";
    addChannel("news");
    addMessages({"a"}, "news", 1);
    QVERIFY(state().set(messageUris({"a"}), false).value() == 0);
    QCOMPARE(store().texts(times), QStringList("none none"));

    store().update("INSERT DATA { <urn:message:a> tidel:readTime '2026-01-02T03:04:05Z' }");
    QCOMPARE(state().set(messageUris({"a"}), true).value(), 0);
    QCOMPARE(store().count("<urn:message:a> tidel:readTime '2026-01-02T03:04:05Z'"), 1);

    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    QCOMPARE(state().set(messageUris({"a"}), false).value(), 1);
    QCOMPARE(store().count("?m tidel:readTime ?t"), 0);
    const QStringList unreadSince = store().texts("SELECT ?t { <urn:message:a> tidel:unreadTime ?t }");
    QCOMPARE(unreadSince.size(), 1);
    const QDateTime time = QDateTime::fromString(unreadSince.first(), Qt::ISODateWithMs);
    QVERIFY2(time >= before && time <= QDateTime::currentDateTimeUtc(), qPrintable(unreadSince.first()));

    QCOMPARE(state().set(messageUris({"a"}), true).value(), 1);
    QCOMPARE(store().count("?m tidel:unreadTime ?t"), 0);
    QCOMPARE(store().count("?m tidel:readTime ?t"), 1);
}

void TestReadState::whatIsNotStored()
{
    addChannel("news");
    addMessages({"a"}, "news", 1);
    const QStringList before = everythingIn(store());
    const QStringList strangers{"urn:unknown", QString(), "> } #", linkOf("a"), channelUri("news")};
    QCOMPARE(state().set(strangers, true).value(), 0);
    QCOMPARE(everythingIn(store()), before);
    QCOMPARE(state().set(strangers + messageUris({"a"}), true).value(), 1);
}

void TestReadState::inGroups()
{
    const QStringList names = numberedNames("m", 250);
    addChannel("news");
    addMessages(names, "news");
    StatementGate::reset();
    QStringList steps;
    const auto changed = state().set(messageUris(names), true, [&steps](int done, int all) {
        steps.append(QString("%1/%2").arg(done).arg(all));
    });
    QCOMPARE(changed.value(), 250);
    QCOMPARE(steps, QStringList({"100/250", "200/250", "250/250"}));
    // A question and an update for each group.
    QCOMPARE(StatementGate::statements().size(), 6);
    QCOMPARE(countsText(), QString("news 0/250"));
}

void TestReadState::unread_data()
{
    QTest::addColumn<QStringList>("channels");
    QTest::addColumn<QDateTime>("before");
    QTest::addColumn<QStringList>("expected");

    const QDateTime none;
    const QDateTime third(QDate(2026, 11, 3), QTime(12, 0), Qt::UTC);
    QTest::newRow("all") << QStringList() << none
                         << QStringList({"n1", "n3", "r1", "shared", "stray", "undated"});
    QTest::newRow("one channel") << QStringList("news") << none << QStringList({"n1", "n3", "shared"});
    QTest::newRow("channels") << QStringList({"news", "radio"}) << none
                              << QStringList({"n1", "n3", "r1", "shared", "undated"});
    QTest::newRow("older") << QStringList() << third << QStringList({"n1", "r1", "shared", "stray"});
    QTest::newRow("a moment later") << QStringList() << third.addSecs(1)
                                    << QStringList({"n1", "n3", "r1", "shared", "stray"});
    // It was downloaded on the 20th.
    QTest::newRow("without a date") << QStringList("radio")
                                    << QDateTime(QDate(2026, 11, 20), QTime(9, 59), Qt::LocalTime)
                                    << QStringList({"r1", "shared"});
    QTest::newRow("by download") << QStringList("radio")
                                 << QDateTime(QDate(2026, 11, 20), QTime(10, 1), Qt::LocalTime)
                                 << QStringList({"r1", "shared", "undated"});
    QTest::newRow("older in a channel") << QStringList("radio") << third << QStringList({"r1", "shared"});
    QTest::newRow("unknown channel") << QStringList("none") << none << QStringList();
}

void TestReadState::unread()
{
    QFETCH(QStringList, channels);
    QFETCH(QDateTime, before);
    QFETCH(QStringList, expected);
    addChannel("news");
    addChannel("radio");
    addMessages({"n1", "n2", "n3"}, "news", 1);
    addMessages({"r1"}, "radio", 1);
    addMessages({"undated"}, "radio");
    addMessages({"shared"}, "news", 2);
    addMessages({"stray"}, "gone", 1);
    share("shared", "radio");
    QCOMPARE(state().set(messageUris({"n2"}), true).value(), 1);
    QCOMPARE(unreadNames(channels, before), expected);
}

void TestReadState::counts()
{
    for (const char *channel : {"news", "radio", "empty", "imageless"})
        addChannel(channel);
    addMessages({"a", "b", "c"}, "news", 1);
    addMessages({"d"}, "radio", 1);
    addMessages({"stray"}, "gone", 1);
    share("a", "radio");
    addEnclosure("image.png", channelUri("news"));
    addEnclosure("only.png", channelUri("empty"));
    addEnclosure("a.ogg", messageUri("a"));
    QCOMPARE(countsText(), QString("news 3/3, radio 2/2"));
    QCOMPARE(state().set(messageUris({"a", "b", "stray"}), true).value(), 3);
    QCOMPARE(countsText(), QString("news 1/3, radio 1/2"));
    const auto all = Channels(reader()).messageCounts();
    QCOMPARE(all->size(), 2);
    QCOMPARE(all->value(channelUri("news")), 3);
    QCOMPARE(all->value(channelUri("radio")), 2);
}

// Groups that were marked before a failure stay marked.
void TestReadState::failures()
{
    addChannel("news");
    const QStringList names = numberedNames("m", 150);
    addMessages(names, "news");
    const QList<QPair<int, int>> expected{{0, 150}, {1, 150}, {2, 50}, {3, 50}};
    for (const auto &[statement, unread] : expected) {
        VERIFY_OK(state().set(messageUris(names), false));
        StatementGate::reset();
        StatementGate::failAt(statement, StatementGate::NoResult);
        const Result<int> outcome = state().set(messageUris(names), true);
        StatementGate::reset();
        VERIFY_ERROR(outcome, Error::StoreFailed,
                     "could not change the read state of messages in the store: it gave no answer");
        QCOMPARE(unreadNames().size(), unread);
    }
}

void TestReadState::isDeletedWithTheMessage()
{
    addChannel("news");
    addMessages({"a", "b"}, "news", 1);
    QCOMPARE(state().set(messageUris({"a", "b"}), true).value(), 2);
    QCOMPARE(state().set(messageUris({"b"}), false).value(), 1);
    const FeedChannel news = Channels(reader()).all()->constFirst();
    VERIFY_OK(Channels(reader()).remove(news, [](int, const QList<FeedEnclosure> &) {}));
    QCOMPARE(store().count("?m tidel:readTime ?t"), 0);
    QCOMPARE(store().count("?m tidel:unreadTime ?t"), 0);
}

// A mark changes the message, but none of its words.
void TestReadState::indexNeedsNoTextsAgain()
{
    const QStringList names = numberedNames("m", 150);
    addChannel("news");
    addMessages(names, "news", 0);
    SearchQuery query;
    query.words = "text";
    query.limit = 1;
    QVERIFY(Search(reader()).find(query));
    QCOMPARE(state().set(messageUris(names), true).value(), 150);
    QCOMPARE(state().set(messageUris(names.mid(0, 3)), false).value(), 3);
    StatementGate::reset();
    QCOMPARE(Search(reader()).find(query)->size(), 1);
    int readings = 0;
    for (const QString &statement : StatementGate::statements())
        readings += statement.contains("nie:description") ? 1 : 0;
    QCOMPARE(readings, 2); // the end of the index, and the hit
}

void TestReadState::changedTextsAreFoundAllTheSame()
{
    addChannel("news");
    addMessages({"a"}, "news", 1);
    SearchQuery query;
    query.words = "text";
    QCOMPARE(Search(reader()).find(query)->size(), 1);
    store().update("DELETE { <urn:message:a> nie:title ?t } WHERE { <urn:message:a> nie:title ?t } "
                   "INSERT { <urn:message:a> nie:title 'Parsnips' }");
    QCOMPARE(state().set(messageUris({"a"}), true).value(), 1);
    query.words = "parsnips";
    QCOMPARE(Search(reader()).find(query)->size(), 1);
}

QTEST_GUILESS_MAIN(TestReadState)
#include "tst_readstate.moc"
