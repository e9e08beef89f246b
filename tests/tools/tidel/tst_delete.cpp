// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <commands.h>

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace Tidel;

class TestDelete : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void deletes();
    void severalNames();
    void refreshDoesNotBringItBack();
    void favorites();
    void downloadedFiles();
    void dryRun();
    void unknownMessage();
    void failures();
};

void TestDelete::deletes()
{
    const QString news = addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(2))});
    const QString radio = addChannel("Radio", {message("a", day(1))});
    const CommandResult result = runCommand(deleteCommand, {linkOf("a")});
    QCOMPARE(result.err, QString());
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString("Deleted: 1 message, 0 files\n"));
    QCOMPARE(titles(news), QStringList("b"));
    QCOMPARE(titles(radio), QStringList());
    QCOMPARE(dropped(news), QStringList(linkOf("a")));
    QCOMPARE(dropped(radio), QStringList(linkOf("a")));
    QCOMPARE(store().count("?e a mfo:Enclosure"), 0);
}

/// Rows of the last list, parts of titles and links; a message that is named twice is deleted once.
void TestDelete::severalNames()
{
    const QString news = addChannel("News", {message("apples"), message("beans"), message("cherries")});
    const CommandResult result = runCommand(deleteCommand, {"apple", linkOf("beans"), linkOf("beans")});
    QCOMPARE(result.out + result.err, QString("Deleted: 2 messages, 0 files\n"));
    QCOMPARE(titles(news), QStringList("cherries"));
}

void TestDelete::refreshDoesNotBringItBack()
{
    const QString path = home() + "/garden.xml";
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const auto write = [&file](const QByteArray &items) {
        file.resize(0);
        file.seek(0);
        file.write("<rss version='2.0'><channel><title>Garden</title>" + items + "</channel></rss>");
        file.flush();
    };
    const QByteArray beans = "<item><title>Beans</title><guid>1</guid><description>x</description></item>";
    const QByteArray peas = "<item><title>Peas</title><guid>2</guid><description>x</description></item>";
    write(beans + peas);
    QVERIFY(runCommand(subscribeCommand, {path}).isFine);
    QVERIFY(runCommand(deleteCommand, {"Beans"}).isFine);
    const QString uri = store().texts("SELECT ?c { ?c a mfo:FeedChannel }").constFirst();
    QCOMPARE(titles(uri), QStringList("Peas"));
    write(beans + peas + "<item><title>Corn</title><guid>3</guid><description>x</description></item>");
    QVERIFY(runCommand(refreshCommand, {}).isFine);
    QCOMPARE(titles(uri), QStringList({"Corn", "Peas"}));
}

/// Who names a favorite wants to delete it.
void TestDelete::favorites()
{
    const QString news = addChannel("News", {message("a", day(1)), message("b", day(2))});
    addFavorite("a");
    QVERIFY(runCommand(deleteCommand, {"a"}).isFine);
    QCOMPARE(titles(news), QStringList("b"));
}

void TestDelete::downloadedFiles()
{
    addChannel("News", {message("a", day(1), {"a.ogg"}), message("b", day(1), {"b.ogg"})});
    QVERIFY(QDir(home()).mkpath("Downloads/tidel"));
    const QStringList paths{home() + "/Downloads/tidel/a.ogg", home() + "/b.ogg"};
    for (const QString &path : paths) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    setLocalUrl("a.ogg", QUrl::fromLocalFile(paths[0]).toString());
    setLocalUrl("b.ogg", QUrl::fromLocalFile(paths[1]).toString());
    const CommandResult result = runCommand(deleteCommand, {"a", "b"});
    QCOMPARE(result.out + result.err, QString("Deleted: 2 messages, 1 file\n"));
    QVERIFY(!QFile::exists(paths[0]));
    QVERIFY(QFile::exists(paths[1]));
}

void TestDelete::dryRun()
{
    addChannel("News", {message("a", day(1)), message("b")});
    const QStringList before = everythingIn(store());
    const CommandResult result = runCommand(deleteCommand, {"a", "b"}, {{"dry-run", ""}});
    QVERIFY(result.isFine);
    QVERIFY2(result.out.startsWith("Would delete 2 messages\n  2026-11-01 "), qPrintable(result.out));
    QVERIFY2(result.out.endsWith("  (no date)  b\n"), qPrintable(result.out));
    QCOMPARE(everythingIn(store()), before);
}

/// The others are deleted.
void TestDelete::unknownMessage()
{
    const QString news = addChannel("News", {message("a", day(1)), message("b", day(2))});
    const CommandResult result = runCommand(deleteCommand, {"nonsense", "a"});
    QVERIFY(!result.isFine);
    QVERIFY2(result.err.contains("nonsense"), qPrintable(result.err));
    QCOMPARE(titles(news), QStringList("b"));
    QVERIFY(!runCommand(deleteCommand, {"nonsense"}).isFine);
}

void TestDelete::failures()
{
    const auto fill = [this] { addChannel("News", {message("a", day(1), {"a.ogg"}), message("b")}); };
    failEverywhere(deleteCommand, {linkOf("a")}, {}, fill, [this] {
        QCOMPARE(store().count("?e a mfo:Enclosure"), store().count("?m nie:title 'a'"));
    });
}

QTEST_GUILESS_MAIN(TestDelete)
#include "tst_delete.moc"
