// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <commands.h>

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace Tidel;

namespace {

CommandResult pruned(const QStringList &names, int keep)
{
    return runCommand(pruneCommand, names, {{"keep", QString::number(keep)}, {"include-unread", QString()}});
}

CommandResult dryRun(const QStringList &names, int keep)
{
    return runCommand(
        pruneCommand, names,
        {{"keep", QString::number(keep)}, {"include-unread", QString()}, {"dry-run", QString()}});
}

QStringList links(const QStringList &names)
{
    QStringList links;
    for (const QString &name : names)
        links.append(linkOf(name));
    links.sort();
    return links;
}

} // namespace

class TestPrune : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void misuse_data();
    void misuse();
    void newestAreKept();
    void undatedAreDeletedFirst();
    void firstDownloadedIsDeletedFirst();
    void favoritesAreKeptInAddition();
    void unreadMessagesAreKept();
    void olderThan();
    void eitherBound();
    void rememberedRules();
    void rulesAreForgotten();
    void dryRunRemembersNothing();
    void noRule();
    void rulesAsJson();
    void otherTagsDoNotProtect();
    void keepNone();
    void nothingToDelete();
    void emptyStore();
    void severalChannels();
    void unknownChannel();
    void dryRunListsMessages();
    void sharedMessageStaysInOtherChannel();
    void messageOfAllChannels();
    void enclosuresAreDeletedWithMessages();
    void sharedEnclosureStays();
    void imageOfAChannelStays();
    void droppedLinksAreStored();
    void manyMessages();
    void downloadedFiles();
    void noCostlyQueries();
    void failures();
    void failuresOfDryRun();
    void failureDoesNotStopNextChannel();
};

void TestPrune::misuse_data()
{
    QTest::addColumn<Options>("options");
    QTest::addColumn<QString>("misuse");
    const QString noNumber = "--keep needs a number of messages, 0 or more, or \"all\"";
    const QString noDays = "--older-than needs a number of days such as 90d";
    const QString noRule = "give a rule: --keep N or --older-than 90d";
    const QString tooMuch = "--rules and --forget delete no messages; leave out the other options";
    const QString all = "--keep all keeps everything; leave out --older-than and --include-unread";
    const auto add = [](const char *name, const Options &options, const QString &misuse = {}) {
        QTest::newRow(name) << options << misuse;
    };
    add("nothing", {});
    add("dry run alone", {{"dry-run", ""}});
    add("empty", {{"keep", ""}}, noNumber);
    add("word", {{"keep", "ten"}}, noNumber);
    add("unit", {{"keep", "3d"}}, noNumber);
    add("fraction", {{"keep", "1.5"}}, noNumber);
    add("negative", {{"keep", "-1"}}, noNumber);
    add("too large", {{"keep", "1000000000"}}, noNumber);
    add("0", {{"keep", "0"}});
    add("3, dry", {{"keep", "3"}, {"dry-run", ""}});
    add("largest", {{"keep", "999999999"}});
    add("all", {{"keep", "all"}, {"remember", ""}});
    add("all but old ones", {{"keep", "all"}, {"older-than", "3d"}}, all);
    add("days", {{"older-than", "90d"}});
    add("days without unit", {{"older-than", "90"}}, noDays);
    add("a date", {{"older-than", "2026-11-03"}}, noDays);
    add("both", {{"older-than", "90d"}, {"keep", "5"}, {"include-unread", ""}});
    add("remember what", {{"remember", ""}}, noRule);
    add("unread alone", {{"include-unread", ""}}, noRule);
    add("rules", {{"rules", ""}});
    add("forget", {{"forget", ""}});
    add("forget and delete", {{"forget", ""}, {"keep", "5"}}, tooMuch);
    add("dry rules", {{"rules", ""}, {"dry-run", ""}}, tooMuch);
}

void TestPrune::misuse()
{
    QFETCH(Options, options);
    QTEST(pruneCommand.misuse({{}, options}), "misuse");
}

void TestPrune::newestAreKept()
{
    const QString uri = addChannel("News",
                                   {message("c", day(3)), message("a", day(1)), message("e", day(5)),
                                    message("b", day(2)), message("d", day(4))});
    const CommandResult result = pruned({"News"}, 2);
    QCOMPARE(result.err, QString());
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString("News: deleted 3 messages, 0 files\n"));
    QCOMPARE(titles(uri), QStringList({"d", "e"}));
    QCOMPARE(pruned({"News"}, 1).out, QString("News: deleted 1 message, 0 files\n"));
    QCOMPARE(titles(uri), QStringList("e"));
}

void TestPrune::undatedAreDeletedFirst()
{
    const QString uri =
        addChannel("News", {message("old", day(1)), message("undated"), message("new", day(2))});
    QVERIFY(pruned({"News"}, 2).isFine);
    QCOMPARE(titles(uri), QStringList({"new", "old"}));
}

void TestPrune::firstDownloadedIsDeletedFirst()
{
    const QString uri = addChannel("News",
                                   {message("second", day(1)), message("first", day(1)),
                                    message("third", day(1)), message("undated 2"), message("undated 1")});
    const QStringList downloads{"first", "undated 1", "second", "undated 2", "third"};
    for (int i = 0; i < downloads.size(); ++i) {
        const QString message = QString("?m a mfo:FeedMessage ; nie:title '%1'").arg(downloads.at(i));
        store().update("DELETE { ?m mfo:downloadedTime ?t } WHERE { " + message
                       + " ; mfo:downloadedTime ?t }");
        store().update(QString("INSERT { ?m mfo:downloadedTime '2026-11-20T10:00:0%1Z' } WHERE { %2 }")
                           .arg(QString::number(i), message));
    }
    QVERIFY(pruned({"News"}, 4).isFine);
    QCOMPARE(titles(uri), QStringList({"first", "second", "third", "undated 2"}));
    QVERIFY(pruned({"News"}, 2).isFine);
    QCOMPARE(titles(uri), QStringList({"second", "third"}));
    QVERIFY(pruned({"News"}, 1).isFine);
    QCOMPARE(titles(uri), QStringList("third"));
}

void TestPrune::favoritesAreKeptInAddition()
{
    const QString uri = addChannel(
        "News", {message("a", day(1)), message("b", day(2)), message("c", day(3)), message("d", day(4))});
    addFavorite("a");
    addFavorite("d");
    store().update("INSERT DATA { <urn:tag> a nao:Tag }");
    store().update("INSERT { ?m nao:hasTag <urn:tag> } WHERE { ?m a mfo:FeedMessage ; nie:title 'a' }");
    QVERIFY(pruned({"News"}, 1).isFine);
    QCOMPARE(titles(uri), QStringList({"a", "c", "d"}));
    QVERIFY(pruned({"News"}, 0).isFine);
    QCOMPARE(titles(uri), QStringList({"a", "d"}));
    QCOMPARE(pruned({"News"}, 0).out, QString("News: nothing to delete\n"));
}

void TestPrune::unreadMessagesAreKept()
{
    const QString uri = addChannel(
        "News", {message("a", day(1)), message("b", day(2)), message("c", day(3)), message("d", day(4))});
    markRead("b");
    markRead("d");
    // The newest two are c and d, read or not.
    const CommandResult result = runCommand(pruneCommand, {"News"}, {{"keep", "2"}});
    QCOMPARE(result.out, QString("News: deleted 1 message, 0 files\n"));
    QCOMPARE(titles(uri), QStringList({"a", "c", "d"}));
    QCOMPARE(runCommand(pruneCommand, {"News"}, {{"keep", "2"}}).out, QString("News: nothing to delete\n"));
    QVERIFY(pruned({"News"}, 2).isFine);
    QCOMPARE(titles(uri), QStringList({"c", "d"}));
}

void TestPrune::olderThan()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QString uri = addChannel("News",
                                   {message("old", now.addDays(-11)), message("unread", now.addDays(-12)),
                                    message("new", now.addDays(-9)), message("undated")});
    for (const char *name : {"old", "new", "undated"})
        markRead(name);
    const CommandResult result = runCommand(pruneCommand, {}, {{"older-than", "10d"}});
    QCOMPARE(result.out, QString("News: deleted 1 message, 0 files\n"));
    QCOMPARE(titles(uri), QStringList({"new", "undated", "unread"}));
    // A message without a date is as old as its download.
    store().update("DELETE { ?m mfo:downloadedTime ?t } INSERT { ?m mfo:downloadedTime "
                   "'2020-01-01T10:00:00Z' } WHERE { ?m nie:title 'undated' ; mfo:downloadedTime ?t }");
    QVERIFY(runCommand(pruneCommand, {}, {{"older-than", "10d"}, {"include-unread", ""}}).isFine);
    QCOMPARE(titles(uri), QStringList("new"));
    QCOMPARE(dropped(uri), links({"old", "undated", "unread"}));
}

void TestPrune::eitherBound()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QString uri = addChannel("News",
                                   {message("a", now.addDays(-30)), message("b", now.addDays(-20)),
                                    message("c", now.addDays(-2)), message("d", now.addDays(-1))});
    const Options either{{"keep", "3"}, {"older-than", "10d"}, {"include-unread", ""}};
    QCOMPARE(runCommand(pruneCommand, {}, either).out, QString("News: deleted 2 messages, 0 files\n"));
    QCOMPARE(titles(uri), QStringList({"c", "d"}));
    QVERIFY(
        runCommand(pruneCommand, {}, {{"keep", "1"}, {"older-than", "10d"}, {"include-unread", ""}}).isFine);
    QCOMPARE(titles(uri), QStringList("d"));
}

void TestPrune::rememberedRules()
{
    const QList<FeedMessage> three{message("a", day(1)), message("b", day(2)), message("c", day(3))};
    const QString news = addChannel("News", three);
    const QString radio =
        addChannel("Radio", {message("d", day(1)), message("e", day(2)), message("f", day(3))});
    const QString kept =
        addChannel("Kept", {message("g", day(1)), message("h", day(2)), message("i", day(3))});
    QVERIFY(runCommand(pruneCommand, {"Kept"}, {{"keep", "all"}, {"remember", ""}}).isFine);
    QVERIFY(runCommand(pruneCommand, {"Radio"}, {{"keep", "2"}, {"include-unread", ""}, {"remember", ""}})
                .isFine);
    QCOMPARE(titles(radio), QStringList({"e", "f"}));
    // A rule for all prunes all, and is used later where a channel has none.
    QVERIFY(runCommand(pruneCommand, {}, {{"keep", "3"}, {"remember", ""}}).isFine);
    QVERIFY(runCommand(pruneCommand, {}, {{"keep", "9"}, {"include-unread", ""}, {"remember", ""}}).isFine);
    QCOMPARE(runCommand(pruneCommand, {}, {{"rules", ""}}).out,
             QString("All other channels: keeps the newest 9, unread messages too\nKept: keeps all\n"
                     "Radio: keeps the newest 2, unread messages too\n"));
    QVERIFY(runCommand(pruneCommand, {"News"}, {{"keep", "1"}, {"remember", ""}}).isFine);
    QCOMPARE(titles(news).size(), 3);
    for (const char *name : {"a", "b", "c", "g", "h"})
        markRead(name);
    QVERIFY(tracker()->addMessages({message("j", day(4))}, radio));
    QCOMPARE(runCommand(pruneCommand, {}, {}).out,
             QString("News: deleted 2 messages, 0 files\n"
                     "Radio: deleted 1 message, 0 files\n"));
    QCOMPARE(titles(news), QStringList("c"));
    QCOMPARE(titles(radio), QStringList({"f", "j"}));
    QCOMPARE(titles(kept).size(), 3);
}

void TestPrune::rulesAreForgotten()
{
    addChannel("News");
    const QStringList before = everythingIn(store());
    QVERIFY(runCommand(pruneCommand, {"News"}, {{"older-than", "90d"}, {"remember", ""}}).isFine);
    QVERIFY(runCommand(pruneCommand, {}, {{"keep", "5"}, {"older-than", "90d"}, {"remember", ""}}).isFine);
    QCOMPARE(runCommand(pruneCommand, {}, {{"forget", ""}}).out, QString("All channels: rule forgotten\n"));
    QCOMPARE(runCommand(pruneCommand, {}, {{"rules", ""}}).out,
             QString("News: deletes what is older than 90 days, keeps unread messages\n"));
    QCOMPARE(runCommand(pruneCommand, {"News"}, {{"forget", ""}}).out, QString("News: rule forgotten\n"));
    QCOMPARE(runCommand(pruneCommand, {}, {{"rules", ""}}).err,
             QString("No rules are remembered; \"tidel prune --keep 100 --remember\" adds one.\n"));
    // The rule of a channel goes with it.
    QVERIFY(runCommand(pruneCommand, {"News"}, {{"older-than", "90d"}, {"remember", ""}}).isFine);
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    QCOMPARE(store().count("?x tidel:retention ?rule"), 0);
}

void TestPrune::dryRunRemembersNothing()
{
    addChannel("News", {message("a", day(1))});
    const QStringList before = everythingIn(store());
    QVERIFY(runCommand(pruneCommand, {},
                       {{"keep", "0"}, {"include-unread", ""}, {"remember", ""}, {"dry-run", ""}})
                .isFine);
    QCOMPARE(everythingIn(store()), before);
}

void TestPrune::noRule()
{
    const QString uri = addChannel("News", {message("a", day(1))});
    markRead("a");
    const CommandResult result = runCommand(pruneCommand, {}, {});
    QVERIFY(!result.isFine);
    QCOMPARE(
        result.err,
        QString("tidel: no rule is remembered; give --keep N or --older-than 90d, and --remember for the "
                "next time\n"));
    QCOMPARE(titles(uri), QStringList("a"));
}

void TestPrune::rulesAsJson()
{
    const QString uri = addChannel("News");
    QVERIFY(runCommand(pruneCommand, {"News"},
                       {{"keep", "5"}, {"older-than", "90d"}, {"include-unread", ""}, {"remember", ""}})
                .isFine);
    QVERIFY(runCommand(pruneCommand, {}, {{"keep", "7"}, {"remember", ""}}).isFine);
    QCOMPARE(runCommand(pruneCommand, {}, {{"rules", ""}, {"json", ""}}).out,
             QString("{\"includesUnread\":false,\"keep\":7}\n"
                     "{\"includesUnread\":true,\"keep\":5,\"link\":\"https://example.org/News\","
                     "\"olderThan\":\"90d\",\"title\":\"News\",\"uri\":\"%1\"}\n")
                 .arg(uri));
}

void TestPrune::otherTagsDoNotProtect()
{
    const QString uri = addChannel("News", {message("a", day(1)), message("b", day(2))});
    store().update("INSERT DATA { <urn:tag:1> a nao:Tag . <urn:tag:2> a nao:Tag }");
    store().update("INSERT { ?m nao:hasTag <urn:tag:1> , <urn:tag:2> } WHERE { ?m a mfo:FeedMessage }");
    QCOMPARE(pruned({"News"}, 1).out, QString("News: deleted 1 message, 0 files\n"));
    QCOMPARE(titles(uri), QStringList("b"));
}

void TestPrune::keepNone()
{
    const QString uri = addChannel("News", {message("a", day(1)), message("b")});
    QCOMPARE(pruned({"News"}, 0).out, QString("News: deleted 2 messages, 0 files\n"));
    QCOMPARE(titles(uri), QStringList());
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
}

void TestPrune::nothingToDelete()
{
    addChannel("News", {message("a", day(1)), message("b", day(2))});
    addChannel("Silence");
    const QStringList before = everythingIn(store());
    for (int keep : {2, 3, 2147483647}) {
        const CommandResult result = pruned({}, keep);
        QVERIFY(result.isFine);
        QCOMPARE(result.out, QString("2 channels: nothing to delete\n"));
        QCOMPARE(dryRun({}, keep).out, result.out);
    }
    QCOMPARE(everythingIn(store()), before);
}

void TestPrune::emptyStore()
{
    const CommandResult result = pruned({}, 1);
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains("tidel subscribe"), qPrintable(result.err));
}

void TestPrune::severalChannels()
{
    const QString news = addChannel("News", {message("a", day(1)), message("b", day(2))});
    const QString radio =
        addChannel("Radio", {message("c", day(1)), message("d", day(2)), message("e", day(3))});
    const QString other = addChannel("Other", {message("f", day(1)), message("g", day(2))});
    QCOMPARE(pruned({"Radio", "News", "Radio"}, 1).out,
             QString("Radio: deleted 2 messages, 0 files\nNews: deleted 1 message, 0 files\n"));
    QCOMPARE(titles(news), QStringList("b"));
    QCOMPARE(titles(radio), QStringList("e"));
    QCOMPARE(titles(other), QStringList({"f", "g"}));
    QCOMPARE(pruned({}, 1).out, QString("Other: deleted 1 message, 0 files\n"));
    QCOMPARE(titles(other), QStringList("g"));
}

void TestPrune::unknownChannel()
{
    const QString uri = addChannel("News", {message("a", day(1)), message("b", day(2))});
    const CommandResult result = pruned({"Nowhere", linkOf("News")}, 1);
    QVERIFY(!result.isFine);
    QCOMPARE(result.err, QString("tidel: Nowhere: no such channel; \"tidel channels\" lists the channels\n"));
    QCOMPARE(titles(uri), QStringList("b"));
}

void TestPrune::dryRunListsMessages()
{
    addChannel("News",
               {message("a", day(1)), message("b", day(2)), message("c", day(3)), message("undated")});
    addChannel("Radio", {message("a", day(1)), message("d", day(2))});
    const QStringList before = everythingIn(store());
    const CommandResult dry = dryRun({}, 1);
    QVERIFY(dry.isFine);
    QCOMPARE(dry.out,
             QString("News: would delete 3 messages\n  (no date)  undated\n  2026-11-01 17:30  a\n"
                     "  2026-11-02 17:30  b\nRadio: would delete 1 message\n  2026-11-01 17:30  a\n"));
    QCOMPARE(everythingIn(store()), before);
    QCOMPARE(pruned({}, 1).out,
             QString("News: deleted 3 messages, 0 files\nRadio: deleted 1 message, 0 files\n"));
    QCOMPARE(store().texts("SELECT ?t { ?m a mfo:FeedMessage ; nie:title ?t } ORDER BY ?t"),
             QStringList({"c", "d"}));
}

void TestPrune::sharedMessageStaysInOtherChannel()
{
    const QString news = addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2))});
    const QString radio = addChannel("Radio", {message("a", day(1))});
    QCOMPARE(pruned({"News"}, 1).out, QString("News: deleted 1 message, 0 files\n"));
    QCOMPARE(titles(news), QStringList("b"));
    QCOMPARE(titles(radio), QStringList("a"));
    QCOMPARE(store().count("?e a mfo:Enclosure"), 1);
    QCOMPARE(dropped(news), links({"a"}));
    QCOMPARE(dropped(radio), QStringList());
}

void TestPrune::messageOfAllChannels()
{
    addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2))});
    addChannel("Radio", {message("a", day(1)), message("b", day(2))});
    QVERIFY(pruned({}, 0).isFine);
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 0);
    QCOMPARE(store().count("?e a mfo:Enclosure"), 0);
}

void TestPrune::enclosuresAreDeletedWithMessages()
{
    addChannel("News",
               {message("a", day(1), {"a.ogg", "a.pdf"}), message("b", day(2), {"b.ogg"}),
                message("c", day(3), {"c.ogg"})});
    QVERIFY(pruned({"News"}, 1).isFine);
    QCOMPARE(store().texts("SELECT ?l { ?e a mfo:Enclosure ; mfo:remoteLink ?l }"), links({"c.ogg"}));
}

void TestPrune::sharedEnclosureStays()
{
    addChannel("News", {message("a", day(1), {"same.ogg"}), message("b", day(2), {"same.ogg"})});
    QVERIFY(pruned({"News"}, 1).isFine);
    QCOMPARE(store().count("?e a mfo:Enclosure ; nie:isLogicalPartOf ?m . ?m nie:title 'b'"), 1);
    QVERIFY(pruned({"News"}, 0).isFine);
    QCOMPARE(store().count("?e a mfo:Enclosure"), 0);
}

void TestPrune::imageOfAChannelStays()
{
    const QString radio = addChannel("Radio");
    addChannel("News", {message("a", day(1), {"a.png", "b.png"})});
    FeedEnclosure image;
    image.setRemoteUrl(linkOf("a.png"));
    QVERIFY(tracker()->addEnclosures({image}, radio));
    QVERIFY(pruned({"News"}, 0).isFine);
    QCOMPARE(store().texts("SELECT ?l { ?e a mfo:Enclosure ; mfo:remoteLink ?l }"), links({"a.png"}));
}

void TestPrune::droppedLinksAreStored()
{
    const QString uri =
        addChannel("News", {message("a", day(1)), message("b", day(2)), message("c", day(3))});
    QVERIFY(pruned({"News"}, 2).isFine);
    QCOMPARE(dropped(uri), links({"a"}));
    QVERIFY(pruned({"News"}, 1).isFine);
    QCOMPARE(dropped(uri), links({"a", "b"}));
}

void TestPrune::manyMessages()
{
    QList<FeedMessage> messages;
    for (int i = 0; i < 1102; ++i)
        messages.append(message(QString::number(i), day(1).addSecs(60 * i),
                                i % 100 == 0 ? QStringList(QString("%1.ogg").arg(i)) : QStringList()));
    const QString uri = addChannel("News", messages);
    QCOMPARE(dryRun({"News"}, 1).out.count('\n'), 1102);
    const CommandResult result = pruned({"News"}, 1);
    QCOMPARE(result.out, QString("News: deleted 1101 messages, 0 files\n"));
    QVERIFY(result.isFine);
    QCOMPARE(titles(uri), QStringList("1101"));
    QCOMPARE(dropped(uri).size(), 1101);
    QCOMPARE(store().count("?e a mfo:Enclosure"), 0);
}

void TestPrune::downloadedFiles()
{
    addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2), {"b.ogg"})});
    const QString folder = home() + "/Downloads/tidel";
    QVERIFY(QDir().mkpath(folder));
    for (const char *name : {"a.ogg", "b.ogg"}) {
        QFile file(folder + '/' + QString(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        setLocalUrl(name, QUrl::fromLocalFile(file.fileName()).toString());
    }
    QVERIFY(dryRun({"News"}, 0).isFine);
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList({"a.ogg", "b.ogg"}));
    QCOMPARE(pruned({"News"}, 1).out, QString("News: deleted 1 message, 1 file\n"));
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList("b.ogg"));
}

void TestPrune::noCostlyQueries()
{
    addChannel("Radio", {message("shared", day(1))});
    addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2)), message("shared", day(1))});
    StatementGate::reset();
    QVERIFY(dryRun({"News"}, 0).isFine);
    QVERIFY(pruned({"News"}, 0).isFine);
    QCOMPARE(costlyQueries(), QStringList());
}

void TestPrune::failures()
{
    QString news;
    QString radio;
    const auto fill = [&] {
        news = addChannel("News",
                          {message("a", day(1), {"a.ogg"}), message("b", day(2)), message("shared", day(3)),
                           message("d", day(4)), message("e", day(5))});
        radio = addChannel("Radio", {message("shared", day(3))});
        addFavorite("b");
    };
    const auto check = [&] {
        // Messages to keep are still in the channel. The links of deleted messages are stored.
        const QStringList left = titles(news);
        for (const char *name : {"b", "d", "e"})
            QVERIFY2(left.contains(name), qPrintable(left.join(' ')));
        for (const char *name : {"a", "shared"})
            QVERIFY2(left.contains(name) || dropped(news).contains(linkOf(name)), name);
        QCOMPARE(titles(radio), QStringList("shared"));
        // A second run completes the first one.
        QVERIFY(pruned({"News"}, 2).isFine);
        QVERIFY(runCommand(cleanCommand, {}).isFine);
        QCOMPARE(titles(news), QStringList({"b", "d", "e"}));
        QCOMPARE(dropped(news), links({"a", "shared"}));
        QCOMPARE(store().count("?e a mfo:Enclosure"), 0);
    };
    failEverywhere(pruneCommand, {"News"}, {{"keep", "2"}, {"include-unread", ""}}, fill, check);
}

void TestPrune::failuresOfDryRun()
{
    QStringList before;
    const auto fill = [&] {
        addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2))});
        before = everythingIn(store());
    };
    failEverywhere(pruneCommand, {}, {{"keep", "1"}, {"include-unread", ""}, {"dry-run", ""}}, fill,
                   [&] { QCOMPARE(everythingIn(store()), before); });
}

void TestPrune::failureDoesNotStopNextChannel()
{
    const QString news = addChannel("News", {message("a", day(1)), message("b", day(2))});
    const QString radio =
        addChannel("Radio", {message("c", day(1), {"c.ogg"}), message("d", day(2)), message("e", day(3))});
    StatementGate::setJudge([&](const QString &statement) {
        return statement.startsWith("INSERT") && statement.contains(news) ? StatementGate::Refuse
                                                                          : StatementGate::Pass;
    });
    const CommandResult result = pruned({}, 1);
    QVERIFY(!result.isFine);
    QVERIFY2(result.err.startsWith("tidel: News: could not delete messages from the store: ")
                 && result.err.count('\n') == 1,
             qPrintable(result.err));
    QCOMPARE(result.out, QString("Radio: deleted 2 messages, 0 files\n"));
    QCOMPARE(titles(news), QStringList({"a", "b"}));
    QCOMPARE(titles(radio), QStringList("e"));
}

QTEST_GUILESS_MAIN(TestPrune)
#include "tst_prune.moc"
