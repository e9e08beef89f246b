// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/linkuse.h>

using namespace Tidel;

namespace {

QList<Link> links(const QStringList &names)
{
    QList<Link> result;
    for (const QString &name : names)
        result.append(Link::fromEncoded(linkOf(name)));
    return result;
}

} // namespace

class TestLinkUse : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void uses_data();
    void uses();
    void otherLinks();
    void nothingToAsk();
    void unknownChannel();
    void sameLinkTwice();
    void manyLinks_data();
    void manyLinks();
    void failureOfALaterQuestion();
    void copies();
};

void TestLinkUse::init()
{
    ReaderTestCase::init();
    for (const char *name : {"news", "radio", "both", "twice"})
        addChannel(name);
    addMessages({"own", "shared"}, "news");
    addMessages({"other", "twice"}, "radio");
    share("shared", "radio");
    addMessages({"both"}, "news");
    addMessages({"orphan"}, "gone");
    addEnclosure("file", messageUri("own"));
    StatementGate::reset();
}

void TestLinkUse::uses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isOfChannel");
    QTest::addColumn<bool>("isOfMessage");
    QTest::addColumn<bool>("isInChannel");
    QTest::newRow("this channel") << "news" << true << false << false;
    QTest::newRow("another channel") << "radio" << true << false << false;
    QTest::newRow("message of this channel") << "own" << false << true << true;
    QTest::newRow("message of both channels") << "shared" << false << true << true;
    QTest::newRow("message of another channel") << "other" << false << true << false;
    QTest::newRow("orphan message") << "orphan" << false << true << false;
    QTest::newRow("channel and message of this channel") << "both" << true << true << true;
    QTest::newRow("channel and message of another channel") << "twice" << true << true << false;
    QTest::newRow("enclosure") << "file" << false << false << false;
    QTest::newRow("unknown") << "unknown" << false << false << false;
}

void TestLinkUse::uses()
{
    QFETCH(QString, name);
    const Link link = links({name}).constFirst();
    for (const QList<Link> &asked : {QList<Link>{link}, links({"own", "radio", name, "both", "unknown"})}) {
        const auto use = LinkUse::of(reader(), asked, channelUri("news"));
        VERIFY_OK(use);
        QTEST(use->isOfChannel(link), "isOfChannel");
        QTEST(use->isOfMessage(link), "isOfMessage");
        QTEST(use->isInChannel(link), "isInChannel");
    }
}

void TestLinkUse::otherLinks()
{
    const auto use = LinkUse::of(reader(), links({"own"}), channelUri("news"));
    VERIFY_OK(use);
    for (const Link &link : {links({"radio"}).constFirst(), links({"other"}).constFirst(), Link()}) {
        QVERIFY(!use->isOfChannel(link));
        QVERIFY(!use->isOfMessage(link));
        QVERIFY(!use->isInChannel(link));
    }
}

void TestLinkUse::nothingToAsk()
{
    VERIFY_OK(LinkUse::of(reader(), {}, channelUri("news")));
    QCOMPARE(StatementGate::statements().size(), 0);
    const auto use = LinkUse::of(reader(), {Link()}, channelUri("news"));
    VERIFY_OK(use);
    QVERIFY(!use->isOfMessage(Link()));
}

void TestLinkUse::unknownChannel()
{
    for (const QString &uri : {QString("urn:unknown"), QString(), QString("> } #")}) {
        const auto use = LinkUse::of(reader(), links({"own"}), uri);
        VERIFY_OK(use);
        QVERIFY(use->isOfMessage(links({"own"}).constFirst()));
        QVERIFY(!use->isInChannel(links({"own"}).constFirst()));
    }
}

void TestLinkUse::sameLinkTwice()
{
    const auto use = LinkUse::of(reader(), links({"own", "own", "radio", "radio"}), channelUri("news"));
    VERIFY_OK(use);
    QVERIFY(use->isInChannel(links({"own"}).constFirst()));
    QVERIFY(use->isOfChannel(links({"radio"}).constFirst()));
}

void TestLinkUse::manyLinks_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("statements");
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("100") << 100 << 1;
    QTest::newRow("101") << 101 << 2;
    QTest::newRow("250") << 250 << 3;
}

void TestLinkUse::manyLinks()
{
    QFETCH(int, count);
    const QStringList names = numberedNames("m", count);
    StatementGate::reset();
    VERIFY_OK(LinkUse::of(reader(), links(names), channelUri("news")));
    QTEST(int(StatementGate::statements().size()), "statements");
    // Used links cost another question.
    addMessages(names, "news");
    StatementGate::reset();
    const auto use = LinkUse::of(reader(), links(names), channelUri("news"));
    VERIFY_OK(use);
    QTEST(int(StatementGate::statements().size()) / 2, "statements");
    for (const Link &link : links(names))
        QVERIFY2(use->isInChannel(link), qPrintable(link.toString()));
}

void TestLinkUse::failureOfALaterQuestion()
{
    StatementGate::failAt(1, StatementGate::Refuse);
    const auto use = LinkUse::of(reader(), links(numberedNames("m", 250)), channelUri("news"));
    QVERIFY(!use);
    QCOMPARE(use.error().attempt(), QString("look up the links of the feed in the store"));
    QCOMPARE(StatementGate::statements().size(), 2);
}

void TestLinkUse::copies()
{
    const Link own = links({"own"}).constFirst();
    LinkUse use = *LinkUse::of(reader(), {own}, channelUri("news"));
    const LinkUse copy = use;
    use = *LinkUse::of(reader(), {}, channelUri("news"));
    QVERIFY(copy.isInChannel(own));
    QVERIFY(!use.isInChannel(own));
    const LinkUse moved = std::move(use);
    QVERIFY(!moved.isInChannel(own));
}

QTEST_GUILESS_MAIN(TestLinkUse)
#include "tst_linkuse.moc"
