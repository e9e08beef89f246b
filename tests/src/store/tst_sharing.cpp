// SPDX-License-Identifier: LGPL-2.1-or-later
#include "deletions.h"
#include "storetest.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Deletions;

namespace {

void addOperationRow(const char *name, const std::function<void()> &operation)
{
    QTest::newRow(name) << Operation([operation] {
        operation();
        return true;
    });
}

FeedEnclosure enclosure(const QString &remoteUrl, const QString &localUrl)
{
    FeedEnclosure result;
    result.setRemoteUrl(remoteUrl);
    result.setLocalUrl(localUrl);
    return result;
}

FeedMessage message(const QString &link, const QList<FeedEnclosure> &enclosures = {})
{
    FeedMessage result("Title", link, "Text", QDateTime::currentDateTime());
    result.addEnclosure(enclosures);
    return result;
}

} // namespace

/// Tests that a resource with several owners stays until the last owner is deleted.
class TestSharing : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void messageOfTwoChannelsSurvives_data();
    void messageOfTwoChannelsSurvives();
    void messageOfTwoChannelsGoes_data();
    void messageOfTwoChannelsGoes();
    void enclosureOfTwoMessagesSurvives_data();
    void enclosureOfTwoMessagesSurvives();
    void enclosureOfTwoMessagesGoes_data();
    void enclosureOfTwoMessagesGoes();
    void imageFileOfTwoChannelsSurvives_data();
    void imageFileOfTwoChannelsSurvives();
    void imageFileOfTwoChannelsGoes_data();
    void imageFileOfTwoChannelsGoes();
    void fileOfASharedImageNodeIsNeverRemoved();

    void remainingResources_data();
    void remainingResources();
    void nothingRemainsOfTheWholeArchive();
};

void TestSharing::messageOfTwoChannelsSurvives_data()
{
    QTest::addColumn<Operation>("operation");
    addOperationRow("deleteChannel", [=] { tracker()->deleteChannel("urn:c:1"); });
    addOperationRow("deleteMessages of the channel", [=] { tracker()->deleteMessages(QString("urn:c:1")); });
    addOperationRow("deleteMessage", [=] { tracker()->deleteMessage("urn:m:1", "urn:c:1"); });
    addOperationRow("deleteOrphans", [=] { tracker()->deleteOrphans(); });
    addOperationRow("deleteOrphans after deleteChannel", [=] {
        tracker()->deleteChannel("urn:c:1");
        tracker()->deleteOrphans();
    });
}

void TestSharing::messageOfTwoChannelsSurvives()
{
    QFETCH(Operation, operation);
    store().update(storedChannel("1") + storedChannel("2") + storedMessage("1", {"urn:c:1", "urn:c:2"})
                   + storedEnclosure("1", {"urn:m:1"}));
    const QStringList message = propertiesOf(store(), "urn:m:1");
    const QStringList enclosure = propertiesOf(store(), "urn:e:1");
    operation();
    QCOMPARE(propertiesOf(store(), "urn:m:1"), message);
    QCOMPARE(propertiesOf(store(), "urn:e:1"), enclosure);
    QCOMPARE(tracker()->allMessageUrls("urn:c:2"), QStringList("urn:m:1"));
    // The deletion of the last channel deletes it.
    tracker()->deleteChannel("urn:c:1");
    tracker()->deleteChannel("urn:c:2");
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestSharing::messageOfTwoChannelsGoes_data()
{
    QTest::addColumn<Operation>("operation");
    addOperationRow("deleteMessages of a list", [=] { tracker()->deleteMessages(messageUris({"1"})); });
    addOperationRow("deleteAllChannels", [=] { tracker()->deleteAllChannels(); });
}

void TestSharing::messageOfTwoChannelsGoes()
{
    QFETCH(Operation, operation);
    store().update(storedChannel("1") + storedChannel("2") + storedMessage("1", {"urn:c:1", "urn:c:2"})
                   + storedEnclosure("1", {"urn:m:1"}));
    operation();
    QStringList left = subjectsIn(store());
    left.removeOne("http://example.org/feed/1");
    left.removeOne("http://example.org/feed/2");
    left.removeOne("urn:c:1");
    left.removeOne("urn:c:2");
    QCOMPARE(left, QStringList());
}

void TestSharing::enclosureOfTwoMessagesSurvives_data()
{
    QTest::addColumn<Operation>("operation");
    addOperationRow("deleteChannel", [=] { tracker()->deleteChannel("urn:c:1"); });
    addOperationRow("deleteMessages of the channel", [=] { tracker()->deleteMessages(QString("urn:c:1")); });
    addOperationRow("deleteMessages of a list", [=] { tracker()->deleteMessages(messageUris({"1"})); });
    addOperationRow("deleteMessage", [=] { tracker()->deleteMessage("urn:m:1", "urn:c:1"); });
    addOperationRow("deleteEnclosures of the message",
                    [=] { tracker()->deleteEnclosures(QString("urn:m:1")); });
    addOperationRow("deleteOrphans", [=] {
        store().update("DELETE { <urn:m:1> nie:isLogicalPartOf <urn:c:1> }");
        tracker()->deleteOrphans();
    });
}

void TestSharing::enclosureOfTwoMessagesSurvives()
{
    QFETCH(Operation, operation);
    store().update(storedChannel("1") + storedChannel("2") + storedMessage("1", {"urn:c:1"})
                   + storedMessage("2", {"urn:c:2"}) + storedEnclosure("1", {"urn:m:1", "urn:m:2"}));
    const QStringList enclosure = propertiesOf(store(), "urn:e:1");
    int announced = 0;
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this, [&announced] { ++announced; });
    operation();
    QCOMPARE(announced, 0);
    QCOMPARE(propertiesOf(store(), "urn:e:1"), enclosure);
    QVERIFY(subjectsIn(store()).contains("urn:m:2"));
    // The deletion of the last message deletes it.
    tracker()->deleteMessages(messageUris({"1"}));
    QCOMPARE(announced, 0);
    tracker()->deleteMessages(messageUris({"2"}));
    QCOMPARE(announced, 1);
    QVERIFY(!subjectsIn(store()).contains("urn:e:1"));
}

void TestSharing::enclosureOfTwoMessagesGoes_data()
{
    QTest::addColumn<Operation>("operation");
    addOperationRow("deleteEnclosures of a list", [=] { tracker()->deleteEnclosures(enclosureUris({"1"})); });
    addOperationRow("deleteMessages of a list", [=] { tracker()->deleteMessages(messageUris({"1", "2"})); });
    addOperationRow("deleteAllChannels", [=] { tracker()->deleteAllChannels(); });
}

void TestSharing::enclosureOfTwoMessagesGoes()
{
    QFETCH(Operation, operation);
    store().update(storedChannel("1") + storedChannel("2") + storedMessage("1", {"urn:c:1"})
                   + storedMessage("2", {"urn:c:2"}) + storedEnclosure("1", {"urn:m:1", "urn:m:2"}));
    int announced = 0;
    connect(tracker(), &FeedTrackerSparql::enclosuresToBeDeleted, this, [&announced] { ++announced; });
    operation();
    QCOMPARE(announced, 1);
    QVERIFY(!subjectsIn(store()).contains("urn:e:1"));
}

void TestSharing::imageFileOfTwoChannelsSurvives_data()
{
    QTest::addColumn<Operation>("operation");
    addOperationRow("deleteChannel", [=] { tracker()->deleteChannel("urn:c:1"); });
    addOperationRow("deleteOrphans", [=] { tracker()->deleteOrphans(); });
    addOperationRow("deleteOrphans after deleteChannel", [=] {
        tracker()->deleteChannel("urn:c:1");
        tracker()->deleteOrphans();
    });
}

/// Returns two channels with images that have the same file.
static QString twoChannelsWithImage(const QString &path)
{
    const QString image = "mfo:image '" + path + '\'';
    QString insert = storedChannel("1", image) + storedChannel("2", image);
    for (const char *name : {"1", "2"}) {
        insert += QString("INSERT { <urn:i:%1> a mfo:Enclosure ; mfo:remoteLink <urn:r:%1> ; "
                          "mfo:localLink <%2> ; nie:isLogicalPartOf <urn:c:%1> } ")
                      .arg(name, path);
    }
    return insert;
}

void TestSharing::imageFileOfTwoChannelsSurvives()
{
    QFETCH(Operation, operation);
    const QTemporaryDir folder;
    QFile file(folder.filePath("image.png"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    store().update(twoChannelsWithImage(file.fileName()));
    operation();
    QVERIFY(file.exists());
    QVERIFY(subjectsIn(store()).contains("urn:i:2"));
    // The deletion of the last channel deletes it.
    tracker()->deleteChannel("urn:c:1");
    QVERIFY(file.exists());
    tracker()->deleteChannel("urn:c:2");
    QVERIFY(!file.exists());
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestSharing::imageFileOfTwoChannelsGoes_data()
{
    QTest::addColumn<Operation>("operation");
    addOperationRow("deleteAllChannels", [=] { tracker()->deleteAllChannels(); });
    addOperationRow("deleteChannelImage", [=] { tracker()->deleteChannelImage("urn:c:1"); });
}

void TestSharing::imageFileOfTwoChannelsGoes()
{
    QFETCH(Operation, operation);
    const QTemporaryDir folder;
    QFile file(folder.filePath("image.png"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    store().update(twoChannelsWithImage(file.fileName()));
    operation();
    QVERIFY(!file.exists());
}

void TestSharing::fileOfASharedImageNodeIsNeverRemoved()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("image.png"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QString image = "mfo:image '" + file.fileName() + '\'';
    store().update(storedChannel("1", image) + storedChannel("2", image)
                   + QString("INSERT { <urn:i> a mfo:Enclosure ; mfo:remoteLink <urn:r> ; "
                             "mfo:localLink <%1> ; nie:isLogicalPartOf <urn:c:1>, <urn:c:2> }")
                         .arg(file.fileName()));
    tracker()->deleteChannel("urn:c:1");
    QVERIFY(!subjectsIn(store()).contains("urn:i"));
    tracker()->deleteChannel("urn:c:2");
    QCOMPARE(everythingIn(store()), QStringList());
    QVERIFY(file.exists());
}

void TestSharing::remainingResources_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QStringList>("left");
    const auto row = [](const char *name, const QString &stored, const std::function<void()> &operation,
                        const QStringList &left) {
        QTest::newRow(name) << stored << Operation([operation] {
            operation();
            return true;
        }) << left;
    };
    const auto deleteFirstChannel = [=] { tracker()->deleteChannel("urn:c:1"); };
    const auto clean = [=] {
        tracker()->deleteAllChannels();
        tracker()->deleteOrphans();
    };
    const QString link = "http://example.org/1";
    const QString time = "nie:created 2020-01-01T00:00:00.000Z";

    row("a shared message names the deleted channel",
        storedChannel("1") + storedChannel("2") + storedMessage("1", {"urn:c:1", "urn:c:2"}),
        deleteFirstChannel,
        {"http://example.org/feed/2 a nie:DataObject", "http://example.org/feed/2 " + time,
         "urn:c:2 a mfo:FeedChannel", "urn:c:2 nie:links http://example.org/feed/2",
         "urn:m:1 a mfo:FeedMessage", "urn:m:1 nie:isLogicalPartOf urn:c:1",
         "urn:m:1 nie:isLogicalPartOf urn:c:2", "urn:m:1 nie:links " + link});
    row("a shared enclosure names the deleted message",
        storedMessage("1", {}) + storedMessage("2", {}) + storedEnclosure("1", {"urn:m:1", "urn:m:2"}),
        [=] { tracker()->deleteMessage("urn:m:1", "urn:c:1"); },
        {"urn:e:1 a mfo:Enclosure", "urn:e:1 mfo:localLink file:///1.ogg",
         "urn:e:1 mfo:remoteLink http://example.org/1.ogg", "urn:e:1 nie:isLogicalPartOf urn:m:1",
         "urn:e:1 nie:isLogicalPartOf urn:m:2", "urn:m:2 a mfo:FeedMessage",
         "urn:m:2 nie:links http://example.org/2"});
    row("a channel that has the same link keeps it without its time",
        "INSERT { <urn:c:2> a mfo:FeedChannel ; nie:links <http://example.org/feed/1> } "
            + storedChannel("1"),
        deleteFirstChannel, {"urn:c:2 a mfo:FeedChannel", "urn:c:2 nie:links http://example.org/feed/1"});
    row("a channel keeps a message's link without its time",
        storedChannel("1") + "INSERT { <urn:m:1> a mfo:FeedMessage ; nie:links <http://example.org/feed/1> }",
        [=] { tracker()->deleteMessage("urn:m:1", "urn:c:1"); },
        {"urn:c:1 a mfo:FeedChannel", "urn:c:1 nie:links http://example.org/feed/1"});

    row("a channel without link", "INSERT { <urn:c:1> a mfo:FeedChannel }", clean,
        {"urn:c:1 a mfo:FeedChannel"});
    row("an orphaned message without link", storedChannel("1") + "INSERT { <urn:m:1> a mfo:FeedMessage }",
        [=] { tracker()->deleteOrphans(); },
        {"http://example.org/feed/1 a nie:DataObject", "http://example.org/feed/1 " + time,
         "urn:c:1 a mfo:FeedChannel", "urn:c:1 nie:links http://example.org/feed/1",
         "urn:m:1 a mfo:FeedMessage"});
    row("an enclosure without local link",
        storedMessage("1", {})
            + "INSERT { <urn:e:1> a mfo:Enclosure ; mfo:remoteLink <urn:r> ; "
              "nie:isLogicalPartOf <urn:m:1> }",
        [=] {
            tracker()->deleteMessages(messageUris({"1"}));
            clean();
        },
        {"urn:e:1 a mfo:Enclosure", "urn:e:1 mfo:remoteLink urn:r", "urn:e:1 nie:isLogicalPartOf urn:m:1"});
    row("an image without remote link",
        storedChannel("1")
            + "INSERT { <urn:i> a mfo:Enclosure ; mfo:localLink <urn:l> ; "
              "nie:isLogicalPartOf <urn:c:1> }",
        clean, {"urn:i a mfo:Enclosure", "urn:i mfo:localLink urn:l", "urn:i nie:isLogicalPartOf urn:c:1"});
    row("link nodes of messages of a list", storedMessage("1", {}) + storedNode(link),
        [=] {
            tracker()->deleteMessages(messageUris({"1"}));
            clean();
        },
        {link + " a nie:DataObject", link + ' ' + time});
    row("link nodes of messages of a channel",
        storedChannel("1") + storedMessage("1", {"urn:c:1"}) + storedNode(link), clean,
        {link + " a nie:DataObject", link + ' ' + time});
    row("link nodes of enclosures",
        storedChannel("1") + storedMessage("1", {"urn:c:1"}) + storedEnclosure("1", {"urn:m:1"})
            + storedNode("http://example.org/1.ogg") + storedNode("file:///1.ogg"),
        clean,
        {"file:///1.ogg a nie:DataObject", "file:///1.ogg " + time,
         "http://example.org/1.ogg a nie:DataObject", "http://example.org/1.ogg " + time});
    row("a tag", storedMessage("1", {}, "nao:hasTag <urn:tag>") + "INSERT { <urn:tag> a nao:Tag }", clean,
        {"urn:tag a nao:Tag"});
}

void TestSharing::remainingResources()
{
    QFETCH(QString, stored);
    QFETCH(Operation, operation);
    QFETCH(QStringList, left);
    store().update(stored);
    operation();
    QCOMPARE(everythingIn(store()), left);
}

void TestSharing::nothingRemainsOfTheWholeArchive()
{
    const QTemporaryDir folder;
    QFile image(folder.filePath("image.png"));
    QVERIFY(image.open(QIODevice::WriteOnly));
    const FeedEnclosure shared = enclosure("http://example.org/shared.ogg", "file:///shared.ogg");
    QStringList uris;
    for (const char *name : {"a", "b"}) {
        FeedChannel channel;
        channel.setLink(QString("http://example.org/feed/%1").arg(name));
        channel.setTitle(name);
        channel.setType("rss");
        channel.setIcon(enclosure(QString("http://example.org/%1.png").arg(name), image.fileName()));
        channel.setUri(tracker()->addChannel(channel));
        QVERIFY(tracker()->updateChannel(channel));
        QVERIFY(tracker()->editChannel(channel.uri(),
                                       {{FeedTrackerSparql::LinkKey, channel.link() + "/moved"},
                                        {FeedTrackerSparql::TitleKey, "moved"}}));
        QVERIFY(tracker()->addMessages({message("http://example.org/shared", {shared}),
                                        message(QString("http://example.org/%1/1").arg(name), {shared}),
                                        message(QString())},
                                       channel.uri()));
        uris.append(channel.uri());
    }
    QCOMPARE(tracker()->deletableMessageCount(uris.first()), 3);
    tracker()->deleteAllChannels();
    QCOMPARE(everythingIn(store()), QStringList());
    QVERIFY(!image.exists());
}

QTEST_GUILESS_MAIN(TestSharing)
#include "tst_sharing.moc"
