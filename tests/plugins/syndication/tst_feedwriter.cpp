// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugintest.h"

#include <soon.h>
#include <statementgate.h>

#include <TidelReader/channels.h>
#include <TidelReader/feeds.h>
#include <TidelReader/messages.h>
#include <TidelReader/retention.h>

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

using namespace Tidel;

namespace {

QByteArray item(const QByteArray &id, const QByteArray &link, const QByteArray &text = "Text")
{
    const QByteArray guid = id.isEmpty() ? QByteArray() : "<guid isPermaLink='false'>" + id + "</guid>";
    return "<item>" + guid + "<link>https://example.org/" + link + "</link><title>Item " + id
        + "</title><description>" + text + "</description></item>";
}

QString linkOf(const QString &name) { return "https://example.org/" + name; }

} // namespace

/// What a second reading of a feed makes of its items.
class TestFeedWriter : public PluginTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(prepare()); }
    void init() { QVERIFY(begin()); }
    void cleanup() { end(); }

    void sameLink();
    void sameLinkAfterTheOlderItemHasLeft();
    void sameLinkInAnOlderStore();
    void itemMovesToAnotherLink();
    void itemTakesTheLinkOfAnother();
    void itemsWithoutIdsAreKnownByTheirLinks();
    void repeatedIdsIdentifyNothing();
    void idThatIsUniqueLater();
    void newAndChanged();
    void twoFeedsOfOneMessage();
    void droppedItemMoves();
    void droppedItemDoesNotHideAnother();
    void droppedKeysAreForgotten();
    void detailsAreStored();
    void notes();
    void newestFirstWhenThereAreTooMany();
    void canceledBetweenGroups();
    void downloadersTakeTurns();
    void lastMessagesAndNoteAreOneUpdate();
    void refusedLastMessages();
    void storeOfVersion01();

private:
    /// Writes the feed with \a items and reads it.
    void read(const QByteArray &items)
    {
        const QString path = write("feed.xml", feed(items));
        touch(path);
        const bool isNew = channelUri().isEmpty();
        VERIFY_ENDING(isNew ? subscribe("file://" + path) : refresh(), "downloadFeedsFinished");
    }
    /// Gives the file \a path a time of its own.
    void touch(const QString &path)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(--m_age),
                                 QFileDevice::FileModificationTime));
    }
    QStringList last(const char *property) const { return downloader().property(property).toStringList(); }
    /// What is noted of the items of the only channel.
    ItemNote noteOf() const { return Feeds(*Store::open()).itemNote(channelUri()).value_or(ItemNote()); }
    void drop(const QString &link) const
    {
        const Result<Store> store = Store::open();
        QVERIFY(store);
        const QString uri = *Messages(*store).uri(link);
        QVERIFY(Retention(*store).drop(channelUri(), {uri}, {0, {}, true},
                                       [](int, const QList<FeedEnclosure> &) {}));
    }
    QStringList titles() const
    {
        return m_store->texts("SELECT ?t { ?m a mfo:FeedMessage ; nie:title ?t } ORDER BY ?t");
    }

    int m_age = -7200;
};

void TestFeedWriter::sameLink()
{
    read(item("2", "a") + item("1", "a"));
    QCOMPARE(titles(), QStringList({"Item 1", "Item 2"}));
    QCOMPARE(messageLinks().first(), linkOf("a"));
    QVERIFY2(messageLinks().last().startsWith(linkOf("a#tidel-")), qPrintable(messageLinks().last()));
    read(item("2", "a") + item("1", "a"));
    QCOMPARE(last("newMessages") + last("changedMessages"), QStringList());
}

void TestFeedWriter::sameLinkAfterTheOlderItemHasLeft()
{
    read(item("1", "a"));
    for (int round = 0; round < 2; ++round) {
        read(item("2", "a"));
        QCOMPARE(last("newMessages").size(), round == 0 ? 1 : 0);
        QCOMPARE(last("changedMessages"), QStringList());
        QCOMPARE(titles(), QStringList({"Item 1", "Item 2"}));
    }
    read(item("2", "a") + item("1", "a"));
    QCOMPARE(last("newMessages") + last("changedMessages"), QStringList());
    QCOMPARE(titles(), QStringList({"Item 1", "Item 2"}));
}

// Without a key, the message with the plain link cannot be told from a new item with this link. Its text is
// kept.
void TestFeedWriter::sameLinkInAnOlderStore()
{
    read(item("2", "a") + item("1", "a"));
    m_store->update("DELETE { ?m tidel:itemKey ?k } WHERE { ?m tidel:itemKey ?k } "
                    "DELETE { ?m tidel:digest ?d } WHERE { ?m tidel:digest ?d }");
    for (int round = 0; round < 2; ++round) {
        read(item("3", "a") + item("2", "a"));
        QCOMPARE(last("newMessages") + last("changedMessages"), QStringList());
        QCOMPARE(titles(), QStringList({"Item 2", "Item 3"}));
        QCOMPARE(m_store->count("?m tidel:earlierVersions ?v FILTER(CONTAINS(?v, 'Item 1'))"), 1);
    }
}

void TestFeedWriter::itemMovesToAnotherLink()
{
    read(item("1", "a"));
    read(item("1", "moved") + item("2", "b"));
    QCOMPARE(last("newMessages"), QStringList(linkOf("b")));
    QCOMPARE(messageLinks(), QStringList({linkOf("a"), linkOf("b")}));
    read(item("1", "moved", "Other text"));
    QCOMPARE(last("changedMessages"), QStringList(linkOf("a")));
}

void TestFeedWriter::itemTakesTheLinkOfAnother()
{
    read(item("1", "a") + item("2", "b"));
    read(item("1", "b") + item("2", "a"));
    QCOMPARE(last("newMessages") + last("changedMessages"), QStringList());
    QCOMPARE(m_store->texts("SELECT ?t { ?m nie:title ?t ; nie:links <" + linkOf("a") + "> }"),
             QStringList("Item 1"));
}

void TestFeedWriter::itemsWithoutIdsAreKnownByTheirLinks()
{
    read(item({}, "a"));
    read(item({}, "a", "Other text") + item({}, "b"));
    QCOMPARE(last("changedMessages"), QStringList(linkOf("a")));
    QCOMPARE(last("newMessages"), QStringList(linkOf("b")));
    QCOMPARE(m_store->count("?m tidel:itemKey ?k"), 0);
}

void TestFeedWriter::repeatedIdsIdentifyNothing()
{
    read(item("1", "a") + item("1", "b"));
    QCOMPARE(messageLinks(), QStringList({linkOf("a"), linkOf("b")}));
    QCOMPARE(m_store->count("?m tidel:itemKey ?k"), 0);
    read(item("1", "c") + item("1", "a") + item("1", "b"));
    QCOMPARE(last("newMessages"), QStringList(linkOf("c")));
    QCOMPARE(last("changedMessages"), QStringList());
}

void TestFeedWriter::idThatIsUniqueLater()
{
    read(item("1", "a") + item("1", "b"));
    read(item("1", "a"));
    QCOMPARE(last("newMessages") + last("changedMessages"), QStringList());
    QCOMPARE(m_store->texts("SELECT ?l { ?m tidel:itemKey ?k ; nie:links ?l }"), QStringList(linkOf("a")));
}

void TestFeedWriter::newAndChanged()
{
    read(item("1", "a") + item("2", "b") + item("3", "c"));
    QCOMPARE(last("newMessages").size(), 3);
    QCOMPARE(last("changedMessages"), QStringList());
    read(item("4", "d") + item("1", "a", "Text, 5 comments") + item("2", "b", "Better text")
         + item("3", "c"));
    QCOMPARE(last("newMessages"), QStringList(linkOf("d")));
    QCOMPARE(last("changedMessages"), QStringList({linkOf("b"), linkOf("a")}));
    read(item("4", "d") + item("1", "a", "Text, 6 comments") + item("2", "b", "<p>Better <b>text</b></p>"));
    QCOMPARE(last("newMessages") + last("changedMessages"), QStringList());
    VERIFY_ENDING(subscribe(m_server->url("/missing")), "downloadFeedsFailed");
    QCOMPARE(last("changedMessages"), QStringList());
}

void TestFeedWriter::twoFeedsOfOneMessage()
{
    const QString first = "file://" + write("first.xml", feed(item("1", "a", "Of the first")));
    const QString second = "file://" + write("second.xml", feed(item("x", "a", "Of the second")));
    VERIFY_ENDING(subscribe(first), "downloadFeedsFinished");
    VERIFY_ENDING(subscribe(second), "downloadFeedsFinished");
    for (int round = 0; round < 2; ++round) {
        touch(QUrl(first).toLocalFile());
        touch(QUrl(second).toLocalFile());
        VERIFY_ENDING(refresh({channelUri(first), channelUri(second)}), "downloadFeedsFinished");
        QCOMPARE(last("newMessages") + last("changedMessages"), QStringList());
        QCOMPARE(m_store->texts("SELECT ?d { ?m a mfo:FeedMessage ; nie:description ?d }"),
                 QStringList("Of the first"));
    }
}

void TestFeedWriter::droppedItemMoves()
{
    read(item("1", "a") + item("2", "b"));
    drop(linkOf("a"));
    read(item("1", "moved") + item("2", "b"));
    QCOMPARE(messageLinks(), QStringList(linkOf("b")));
    read(item("1", "a") + item("2", "b"));
    QCOMPARE(messageLinks(), QStringList(linkOf("b")));
}

void TestFeedWriter::droppedItemDoesNotHideAnother()
{
    read(item("1", "a"));
    drop(linkOf("a"));
    read(item("2", "a") + item("1", "a"));
    QCOMPARE(titles(), QStringList("Item 2"));
}

void TestFeedWriter::droppedKeysAreForgotten()
{
    read(item("1", "a") + item("2", "b"));
    drop(linkOf("a"));
    QCOMPARE(m_store->count("?c tidel:droppedKey ?k"), 1);
    QCOMPARE(m_store->count("?c tidel:droppedLink ?l"), 0);
    read(item("2", "b"));
    QCOMPARE(m_store->count("?c tidel:droppedKey ?k"), 0);
}

void TestFeedWriter::detailsAreStored()
{
    const QString path = write(
        "feed.xml",
        "<rss version='2.0'><channel><title>Feed</title><link>https://example.org/</link>"
        "<ttl>60</ttl><item><guid isPermaLink='false'>1</guid><title>One</title><category>garden</category>"
        "<enclosure url='https://example.org/1.mp3' type='audio/mpeg' length='5'/>"
        "<duration xmlns='http://www.itunes.com/dtds/podcast-1.0.dtd'>1:02:03</duration>"
        "</item></channel></rss>");
    VERIFY_ENDING(subscribe("file://" + path), "downloadFeedsFinished");
    QCOMPARE(m_store->texts("SELECT ?w ?t { ?c tidel:website ?w ; tidel:minutesToLive ?t }"),
             QStringList("https://example.org/ 60"));
    QCOMPARE(m_store->texts("SELECT ?c { ?m a mfo:FeedMessage ; tidel:category ?c }"), QStringList("garden"));
    QCOMPARE(m_store->texts("SELECT ?d { ?e a mfo:Enclosure ; tidel:duration ?d }"), QStringList("3723"));
}

void TestFeedWriter::newestFirstWhenThereAreTooMany()
{
    QByteArray items;
    for (int i = 20000; i > 0; --i)
        items += "<item><guid>" + QByteArray::number(i) + "</guid></item>";
    read(items);
    QCOMPARE(last("newMessages").size(), 15000);
    const QStringList note("has more new messages than one refresh stores: refresh again");
    QCOMPARE(last("newNotes"), note);
    QCOMPARE(m_store->count("?c tidel:entityTag ?t"), 0);
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 15000);
    // Nothing but the missing validators makes the next refresh read the same file again.
    VERIFY_ENDING(refresh(), "downloadFeedsFinished");
    QCOMPARE(last("newMessages").size(), 5000);
    QCOMPARE(m_store->count("?c tidel:note ?n"), 0);
    QCOMPARE(m_store->count("?c tidel:entityTag ?t"), 1);
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 20000);
}

void TestFeedWriter::canceledBetweenGroups()
{
    QByteArray items;
    for (int i = 0; i < 12000; ++i)
        items += item(QByteArray::number(i), QByteArray::number(i));
    downloader().subscribe(QUrl("file://" + write("feed.xml", feed(items))));
    VERIFY_SOON(m_store->count("?m a mfo:FeedMessage") > 0);
    downloader().cancel();
    const Ending canceled = ending(downloader());
    QCOMPARE(canceled.error, int(FeedDownloadCanceled));
    const int stored = m_store->count("?m a mfo:FeedMessage");
    QVERIFY2(stored > 0 && stored < 12000 && stored % 100 == 0, qPrintable(QString::number(stored)));
    QCOMPARE(last("newMessages").size(), stored);
    VERIFY_ENDING(refresh(), "downloadFeedsFinished");
    QCOMPARE(last("newMessages").size(), 12000 - stored);
}

// The second feed has the messages of the first one, and stores them between the turns of the first one.
void TestFeedWriter::downloadersTakeTurns()
{
    QByteArray items;
    for (int i = 0; i < 8000; ++i)
        items += item(QByteArray::number(i), QByteArray::number(i));
    const auto other = another();
    downloader().subscribe(QUrl("file://" + write("feed.xml", feed(items))));
    other->subscribe(QUrl("file://" + write("other.xml", feed(items))));
    QSignalSpy ends(other.get(), &FeedPluginInterface::downloadFeedsFinished);
    VERIFY_ENDING(ending(downloader()), "downloadFeedsFinished");
    COMPARE_SOON(int(ends.size()), 1);
    QCOMPARE(m_store->count("?m a mfo:FeedMessage"), 8000);
    QCOMPARE(m_store->count("?m a mfo:FeedMessage ; nie:isLogicalPartOf ?c"), 16000);
}

void TestFeedWriter::lastMessagesAndNoteAreOneUpdate()
{
    StatementGate::reset();
    read(item("1", "a") + item("2", "b"));
    // One adds the channel.
    QCOMPARE(int(StatementGate::types().count(QSparqlQuery::InsertStatement)), 2);
    StatementGate::reset();
    read(item("1", "a", "Better text") + item("3", "c"));
    QCOMPARE(int(StatementGate::types().count(QSparqlQuery::InsertStatement)), 1);
    QCOMPARE(messageLinks(), QStringList({linkOf("a"), linkOf("b"), linkOf("c")}));
    QVERIFY(!noteOf().text.isEmpty());
}

// The store refuses the update of all, then what is written without the note.
void TestFeedWriter::refusedLastMessages()
{
    read(item("1", "a"));
    StatementGate::setJudge([](const QString &statement) {
        const bool isOfB = statement.startsWith("INSERT") && statement.contains(linkOf("b"));
        return isOfB ? StatementGate::Refuse : StatementGate::Pass;
    });
    const QString path = write("feed.xml", feed(item("2", "b") + item("3", "c") + item("1", "a")));
    touch(path);
    const Ending refused = refresh();
    StatementGate::reset();
    QCOMPARE(refused.error, int(FeedDownloadStoreFailed));
    QCOMPARE(last("newMessages"), QStringList(linkOf("c")));
    VERIFY_ENDING(refresh(), "downloadFeedsFinished");
    QCOMPARE(last("newMessages"), QStringList(linkOf("b")));
    VERIFY_ENDING(refresh(), "downloadFeedsFinished");
    QCOMPARE(messageLinks(), QStringList({linkOf("a"), linkOf("b"), linkOf("c")}));
}

// A note is told when the channel gets it, and again only if it was gone in between.
void TestFeedWriter::notes()
{
    const QByteArray whole = feed(item("1", "a"));
    const auto readBroken = [&](int lines) {
        touch(write("feed.xml", QByteArray(whole).replace("</description>", QByteArray(lines, '\n'))));
        VERIFY_ENDING(refresh(), "downloadFeedsFinished");
    };
    read(item("1", "a"));
    QCOMPARE(last("newNotes"), QStringList());
    readBroken(1);
    QCOMPARE(last("newNotes").size(), 1);
    QVERIFY2(last("newNotes").first().startsWith("was not well-formed: line "),
             qPrintable(last("newNotes").first()));
    const QStringList stored = m_store->texts("SELECT ?n { ?c tidel:note ?n }");
    QCOMPARE(stored, last("newNotes"));
    readBroken(2);
    QCOMPARE(last("newNotes"), QStringList());
    QVERIFY(m_store->texts("SELECT ?n { ?c tidel:note ?n }") != stored);
    read(item("1", "a"));
    QCOMPARE(m_store->count("?c tidel:note ?n"), 0);
    readBroken(1);
    QCOMPARE(last("newNotes").size(), 1);
}

/// A store that version 0.1 of the reader library made of the samples: one message is a favorite, one has
/// downloaded files, and two
/// were dropped.
void TestFeedWriter::storeOfVersion01()
{
    const QString folder = m_store->dataFolder() + "/tidel";
    QVERIFY(QDir().mkpath(folder));
    QCOMPARE(QProcess::execute("tar", {"-xJf", TIDEL_TEST_DATA "/stores/0.1.tar.xz", "-C", folder}), 0);
    const QDir samples(TIDEL_TEST_DATA "/feeds");
    const Result<Store> store = Store::open();
    QVERIFY(store);
    const QString everyMessage = "SELECT ?m ?l ?c { ?m a mfo:FeedMessage ; nie:links ?l ; "
                                 "nie:isLogicalPartOf ?c } ORDER BY ?m ?c";
    const QStringList messages = m_store->texts(everyMessage);
    QCOMPARE(messages.size(), 93);
    const QString files =
        "SELECT ?e ?l { ?e mfo:localLink ?l FILTER(STRSTARTS(STR(?l), 'file:')) } ORDER BY ?e";
    const QStringList downloaded = m_store->texts(files);
    QCOMPARE(downloaded.size(), 2);

    const Result<QList<FeedChannel>> channels = Channels(*store).all();
    QVERIFY(channels);
    QCOMPARE(channels->size(), 19);
    QStringList uris;
    for (const FeedChannel &channel : *channels) {
        const QString name = channel.link().section('/', -1);
        QVERIFY(QFile::copy(samples.filePath(name), m_folder->filePath(name)));
        // The query makes the address differ from the stored one also where the ports are the same by chance.
        QVERIFY(Channels(*store).edit(channel, channel.title(), m_server->url("/files/" + name + "?now")));
        uris.append(channel.uri());
    }
    for (int round = 0; round < 2; ++round) {
        VERIFY_ENDING(refresh(uris), "downloadFeedsFinished");
        // Eight items have neither an identifier nor a link, and two have a link to a local file, which a
        // server may not give. Version 0.1 named them in another way.
        QCOMPARE(last("newMessages").filter("urn:tidel:item:").size(), round == 0 ? 10 : 0);
        QCOMPARE(last("newMessages").size(), round == 0 ? 10 : 0);
        QCOMPARE(last("changedMessages"), QStringList());
        m_store->update("DELETE { ?c tidel:entityTag ?e } WHERE { ?c tidel:entityTag ?e }");
    }
    const QStringList now = m_store->texts(everyMessage);
    for (const QString &message : messages)
        QVERIFY2(now.contains(message), qPrintable(message));
    // The ten, and the two that Garden Notes has kept, which its feed does not show any more.
    QVERIFY(m_store->count("?m tidel:digest ?d") >= 85);
    QCOMPARE(m_store->count("?m tidel:itemKey ?k"), 41);
    QVERIFY(m_store->count("?m tidel:author ?a") > 0);
    QVERIFY(m_store->count("?c tidel:website ?w") > 0);
    QCOMPARE(m_store->texts("SELECT ?l { ?m nao:hasTag nao:predefined-tag-favorite ; nie:links ?l }"),
             QStringList("https://radio.example.org/episodes/1"));
    QCOMPARE(m_store->texts(files), downloaded);
}

QTEST_GUILESS_MAIN(TestFeedWriter)
#include "tst_feedwriter.moc"
