// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channels.h>

using namespace Tidel;

namespace {

FeedChannel channelWith(const QString &title, const QString &iconUrl = QString())
{
    FeedEnclosure icon;
    icon.setRemoteUrl(iconUrl);
    icon.setLocalUrl("/icons/a%20b.png");
    icon.setMimeType("image/png");
    icon.setLength(9);
    FeedChannel channel;
    channel.setTitle(title);
    channel.setLink(linkOf(title.toLower()));
    channel.setType("atom");
    channel.setIcon(icon);
    return channel;
}

QStringList titlesOf(const QList<FeedChannel> &channels)
{
    QStringList titles;
    for (const FeedChannel &channel : channels)
        titles.append(channel.title());
    return titles;
}

} // namespace

class TestChannels : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void allFields();
    void order();
    void eachOnce();
    void uri();
    void title();
    void messageCounts();

    void addStoresWhatTheCoreStores_data();
    void addStoresWhatTheCoreStores();
    void addAsksLittle();
    void alreadyStored();
    void iconOfAKnownEnclosure();

    void editTitle();
    void editLink();
    void editBoth();
    void editNothing();
    void editAgain();
    void linkInUse_data();
    void linkInUse();
    void linkOfAChannelWithSeveralLinks();

private:
    Channels channels() const { return Channels(reader()); }
    FeedChannel stored(const QString &name) const
    {
        return Channels::find(*channels().all(), channelUri(name)).value();
    }
};

void TestChannels::allFields()
{
    addChannel("news");
    addMessages({"a"}, "news");
    store().update("INSERT { <urn:channel:news> nie:comment 'Sun, 01 Nov 2026' ; "
                   "nie:contentLastModified '2026-11-02T10:00:00' }");
    const auto all = channels().all();
    VERIFY_OK(all);
    QCOMPARE(all->size(), 1);
    const FeedChannel channel = all->constFirst();
    QCOMPARE(channel.uri(), channelUri("news"));
    QCOMPARE(channel.title(), QString("news"));
    QCOMPARE(channel.link(), linkOf("news"));
    QCOMPARE(channel.type(), QString("rss"));
    QCOMPARE(channel.lastModifiedTime(), QString("Sun, 01 Nov 2026"));
    QCOMPARE(channel.subscribedTime(), QDateTime(QDate(2026, 11, 1), QTime(10, 0)));
    QCOMPARE(channel.updatedTime(), QDateTime(QDate(2026, 11, 2), QTime(10, 0)));
    QCOMPARE(channel.messages().size(), 0);
    QCOMPARE(channel.icon().remoteUrl(), QString());
    QCOMPARE(channel.description(), QString());
}

void TestChannels::order()
{
    QCOMPARE(channels().all()->size(), 0);
    for (const char *name : {"delta", "Alpha", "charlie", "Bravo"})
        addChannel(name);
    store().update("INSERT { <urn:channel:bare> a mfo:FeedChannel }");
    QCOMPARE(titlesOf(*channels().all()), QStringList({"", "Alpha", "Bravo", "charlie", "delta"}));
    store().update("DELETE { ?c nie:title ?t } WHERE { ?c a mfo:FeedChannel ; nie:title ?t }");
    store().update("INSERT { ?c nie:title 'Twin' } WHERE { ?c a mfo:FeedChannel ; nie:links ?l }");
    QStringList links;
    const QList<FeedChannel> twins = *channels().all();
    for (const FeedChannel &channel : twins)
        links.append(channel.link());
    QCOMPARE(links, QStringList({""}) + linksOf({"Alpha", "Bravo", "charlie", "delta"}));
}

void TestChannels::eachOnce()
{
    addChannel("news");
    addChannel("radio");
    store().update("INSERT { <urn:channel:news> nie:links <https://example.org/other> }");
    const auto all = channels().all();
    VERIFY_OK(all);
    QCOMPARE(titlesOf(*all), QStringList({"news", "radio"}));
}

void TestChannels::uri()
{
    addChannel("news");
    addMessages({"a"}, "news");
    QCOMPARE(*channels().uri(linkOf("news")), channelUri("news"));
    for (const QString &link : {linkOf("a"), linkOf("unknown"), QString(), QString("> } #")}) {
        const Result<QString> none = channels().uri(link);
        VERIFY_OK(none);
        QCOMPARE(*none, QString());
    }
}

void TestChannels::title()
{
    addChannel("news");
    QCOMPARE(*channels().title(linkOf("news")), QString("news"));
    VERIFY_ERROR(channels().title(linkOf("unknown")), Error::NotFound, "no such channel");
    VERIFY_ERROR(channels().title(QString()), Error::NotFound, "no such channel");
}

void TestChannels::messageCounts()
{
    QCOMPARE(channels().messageCounts()->size(), 0);
    for (const char *name : {"news", "radio", "empty"})
        addChannel(name);
    addMessages({"a", "b"}, "news");
    addMessages({"c"}, "radio");
    share("a", "radio");
    addEnclosure("a.ogg", channelUri("empty"));
    const auto counts = channels().messageCounts();
    VERIFY_OK(counts);
    QCOMPARE(*counts, (QHash<QString, int>{{channelUri("news"), 2}, {channelUri("radio"), 2}}));
}

void TestChannels::addStoresWhatTheCoreStores_data()
{
    QTest::addColumn<QString>("icon");
    QTest::newRow("without icon") << QString();
    QTest::newRow("with icon") << linkOf("icon.png");
}

void TestChannels::addStoresWhatTheCoreStores()
{
    QFETCH(QString, icon);
    FeedMessage message;
    message.setLink(linkOf("a"));
    FeedChannel channel = channelWith("News \"1\"", icon);
    channel.insertMessage(message);
    const auto uri = channels().add(channel);
    VERIFY_OK(uri);
    QCOMPARE(store().texts("SELECT ?c { ?c a mfo:FeedChannel }"), QStringList(*uri));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
    const QStringList added = contents();
    cleanup();
    init();
    channel.setUri("");
    FeedEnclosure image = channel.icon();
    FeedEnclosure local = image;
    local.setRemoteUrl(QString());
    channel.setIcon(local);
    const QString other = tracker()->addChannel(channel);
    QVERIFY(icon.isEmpty() || tracker()->addEnclosures({image}, other));
    QStringList expected = contents();
    expected.sort();
    QStringList sorted = added;
    sorted.sort();
    QCOMPARE(sorted, expected);
}

void TestChannels::addAsksLittle()
{
    VERIFY_OK(channels().add(channelWith("News", linkOf("icon.png"))));
    QCOMPARE(StatementGate::statements().size(), 3);
    StatementGate::reset();
    VERIFY_OK(channels().add(channelWith("Radio")));
    QCOMPARE(StatementGate::statements().size(), 2);
    const QDateTime subscribed = channels().all()->constFirst().subscribedTime();
    QVERIFY(qAbs(subscribed.secsTo(QDateTime::currentDateTime())) < 60);
}

void TestChannels::alreadyStored()
{
    addChannel("news");
    const QStringList before = contents();
    VERIFY_ERROR(channels().add(channelWith("News")), Error::AlreadyStored, "is subscribed already");
    QCOMPARE(contents(), before);
}

void TestChannels::iconOfAKnownEnclosure()
{
    addChannel("radio");
    addMessages({"a"}, "radio");
    addEnclosure("a.png", messageUri("a"));
    const QStringList before = propertiesOf(store(), enclosureUri("a.png"));
    const auto uri = channels().add(channelWith("News", linkOf("a.png")));
    VERIFY_OK(uri);
    QCOMPARE(store().count("?e a mfo:Enclosure"), 1);
    QStringList expected = before + QStringList("nie:isLogicalPartOf " + *uri);
    expected.sort();
    QCOMPARE(propertiesOf(store(), enclosureUri("a.png")), expected);
}

void TestChannels::editTitle()
{
    addChannel("news");
    addMessages({"a"}, "news");
    QStringList expected = contents();
    VERIFY_OK(channels().edit(stored("news"), "Other \"news\"", linkOf("news")));
    expected.replaceInStrings("urn:channel:news nie:title news", "urn:channel:news nie:title Other \"news\"");
    QCOMPARE(contents(), expected);
}

void TestChannels::editLink()
{
    addChannel("news");
    addMessages({"a"}, "news");
    store().update("INSERT { <urn:channel:news> tidel:entityTag 'tag' ; tidel:lastModified 'then' ; "
                   "nie:comment 'then' }");
    const QDateTime subscribed = stored("news").subscribedTime();
    VERIFY_OK(channels().edit(stored("news"), "news", linkOf("moved")));
    QCOMPARE(stored("news").link(), linkOf("moved"));
    QCOMPARE(stored("news").subscribedTime(), subscribed);
    QCOMPARE(stored("news").title(), QString("news"));
    QCOMPARE(store().count("?c tidel:entityTag ?t"), 0);
    QCOMPARE(store().count("?c tidel:lastModified ?t"), 0);
    QCOMPARE(store().texts("SELECT ?f { <urn:channel:news> nie:identifier ?f }"),
             QStringList(linkOf("news")));
    QCOMPARE(propertiesOf(store(), linkOf("news")), QStringList());
    QCOMPARE(messagesIn("news"), QStringList("a"));
    QCOMPARE(*channels().uri(linkOf("news")), QString());
}

void TestChannels::editBoth()
{
    addChannel("news");
    addChannel("radio");
    const QStringList radio = propertiesOf(store(), channelUri("radio"));
    const FeedChannel channel = stored("news");
    StatementGate::reset();
    VERIFY_OK(channels().edit(channel, "Moved", linkOf("moved")));
    QCOMPARE(StatementGate::types().count(QSparqlQuery::InsertStatement), 1);
    QCOMPARE(stored("news").title(), QString("Moved"));
    QCOMPARE(stored("news").link(), linkOf("moved"));
    QCOMPARE(propertiesOf(store(), channelUri("radio")), radio);
}

void TestChannels::editNothing()
{
    addChannel("news");
    const QStringList before = contents();
    VERIFY_OK(channels().edit(stored("news"), "news", linkOf("news")));
    QCOMPARE(contents(), before);
}

// The first link stays, because items without a link are named after it.
void TestChannels::editAgain()
{
    addChannel("news");
    for (const char *link : {"second", "third", "news"}) {
        VERIFY_OK(channels().edit(stored("news"), "news", linkOf(link)));
        QCOMPARE(store().texts("SELECT ?f { <urn:channel:news> nie:identifier ?f }"),
                 QStringList(linkOf("news")));
        QCOMPARE(store().texts("SELECT ?l { <urn:channel:news> nie:links ?l . ?l nie:created ?t }"),
                 QStringList(linkOf(link)));
    }
}

void TestChannels::linkInUse_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("text");
    QTest::newRow("of a channel") << linkOf("radio") << "is the link of another channel, radio";
    QTest::newRow("of its message") << linkOf("a") << "is the link of a message";
    QTest::newRow("of a message of another") << linkOf("b") << "is the link of a message";
    QTest::newRow("of an orphan") << linkOf("orphan") << "is the link of a message";
}

void TestChannels::linkInUse()
{
    QFETCH(QString, link);
    QFETCH(QString, text);
    addChannel("news");
    addChannel("radio");
    addMessages({"a"}, "news");
    addMessages({"b"}, "radio");
    addMessages({"orphan"}, "gone");
    const QStringList before = contents();
    VERIFY_ERROR(channels().edit(stored("news"), "Other", link), Error::LinkInUse, text);
    QCOMPARE(contents(), before);
}

void TestChannels::linkOfAChannelWithSeveralLinks()
{
    addChannel("news");
    addChannel("radio");
    store().update("INSERT { <urn:channel:radio> nie:links <https://example.org/second> }");
    const QStringList before = contents();
    for (const char *name : {"radio", "second"}) {
        VERIFY_ERROR(channels().edit(stored("news"), "Other", linkOf(name)), Error::LinkInUse,
                     "is the link of another channel, radio");
        QCOMPARE(contents(), before);
    }
}

QTEST_GUILESS_MAIN(TestChannels)
#include "tst_channels.moc"
