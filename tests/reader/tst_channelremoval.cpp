// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channels.h>

using namespace Tidel;

class TestChannelRemoval : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsLeft();
    void emptyChannel();
    void editedChannel();
    void sharedMessagesStay();
    void sharedEnclosuresStay();
    void sharedImageStays();
    void orphansOfOthersStay();
    void unknownChannel();
    void manyMessagesInSteps();
    void enclosuresAreReported();
    void failureInALaterStep();

private:
    FeedChannel stored(const QString &name) const
    {
        return Channels::find(*Channels(reader()).all(), channelUri(name)).value();
    }
    Result<void> remove(const QString &name)
    {
        const FeedChannel channel = stored(name);
        StatementGate::reset();
        return Channels(reader()).remove(channel, m_steps.listener());
    }

    StepLog m_steps;

private Q_SLOTS:
    void init()
    {
        ReaderTestCase::init();
        m_steps = StepLog();
    }
};

void TestChannelRemoval::nothingIsLeft()
{
    const QStringList empty = contents();
    FeedEnclosure icon;
    icon.setRemoteUrl(linkOf("icon.png"));
    FeedChannel channel;
    channel.setTitle("news");
    channel.setLink(linkOf("news"));
    channel.setIcon(icon);
    const auto uri = Channels(reader()).add(channel);
    VERIFY_OK(uri);
    channel.setUri(*uri);
    store().update(QString("INSERT { <urn:message:a> a mfo:FeedMessage ; nie:isLogicalPartOf <%1> ; "
                           "nie:links <%2> ; nao:hasTag nao:predefined-tag-favorite }")
                       .arg(*uri, linkOf("a")));
    addEnclosure("a.ogg", messageUri("a"));
    store().update(QString("INSERT { <%1> tidel:entityTag 'tag' ; tidel:lastModified 'then' ; "
                           "tidel:droppedLink 'https://example.org/b' ; nie:identifier 'first' }")
                       .arg(*uri));
    VERIFY_OK(Channels(reader()).remove(channel, m_steps.listener()));
    QCOMPARE(m_steps.lines().value(0), QString("1 urn:enclosure:a.ogg"));
    QVERIFY2(m_steps.lines().value(1).startsWith("0 urn:uuid:"), qPrintable(m_steps.lines().join('\n')));
    QCOMPARE(m_steps.lines().size(), 2);
    QCOMPARE(contents(), empty);
}

void TestChannelRemoval::emptyChannel()
{
    const QStringList empty = contents();
    addChannel("news");
    VERIFY_OK(remove("news"));
    QCOMPARE(m_steps.lines(), QStringList("0"));
    QCOMPARE(contents(), empty);
}

void TestChannelRemoval::editedChannel()
{
    const QStringList empty = contents();
    addChannel("news");
    VERIFY_OK(Channels(reader()).edit(stored("news"), "Moved", linkOf("moved")));
    VERIFY_OK(remove("news"));
    QCOMPARE(contents(), empty);
}

void TestChannelRemoval::sharedMessagesStay()
{
    addChannel("radio");
    addMessages({"shared"}, "radio", 1);
    addEnclosure("shared.ogg", messageUri("shared"));
    const QStringList radio = contents();
    addChannel("news");
    addMessages({"a"}, "news", 2);
    share("shared", "news");
    VERIFY_OK(remove("news"));
    QCOMPARE(m_steps.lines(), QStringList({"2", "0"}));
    QCOMPARE(contents(), radio);
}

void TestChannelRemoval::sharedEnclosuresStay()
{
    addChannel("news");
    addChannel("radio");
    addMessages({"a", "b"}, "news");
    addMessages({"c"}, "radio");
    addEnclosure("own.ogg", messageUri("a"));
    addEnclosure("twice.ogg", messageUri("a"));
    addEnclosure("shared.ogg", messageUri("a"));
    store().update("INSERT { <urn:enclosure:twice.ogg> nie:isLogicalPartOf <urn:message:b> . "
                   "<urn:enclosure:shared.ogg> nie:isLogicalPartOf <urn:message:c> }");
    VERIFY_OK(remove("news"));
    QCOMPARE(m_steps.lines(), QStringList({"2 urn:enclosure:own.ogg urn:enclosure:twice.ogg", "0"}));
    QCOMPARE(store().texts("SELECT ?e { ?e a mfo:Enclosure }"), QStringList(enclosureUri("shared.ogg")));
}

void TestChannelRemoval::sharedImageStays()
{
    addChannel("radio");
    addEnclosure("icon.png", channelUri("radio"));
    const QStringList radio = contents();
    addChannel("news");
    store().update("INSERT { <urn:enclosure:icon.png> nie:isLogicalPartOf <urn:channel:news> }");
    VERIFY_OK(remove("news"));
    QCOMPARE(m_steps.lines(), QStringList("0"));
    QCOMPARE(contents(), radio);
    VERIFY_OK(remove("radio"));
    QCOMPARE(m_steps.lines(), QStringList({"0", "0 urn:enclosure:icon.png"}));
    QCOMPARE(store().count("?e a mfo:Enclosure"), 0);
}

void TestChannelRemoval::orphansOfOthersStay()
{
    addMessages({"orphan"}, "gone");
    addEnclosure("orphan.ogg", messageUri("gone"));
    addEnclosure("nobody.ogg", "urn:nobody");
    const QStringList before = contents();
    addChannel("news");
    addMessages({"a"}, "news");
    VERIFY_OK(remove("news"));
    QCOMPARE(contents(), before);
}

void TestChannelRemoval::unknownChannel()
{
    addChannel("news");
    addMessages({"a"}, "news");
    const QStringList before = contents();
    FeedChannel unknown;
    unknown.setUri("urn:channel:unknown");
    unknown.setLink(linkOf("unknown"));
    VERIFY_OK(Channels(reader()).remove(unknown, m_steps.listener()));
    QCOMPARE(contents(), before);
}

void TestChannelRemoval::manyMessagesInSteps()
{
    addChannel("news");
    addMessages(numberedNames("m", 250), "news");
    addEnclosure("m.ogg", messageUri("m250"));
    VERIFY_OK(remove("news"));
    QStringList counts;
    for (const QString &line : m_steps.lines())
        counts.append(line.section(' ', 0, 0));
    QCOMPARE(counts, QStringList({"100", "100", "50", "0"}));
    QCOMPARE(m_steps.enclosures().size(), 1);
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
    QCOMPARE(store().count("?e a mfo:Enclosure"), 0);
    // No question names the owner of a message twice: Tracker would then read all messages.
    const QStringList questions = StatementGate::statements().filter("SELECT");
    for (const QString &question : questions)
        QVERIFY2(question.count("nie:isLogicalPartOf") < 2, qPrintable(question));
}

void TestChannelRemoval::enclosuresAreReported()
{
    addChannel("news");
    addMessages({"a"}, "news");
    addEnclosure("a.ogg", messageUri("a"));
    store().update("INSERT { <urn:enclosure:bare> a mfo:Enclosure ; nie:isLogicalPartOf <urn:message:a> }");
    VERIFY_OK(remove("news"));
    QCOMPARE(m_steps.enclosures().size(), 2);
    for (const FeedEnclosure &enclosure : m_steps.enclosures()) {
        const bool isBare = enclosure.uri() == enclosureUri("bare");
        QCOMPARE(enclosure.uri(), enclosureUri(isBare ? "bare" : "a.ogg"));
        QCOMPARE(enclosure.remoteUrl(), isBare ? QString() : linkOf("a.ogg"));
        QCOMPARE(enclosure.localUrl(), isBare ? QString() : QString("file:///files/a.ogg"));
    }
}

void TestChannelRemoval::failureInALaterStep()
{
    addChannel("news");
    addMessages(numberedNames("m", 150), "news");
    store().update("INSERT { <urn:channel:news> tidel:entityTag 'tag' ; tidel:lastModified 'then' }");
    const FeedChannel channel = stored("news");
    int updates = 0;
    StatementGate::setJudge([&updates](const QString &statement) {
        const bool isSecond = statement.startsWith("DELETE") && ++updates == 2;
        return isSecond ? StatementGate::Refuse : StatementGate::Pass;
    });
    const Result<void> failed = Channels(reader()).remove(channel, m_steps.listener());
    StatementGate::reset();
    QVERIFY(!failed);
    QCOMPARE(failed.error().attempt(), QString("delete messages from the store"));
    QCOMPARE(m_steps.lines(), QStringList("100"));
    QCOMPARE(messagesIn("news").size(), 50);
    // Otherwise a server would answer that nothing has changed, and a refresh would bring nothing back.
    QCOMPARE(store().count("<urn:channel:news> tidel:entityTag|tidel:lastModified ?value"), 0);
    VERIFY_OK(remove("news"));
    QCOMPARE(m_steps.lines(), QStringList({"100", "50", "0"}));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
}

QTEST_GUILESS_MAIN(TestChannelRemoval)
#include "tst_channelremoval.moc"
