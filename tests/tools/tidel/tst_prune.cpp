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
    return runCommand(pruneCommand, names, {{"keep", QString::number(keep)}});
}

CommandResult dryRun(const QStringList &names, int keep)
{
    return runCommand(pruneCommand, names, {{"keep", QString::number(keep)}, {"dry-run", QString()}});
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
    QTest::addColumn<bool>("isFine");
    QTest::newRow("nothing") << Options() << false;
    QTest::newRow("dry run alone") << Options{{"dry-run", ""}} << false;
    QTest::newRow("empty") << Options{{"keep", ""}} << false;
    QTest::newRow("word") << Options{{"keep", "ten"}} << false;
    QTest::newRow("unit") << Options{{"keep", "3d"}} << false;
    QTest::newRow("fraction") << Options{{"keep", "1.5"}} << false;
    QTest::newRow("negative") << Options{{"keep", "-1"}} << false;
    QTest::newRow("too large") << Options{{"keep", "2147483648"}} << false;
    QTest::newRow("0") << Options{{"keep", "0"}} << true;
    QTest::newRow("3, dry") << Options{{"keep", "3"}, {"dry-run", ""}} << true;
    QTest::newRow("largest") << Options{{"keep", "2147483647"}} << true;
}

void TestPrune::misuse()
{
    QFETCH(Options, options);
    QFETCH(bool, isFine);
    QCOMPARE(pruneCommand.misuse({{}, options}),
             isFine ? QString() : QString("give the number of messages to keep: --keep N, 0 or more"));
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
        QCOMPARE(result.out, QString("News: nothing to delete\nSilence: nothing to delete\n"));
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
    QCOMPARE(
        pruned({}, 1).out,
        QString("News: nothing to delete\nOther: deleted 1 message, 0 files\nRadio: nothing to delete\n"));
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
    failEverywhere(pruneCommand, {"News"}, {{"keep", "2"}}, fill, check);
}

void TestPrune::failuresOfDryRun()
{
    QStringList before;
    const auto fill = [&] {
        addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2))});
        before = everythingIn(store());
    };
    failEverywhere(pruneCommand, {}, {{"keep", "1"}, {"dry-run", ""}}, fill,
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
