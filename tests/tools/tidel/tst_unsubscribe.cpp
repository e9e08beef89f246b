// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <commands.h>

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace Tidel;

class TestUnsubscribe : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsLeft();
    void otherChannelsStay();
    void sharedMessageStays();
    void sharedEnclosureStays();
    void favoritesAreDeleted();
    void favoritesAreKept();
    void keptFavoritesComeBack();
    void severalChannels();
    void dryRun();
    void dryRunAsJson();
    void feedStateIsDeleted();
    void downloadedFiles();
    void unknownChannel();
    void ambiguousTitle();
    void noCostlyQueries();
    void failures();
    void failuresWithKeptFavorites();
    void failuresOfDryRun();

private:
    void addImage(const QString &channelUri, const QString &path) const;
};

void TestUnsubscribe::addImage(const QString &channelUri, const QString &path) const
{
    FeedEnclosure image;
    image.setRemoteUrl(linkOf("image.png"));
    image.setLocalUrl(path);
    QVERIFY(tracker()->addEnclosures({image}, channelUri));
}

void TestUnsubscribe::nothingIsLeft()
{
    const QString uri = addChannel(
        "News",
        {message("a", day(1), {"a.ogg", "same.ogg"}), message("b", day(2), {"same.ogg"}), message("c")});
    addImage(uri, "/nowhere/image.png");
    const CommandResult result = runCommand(unsubscribeCommand, {"News"});
    QCOMPARE(result.err, QString());
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString("Unsubscribed: News\n"));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestUnsubscribe::otherChannelsStay()
{
    addChannel("Radio", {message("a", day(1), {"a.ogg"})});
    const QStringList before = everythingIn(store());
    addChannel("News", {message("b", day(1), {"b.ogg"})});
    QVERIFY(runCommand(unsubscribeCommand, {linkOf("News")}).isFine);
    QCOMPARE(everythingIn(store()), before);
}

void TestUnsubscribe::sharedMessageStays()
{
    addChannel("Radio", {message("a", day(1), {"a.ogg"})});
    const QStringList before = everythingIn(store());
    addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(1), {"b.ogg"})});
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(runCommand(unsubscribeCommand, {"Radio"}).isFine);
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestUnsubscribe::sharedEnclosureStays()
{
    const QString radio = addChannel("Radio", {message("a", day(1), {"same.ogg"})});
    addChannel("News", {message("b", day(1), {"same.ogg"})});
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    QCOMPARE(store().count("?e a mfo:Enclosure ; nie:isLogicalPartOf ?m . ?m nie:title 'a'"), 1);
    QVERIFY(runCommand(unsubscribeCommand, {radio}).isFine);
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestUnsubscribe::favoritesAreDeleted()
{
    addChannel("News", {message("a", day(1))});
    addFavorite("a");
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestUnsubscribe::favoritesAreKept()
{
    addChannel("Radio", {message("shared", day(1))});
    addChannel("News",
               {message("a", day(1), {"a.ogg"}), message("b", day(2), {"b.ogg"}), message("shared", day(1))});
    addFavorite("a");
    addFavorite("shared");
    const CommandResult result = runCommand(unsubscribeCommand, {"News"}, {{"keep-favorites", ""}});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.out, QString("Unsubscribed: News\n"));
    QCOMPARE(store().texts("SELECT ?t { ?m a mfo:FeedMessage ; nie:title ?t } ORDER BY ?t"),
             QStringList({"a", "shared"}));
    QCOMPARE(store().texts("SELECT ?l { ?e a mfo:Enclosure ; mfo:remoteLink ?l }"),
             QStringList(linkOf("a.ogg")));
    // Cleaning up leaves it; lists show it.
    QCOMPARE(runCommand(cleanCommand, {}).out, QString("Nothing to clean\n"));
    const CommandResult list = runCommand(messagesCommand, {}, {{"favorites", ""}});
    QVERIFY2(list.out.contains("  a "), qPrintable(list.out + list.err));
    QVERIFY(runCommand(unsubscribeCommand, {"Radio"}).isFine);
    QVERIFY(runCommand(unfavoriteCommand, {linkOf("a")}).isFine);
    QCOMPARE(runCommand(cleanCommand, {}).out, QString("Deleted: 1 message, 1 enclosure, 0 files\n"));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestUnsubscribe::keptFavoritesComeBack()
{
    addChannel("News", {message("a", day(1)), message("b", day(2))});
    addFavorite("a");
    QVERIFY(runCommand(unsubscribeCommand, {"News"}, {{"keep-favorites", ""}}).isFine);
    const QString again = addChannel("News", {message("a", day(1)), message("b", day(2))});
    QCOMPARE(titles(again), QStringList({"a", "b"}));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 2);
    QCOMPARE(store().count("?m nao:hasTag nao:predefined-tag-favorite"), 1);
}

void TestUnsubscribe::severalChannels()
{
    addChannel("News", {message("a")});
    addChannel("Radio", {message("b")});
    const CommandResult result = runCommand(unsubscribeCommand, {"News", linkOf("Radio"), "News"});
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString("Unsubscribed: News\nUnsubscribed: Radio\n"));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestUnsubscribe::dryRun()
{
    addChannel("Radio", {message("shared", day(1)), message("c", day(1), {"same.ogg"})});
    addChannel("News",
               {message("a", day(1), {"a.ogg", "same.ogg"}), message("b", day(2), {"b.ogg", "missing.ogg"}),
                message("shared", day(1))});
    addFavorite("a");
    QDir folder(home() + "/Downloads/tidel");
    QVERIFY(folder.mkpath("."));
    for (const char *name : {"a.ogg", "b.ogg", "same.ogg"}) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        setLocalUrl(name, QUrl::fromLocalFile(file.fileName()).toString());
    }
    setLocalUrl("missing.ogg", QUrl::fromLocalFile(folder.filePath("missing.ogg")).toString());
    const QStringList before = everythingIn(store());
    QCOMPARE(runCommand(unsubscribeCommand, {"News"}, {{"dry-run", ""}}).out,
             QString("News: would delete 2 messages, 1 favorite among them, 2 files\n"));
    QCOMPARE(runCommand(unsubscribeCommand, {"News"}, {{"dry-run", ""}, {"keep-favorites", ""}}).out,
             QString("News: would delete 1 message, 1 file\n"));
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    QCOMPARE(folder.entryList(QDir::Files), QStringList("same.ogg"));
}

void TestUnsubscribe::dryRunAsJson()
{
    const QString uri = addChannel("News", {message("a")});
    QCOMPARE(runCommand(unsubscribeCommand, {"News"}, {{"dry-run", ""}, {"json", ""}}).out,
             QString("{\"favorites\":0,\"files\":0,\"link\":\"https://example.org/News\","
                     "\"title\":\"News\",\"uri\":\"%1\",\"wouldDelete\":1}\n")
                 .arg(uri));
}

void TestUnsubscribe::feedStateIsDeleted()
{
    const QString uri = addChannel("News");
    store().update("INSERT DATA { <" + uri
                   + "> tidel:entityTag 'a' ; tidel:lastModified 'b' ; tidel:droppedLink 'c' , 'd' }");
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestUnsubscribe::downloadedFiles()
{
    addChannel("News", {message("a", day(1), {"a.ogg", "same.ogg"})});
    addChannel("Radio", {message("b", day(1), {"same.ogg"})});
    QDir folder(home() + "/Downloads/tidel");
    QVERIFY(folder.mkpath("."));
    const QStringList names{"a.ogg", "same.ogg"};
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        setLocalUrl(name, QUrl::fromLocalFile(file.fileName()).toString());
    }
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    QCOMPARE(folder.entryList(QDir::Files), QStringList("same.ogg"));
    QVERIFY(runCommand(unsubscribeCommand, {"Radio"}).isFine);
    QCOMPARE(folder.entryList(QDir::Files), QStringList());
}

void TestUnsubscribe::unknownChannel()
{
    addChannel("News", {message("a")});
    const QStringList before = everythingIn(store());
    for (const QString &name : {QString("Nowhere"), linkOf("a"), QString(), QString("> } #")}) {
        const CommandResult result = runCommand(unsubscribeCommand, {name});
        QVERIFY(!result.isFine);
        QCOMPARE(result.out, QString());
        QCOMPARE(result.err, "tidel: " + name + ": no such channel; \"tidel channels\" lists the channels\n");
    }
    QCOMPARE(everythingIn(store()), before);
}

void TestUnsubscribe::ambiguousTitle()
{
    const QString news = addChannel("News");
    const QString radio = addChannel("Radio");
    QVERIFY(tracker()->editChannel(radio, {{FeedTrackerSparql::TitleKey, "News"}}));
    const QStringList before = everythingIn(store());
    const CommandResult result = runCommand(unsubscribeCommand, {"News"});
    QVERIFY(!result.isFine);
    QCOMPARE(
        result.err,
        QString("tidel: News: 2 channels have such a title; use a number, a longer part of the title or a "
                "link\n  1  News  https://example.org/News\n  2  News  https://example.org/Radio\n"));
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(runCommand(unsubscribeCommand, {linkOf("Radio")}).isFine);
    QCOMPARE(tracker()->allChannelUrls(), QStringList(news));
}

void TestUnsubscribe::noCostlyQueries()
{
    addChannel("Radio", {message("shared", day(1))});
    addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2)), message("shared", day(1))});
    StatementGate::reset();
    QVERIFY(runCommand(unsubscribeCommand, {"News"}, {{"dry-run", ""}}).isFine);
    QVERIFY(runCommand(unsubscribeCommand, {"News"}, {{"keep-favorites", ""}}).isFine);
    QCOMPARE(costlyQueries(), QStringList());
}

void TestUnsubscribe::failures()
{
    QString radio;
    const auto fill = [&] {
        const QString news = addChannel("News", {message("a", day(1), {"a.ogg"}), message("shared", day(2))});
        radio = addChannel("Radio", {message("shared", day(2))});
        addImage(news, "/nowhere/image.png");
    };
    const auto check = [&] {
        QCOMPARE(titles(radio), QStringList("shared"));
        // A channel that is deleted in part can still be deleted.
        if (tracker()->allChannelUrls().size() > 1)
            QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
        QVERIFY(runCommand(cleanCommand, {}).isFine);
        QCOMPARE(store().texts("SELECT ?t { ?m a mfo:FeedMessage ; nie:title ?t }"), QStringList("shared"));
        QCOMPARE(store().count("?e a mfo:Enclosure"), 0);
        QCOMPARE(tracker()->allChannelUrls(), QStringList(radio));
    };
    failEverywhere(unsubscribeCommand, {"News"}, {}, fill, check);
}

void TestUnsubscribe::failuresWithKeptFavorites()
{
    const auto fill = [&] {
        addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2))});
        addFavorite("a");
    };
    const auto check = [&] {
        if (!tracker()->allChannelUrls().isEmpty())
            QVERIFY(runCommand(unsubscribeCommand, {"News"}, {{"keep-favorites", ""}}).isFine);
        QVERIFY(runCommand(cleanCommand, {}).isFine);
        QCOMPARE(store().texts("SELECT ?t { ?m a mfo:FeedMessage ; nie:title ?t }"), QStringList("a"));
        QCOMPARE(store().count("?e a mfo:Enclosure"), 1);
    };
    failEverywhere(unsubscribeCommand, {"News"}, {{"keep-favorites", ""}}, fill, check);
}

void TestUnsubscribe::failuresOfDryRun()
{
    QStringList before;
    const auto fill = [&] {
        addChannel("News", {message("a", day(1), {"a.ogg"})});
        QVERIFY(QDir().mkpath(home() + "/Downloads/tidel"));
        QFile file(home() + "/Downloads/tidel/a.ogg");
        QVERIFY(file.open(QIODevice::WriteOnly));
        setLocalUrl("a.ogg", QUrl::fromLocalFile(file.fileName()).toString());
        before = everythingIn(store());
    };
    failEverywhere(unsubscribeCommand, {"News"}, {{"dry-run", ""}}, fill,
                   [&] { QCOMPARE(everythingIn(store()), before); });
}

QTEST_GUILESS_MAIN(TestUnsubscribe)
#include "tst_unsubscribe.moc"
