// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/feeds.h>
#include <TidelReader/itemkey.h>
#include <TidelReader/messages.h>

using namespace Tidel;

/// Messages that the user deletes.
class TestMessageRemoval : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void removesAndRemembers();
    void sharedMessages();
    void favoritesGo();
    void enclosures();
    void messagesOfNoChannel();
    void messagesOfGoneChannels();
    void messagesWithoutLinks();
    void unknownMessages();
    void manyMessages();
    void oneUpdateRemembersAndDeletes();
    void needsItsTurn();

private:
    Result<void> remove(const QStringList &names)
    {
        return Messages(reader()).remove(messageUris(names), m_steps.listener());
    }
    QSet<QString> droppedKeys(const QString &channel) const
    {
        return Feeds(reader()).memory(channelUri(channel))->droppedKeys;
    }

    StepLog m_steps;
};

void TestMessageRemoval::init()
{
    ReaderTestCase::init();
    m_steps = {};
    addChannel("news");
    addChannel("radio");
}

/// As if the feed had been read and the message pruned.
void TestMessageRemoval::removesAndRemembers()
{
    addMessages({"b"}, "news", 2);
    addDropped({"a"}, "news");
    const QStringList expected = contents();
    store().update("DELETE DATA { <urn:channel:news> tidel:droppedLink '" + linkOf("a") + "' }");
    addMessages({"a"}, "news", 1);
    VERIFY_OK(remove({"a"}));
    QCOMPARE(contents(), expected);
    QCOMPARE(m_steps.lines(), QStringList("1"));
    VERIFY_OK(remove({"a"}));
    VERIFY_OK(remove({}));
    QCOMPARE(contents(), expected);
    QCOMPARE(m_steps.lines(), QStringList("1"));
}

/// Each channel remembers its own key, or the link if it has none.
void TestMessageRemoval::sharedMessages()
{
    addMessages({"keyed", "linked"}, "news", 1);
    share("keyed", "radio");
    share("linked", "radio");
    const QString keyOfNews = itemKey(channelUri("news"), "1");
    const QString keyOfRadio = itemKey(channelUri("radio"), "1");
    store().update("INSERT { <urn:message:keyed> tidel:itemKey '" + keyOfNews + "', '" + keyOfRadio
                   + "' . <urn:message:linked> tidel:itemKey '" + itemKey(channelUri("news"), "2") + "' }");
    VERIFY_OK(remove({"keyed", "linked"}));
    QCOMPARE(m_steps.lines(), QStringList("2"));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
    QCOMPARE(droppedKeys("news"), QSet<QString>({keyOfNews, itemKey(channelUri("news"), "2")}));
    QCOMPARE(droppedFrom("news"), QStringList());
    QCOMPARE(droppedKeys("radio"), QSet<QString>({keyOfRadio}));
    QCOMPARE(droppedFrom("radio"), linksOf({"linked"}));
}

void TestMessageRemoval::favoritesGo()
{
    addMessages({"a", "b"}, "news", 1);
    addFavorite("a");
    VERIFY_OK(remove({"a"}));
    QCOMPARE(messagesIn("news"), QStringList("b"));
    QCOMPARE(droppedFrom("news"), linksOf({"a"}));
}

/// What another message or a channel needs stays.
void TestMessageRemoval::enclosures()
{
    addOwnAndSharedEnclosures();
    VERIFY_OK(remove({"a"}));
    QCOMPARE(m_steps.lines(), QStringList("1 urn:enclosure:own.ogg"));
    QCOMPARE(m_steps.enclosures().constFirst().localUrl(), QString("file:///files/own.ogg"));
    QCOMPARE(store().count("?e a mfo:Enclosure"), 2);
}

/// A favorite that was kept when its channel went.
void TestMessageRemoval::messagesOfNoChannel()
{
    addMessages({"a", "b"}, "news", 1);
    store().update("DELETE { <urn:message:a> nie:isLogicalPartOf <urn:channel:news> } WHERE { }");
    VERIFY_OK(remove({"a"}));
    QCOMPARE(m_steps.lines(), QStringList("1"));
    QCOMPARE(store().texts("SELECT ?m { ?m a mfo:FeedMessage }"), messageUris({"b"}));
    QCOMPARE(droppedFrom("news"), QStringList());
}

void TestMessageRemoval::messagesOfGoneChannels()
{
    addMessages({"a"}, "gone", 1);
    share("a", "news");
    VERIFY_OK(remove({"a"}));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
    QCOMPARE(droppedFrom("news"), linksOf({"a"}));
    QCOMPARE(store().count("?c a mfo:FeedChannel"), 2);
}

void TestMessageRemoval::messagesWithoutLinks()
{
    store().update(
        "INSERT { <urn:message:bare> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:news> }");
    VERIFY_OK(remove({"bare"}));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
    QCOMPARE(droppedFrom("news"), QStringList());
}

/// Channels and what no resource is called are no messages.
void TestMessageRemoval::unknownMessages()
{
    addMessages({"a"}, "news", 1);
    const QStringList before = contents();
    for (const QString &uri :
         {channelUri("news"), linkOf("a"), QString("urn:unknown"), QString("> } #"), QString()})
        VERIFY_OK(Messages(reader()).remove({uri}, m_steps.listener()));
    QCOMPARE(contents(), before);
    QCOMPARE(m_steps.lines(), QStringList());
}

void TestMessageRemoval::manyMessages()
{
    const QStringList names = numberedNames("m", 250);
    addMessages(names, "news");
    addMessages({"other"}, "news", 1);
    VERIFY_OK(remove(names));
    QCOMPARE(m_steps.lines(), QStringList({"100", "100", "50"}));
    QCOMPARE(messagesIn("news"), QStringList("other"));
    QCOMPARE(droppedFrom("news"), sorted(linksOf(names)));
}

void TestMessageRemoval::oneUpdateRemembersAndDeletes()
{
    addMessages({"a", "b"}, "news", 1);
    share("b", "radio");
    addEnclosure("a.ogg", messageUri("a"));
    StatementGate::reset();
    VERIFY_OK(remove({"a", "b"}));
    const QStringList updates = StatementGate::statements().filter(QRegularExpression("^(?:INSERT|DELETE) "));
    QVERIFY2(updates.size() == 1, qPrintable(updates.join('\n')));
}

void TestMessageRemoval::needsItsTurn()
{
    addMessages({"a"}, "news", 1);
    QVERIFY(takesTurn([this] { VERIFY_OK(remove({"a"})); }));
}

QTEST_GUILESS_MAIN(TestMessageRemoval)
#include "tst_messageremoval.moc"
