// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <commands.h>

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace Tidel;

class TestClean : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void nothingToClean();
    void orphans();
    void countsOfEachKind();
    void messageWithoutLinkStays();
    void downloadedFiles();
    void failures();

private:
    void addOrphan(const QString &name, const QStringList &enclosures = {}) const;
};

void TestClean::addOrphan(const QString &name, const QStringList &enclosures) const
{
    QVERIFY(tracker()->addMessages({message(name, day(1), enclosures)}, "urn:no:channel"));
}

void TestClean::nothingToClean()
{
    QCOMPARE(runCommand(cleanCommand, {}).out, QString("Nothing to clean\n"));
    const QString uri = addChannel("News", {message("a", day(1), {"a.ogg"})});
    FeedEnclosure image;
    image.setRemoteUrl(linkOf("image.png"));
    QVERIFY(tracker()->addEnclosures({image}, uri));
    const QStringList before = everythingIn(store());
    const CommandResult result = runCommand(cleanCommand, {});
    QCOMPARE(result.err, QString());
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString("Nothing to clean\n"));
    QCOMPARE(everythingIn(store()), before);
}

void TestClean::orphans()
{
    addChannel("News", {message("a", day(1), {"a.ogg", "same.ogg"})});
    const QStringList titles = store().texts("SELECT ?t { ?m nie:title ?t }");
    addOrphan("b", {"b.ogg", "same.ogg"});
    addOrphan("c");
    FeedEnclosure orphan;
    orphan.setRemoteUrl(linkOf("orphan.ogg"));
    QVERIFY(tracker()->addEnclosures({orphan}, "urn:no:message"));
    QCOMPARE(runCommand(cleanCommand, {}).out, QString("Deleted: 2 messages, 2 enclosures, 0 files\n"));
    QCOMPARE(store().texts("SELECT ?t { ?m nie:title ?t }"), titles);
    QStringList left = store().texts("SELECT ?l { ?e a mfo:Enclosure ; mfo:remoteLink ?l }");
    left.sort();
    QCOMPARE(left, QStringList({linkOf("a.ogg"), linkOf("same.ogg")}));
    QCOMPARE(runCommand(cleanCommand, {}).out, QString("Nothing to clean\n"));
}

void TestClean::countsOfEachKind()
{
    addOrphan("a");
    QCOMPARE(runCommand(cleanCommand, {}).out, QString("Deleted: 1 message, 0 enclosures, 0 files\n"));
    FeedEnclosure orphan;
    orphan.setRemoteUrl(linkOf("orphan.ogg"));
    QVERIFY(tracker()->addEnclosures({orphan}, "urn:no:message"));
    QCOMPARE(runCommand(cleanCommand, {}).out, QString("Deleted: 0 messages, 1 enclosure, 0 files\n"));
    QCOMPARE(everythingIn(store()), QStringList());
}

void TestClean::messageWithoutLinkStays()
{
    store().update("INSERT DATA { <urn:m> a mfo:FeedMessage ; nie:title 'a' }");
    const CommandResult result = runCommand(cleanCommand, {});
    QVERIFY(result.isFine);
    QCOMPARE(result.out, QString("Nothing to clean\n"));
    QCOMPARE(store().count("?m a mfo:FeedMessage"), 1);
}

void TestClean::downloadedFiles()
{
    addOrphan("a", {"a.ogg"});
    QVERIFY(QDir().mkpath(home() + "/Downloads/tidel"));
    QFile file(home() + "/Downloads/tidel/a.ogg");
    QVERIFY(file.open(QIODevice::WriteOnly));
    setLocalUrl("a.ogg", QUrl::fromLocalFile(file.fileName()).toString());
    QCOMPARE(runCommand(cleanCommand, {}).out, QString("Deleted: 1 message, 1 enclosure, 1 file\n"));
    QVERIFY(!file.exists());
}

void TestClean::failures()
{
    QString news;
    const auto fill = [&] {
        news = addChannel("News", {message("kept", day(1), {"kept.ogg"})});
        addOrphan("a", {"a.ogg"});
    };
    const auto check = [&] {
        QCOMPARE(titles(news), QStringList("kept"));
        QVERIFY(runCommand(cleanCommand, {}).isFine);
        QCOMPARE(store().count("?m a mfo:FeedMessage"), 1);
        QCOMPARE(store().count("?e a mfo:Enclosure"), 1);
    };
    failEverywhere(cleanCommand, {}, {}, fill, check);
}

QTEST_GUILESS_MAIN(TestClean)
#include "tst_clean.moc"
