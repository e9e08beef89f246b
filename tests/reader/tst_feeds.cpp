// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channels.h>
#include <TidelReader/feeds.h>

using namespace Tidel;

class TestFeeds : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void newChannel();
    void unknownChannel_data();
    void unknownChannel();
    void failedQueryIsNoUnknownChannel();
    void noteReading_data();
    void noteReading();
    void itemBaseIsTheFirstLink();
    void itemNote();
    void itemNoteOfChangedChannel_data();
    void itemNoteOfChangedChannel();
    void copies();
    void droppedLinks();
    void forgetDropped();
    void forgetMany();
    void forgetInSteps();

private:
    Feeds feeds() const { return Feeds(reader()); }
};

void TestFeeds::init()
{
    ReaderTestCase::init();
    addChannel("news");
    addChannel("radio");
    StatementGate::reset();
}

void TestFeeds::newChannel()
{
    const auto state = feeds().state(channelUri("news"));
    VERIFY_OK(state);
    QCOMPARE(state->link(), linkOf("news"));
    QCOMPARE(state->itemBase(), linkOf("news"));
    QCOMPARE(state->entityTag(), QString());
    QCOMPARE(state->lastModified(), QString());
    QCOMPARE(StatementGate::statements().size(), 1);
}

void TestFeeds::unknownChannel_data()
{
    QTest::addColumn<QString>("uri");
    QTest::newRow("unknown") << channelUri("unknown");
    QTest::newRow("empty") << QString();
    QTest::newRow("link") << linkOf("news");
    QTest::newRow("message") << messageUri("a");
    QTest::newRow("hostile") << "> } INSERT { <urn:x> a mfo:FeedChannel";
}

void TestFeeds::unknownChannel()
{
    QFETCH(QString, uri);
    addMessages({"a"}, "news");
    VERIFY_ERROR(feeds().state(uri), Error::NotFound, "no such channel");
    VERIFY_OK(feeds().memory(uri));
    QCOMPARE(feeds().memory(uri)->droppedLinks.size(), 0);
}

void TestFeeds::failedQueryIsNoUnknownChannel()
{
    for (const auto &[verdict, kind] : {std::pair(StatementGate::Refuse, Error::StoreRefused),
                                        std::pair(StatementGate::NoResult, Error::StoreFailed)}) {
        StatementGate::failAt(0, verdict);
        const auto state = feeds().state(channelUri("news"));
        QVERIFY(!state);
        QCOMPARE(state.error().kind(), kind);
        QCOMPARE(state.error().attempt(), QString("read the channel from the store"));
    }
}

void TestFeeds::noteReading_data()
{
    QTest::addColumn<QString>("entityTag");
    QTest::addColumn<QString>("lastModified");
    QTest::newRow("both") << "W/\"a\\b\""
                          << "Sun, 01 Nov 2026 10:00:00 GMT";
    QTest::newRow("entity tag") << "file:1:2" << QString();
    QTest::newRow("last modified") << QString() << "yesterday";
    QTest::newRow("nothing") << QString() << QString();
}

void TestFeeds::noteReading()
{
    QFETCH(QString, entityTag);
    QFETCH(QString, lastModified);
    const QStringList radio = propertiesOf(store(), channelUri("radio"));
    VERIFY_OK(feeds().noteReading(channelUri("news"), {"first", "first", {}, {}, {}}));
    StatementGate::reset();
    VERIFY_OK(feeds().noteReading(channelUri("news"), {entityTag, lastModified, {}, {}, {}}));
    QCOMPARE(StatementGate::statements().size(), 1);
    const auto state = feeds().state(channelUri("news"));
    QCOMPARE(state->entityTag(), entityTag);
    QCOMPARE(state->lastModified(), lastModified);
    const FeedChannel channel = *Channels::find(*Channels(reader()).all(), channelUri("news"));
    QCOMPARE(channel.lastModifiedTime(), lastModified);
    QVERIFY(qAbs(channel.updatedTime().secsTo(QDateTime::currentDateTime())) < 60);
    QCOMPARE(propertiesOf(store(), channelUri("radio")), radio);
    QCOMPARE(feeds().state(channelUri("radio"))->entityTag(), QString());
}

void TestFeeds::itemBaseIsTheFirstLink()
{
    const FeedChannel channel = *Channels::find(*Channels(reader()).all(), "news");
    VERIFY_OK(feeds().noteReading(channelUri("news"), {"tag", "then", {}, {}, {}}));
    VERIFY_OK(Channels(reader()).edit(channel, "news", linkOf("moved")));
    const auto state = feeds().state(channelUri("news"));
    VERIFY_OK(state);
    QCOMPARE(state->link(), linkOf("moved"));
    QCOMPARE(state->itemBase(), linkOf("news"));
    QCOMPARE(state->entityTag(), QString());
    QCOMPARE(state->lastModified(), QString());
}

void TestFeeds::itemNote()
{
    addMessages({"a", "b"}, "news");
    QCOMPARE(feeds().itemNote(channelUri("news"))->parts, 2);
    VERIFY_OK(feeds().noteReading(channelUri("news"), {{}, {}, {}, {"some items", 2}, {}}));
    VERIFY_OK(feeds().noteReading(channelUri("radio"), {{}, {}, {}, {"'> } \\", 0}, {}}));
    QCOMPARE(feeds().itemNote(channelUri("news"))->text, QString("some items"));
    QCOMPARE(feeds().itemNote(channelUri("radio"))->text, QString("'> } \\"));
    VERIFY_OK(feeds().noteReading(channelUri("news"), Reading()));
    QCOMPARE(feeds().itemNote(channelUri("news"))->text, QString());
    QCOMPARE(store().count("?c tidel:itemDigests ?n"), 1);
}

void TestFeeds::itemNoteOfChangedChannel_data()
{
    QTest::addColumn<QString>("update");
    QTest::newRow("message deleted") << "DELETE { <urn:message:a> a rdfs:Resource }";
    QTest::newRow("message added")
        << "INSERT { <urn:x> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:news> }";
    QTest::newRow("read")
        << "DELETE { ?c nie:contentLastModified ?t } WHERE { ?c nie:contentLastModified ?t } "
           "INSERT { <urn:channel:news> nie:contentLastModified '2020-01-01T00:00:00' }";
}

void TestFeeds::itemNoteOfChangedChannel()
{
    QFETCH(QString, update);
    addMessages({"a", "b"}, "news");
    VERIFY_OK(feeds().noteReading(channelUri("news"), {{}, {}, {}, {"some items", 2}, {}}));
    store().update(update);
    QCOMPARE(feeds().itemNote(channelUri("news"))->text, QString());
}

void TestFeeds::copies()
{
    VERIFY_OK(feeds().noteReading(channelUri("radio"), {"tag", "then", {}, {}, {}}));
    const FeedState news = *feeds().state(channelUri("news"));
    FeedState state = *feeds().state(channelUri("radio"));
    const FeedState radio = state;
    state = news;
    QCOMPARE(state.link(), linkOf("news"));
    QCOMPARE(radio.entityTag(), QString("tag"));
    const FeedState moved = std::move(state);
    QCOMPARE(moved.link(), linkOf("news"));
}

void TestFeeds::droppedLinks()
{
    QCOMPARE(feeds().memory(channelUri("news"))->droppedLinks.size(), 0);
    addDropped({"a", "b"}, "news");
    addDropped({"c"}, "radio");
    const auto memory = feeds().memory(channelUri("news"));
    VERIFY_OK(memory);
    QCOMPARE(memory->droppedLinks, (QSet<QString>{linkOf("a"), linkOf("b")}));
}

void TestFeeds::forgetDropped()
{
    addDropped({"a", "b"}, "news");
    addDropped({"a"}, "radio");
    StatementGate::reset();
    VERIFY_OK(feeds().forgetDropped(channelUri("news"), {}));
    QCOMPARE(StatementGate::statements().size(), 0);
    VERIFY_OK(feeds().forgetDropped(channelUri("news"), linksOf({"a", "unknown"})));
    QCOMPARE(droppedFrom("news"), linksOf({"b"}));
    QCOMPARE(droppedFrom("radio"), linksOf({"a"}));
}

void TestFeeds::forgetMany()
{
    const QStringList names = numberedNames("m", 250);
    addDropped(names, "news");
    addDropped({"other"}, "news");
    QCOMPARE(feeds().memory(channelUri("news"))->droppedLinks.size(), 251);
    StatementGate::reset();
    VERIFY_OK(feeds().forgetDropped(channelUri("news"), linksOf(names)));
    QCOMPARE(StatementGate::statements().size(), 3);
    QCOMPARE(droppedFrom("news"), linksOf({"other"}));
}

void TestFeeds::forgetInSteps()
{
    const QStringList names = numberedNames("m", 250);
    addDropped(names, "news");
    StatementGate::reset();
    StatementGate::failAt(1, StatementGate::Refuse);
    const auto failed = feeds().forgetDropped(channelUri("news"), linksOf(names));
    QVERIFY(!failed);
    QCOMPARE(StatementGate::statements().size(), 2);
    StatementGate::reset();
    QCOMPARE(droppedFrom("news").size(), 150);
    VERIFY_OK(feeds().forgetDropped(channelUri("news"), linksOf(names)));
    QCOMPARE(droppedFrom("news"), QStringList());
}

QTEST_GUILESS_MAIN(TestFeeds)
#include "tst_feeds.moc"
