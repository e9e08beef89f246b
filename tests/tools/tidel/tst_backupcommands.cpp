// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <commands.h>

#include <QDir>
#include <QtTest>

using namespace Tidel;

class TestBackupCommands : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void backupAndRestore();
    void restoreIntoAnotherArchive();
    void merge();
    void killedMerge();
    void unreadableBackup();
    void failures_data();
    void failures();
};

void TestBackupCommands::backupAndRestore()
{
    addChannel("News", {message("a", day(1), {"a.ogg"}), message("b")});
    addFavorite("b");
    const QStringList before = everythingIn(store());
    const QString file = home() + "/archive.ttl.gz";
    const CommandResult written = runCommand(backupCommand, {file});
    QCOMPARE(written.err, QString());
    QVERIFY(written.isFine);
    const QRegularExpression report("^" + file
                                    + R"(: 1 channel, 2 messages, 1 enclosure in [0-9.]+ (bytes|KiB)\n$)");
    QVERIFY2(report.match(written.out).hasMatch(), qPrintable(written.out));

    QDir(store().dataFolder() + "/tidel/store").removeRecursively();
    const CommandResult restored = runCommand(restoreCommand, {file});
    QCOMPARE(restored.err, QString());
    QVERIFY(restored.isFine);
    QCOMPARE(restored.out, QString("Restored: 1 channel, 2 messages, 1 enclosure\n"));
    QCOMPARE(everythingIn(store()), before);
}

void TestBackupCommands::restoreIntoAnotherArchive()
{
    const QString file = home() + "/archive.ttl.gz";
    addChannel("News", {message("a")});
    QVERIFY(runCommand(backupCommand, {file}).isFine);
    const QStringList before = everythingIn(store());
    const CommandResult refused = runCommand(restoreCommand, {file});
    QVERIFY(!refused.isFine);
    QCOMPARE(refused.out, QString());
    QCOMPARE(refused.err,
             "tidel: could not restore the backup: the archive is not empty; "
             "add --merge to keep both, or move the folder "
                 + store().dataFolder() + "/tidel away to start with an empty one\n");
    QCOMPARE(everythingIn(store()), before);
}

void TestBackupCommands::merge()
{
    const QString file = home() + "/archive.ttl.gz";
    addChannel("News", {message("a", day(1), {"a.ogg"}), message("b")});
    QVERIFY(runCommand(backupCommand, {file}).isFine);
    const QStringList before = everythingIn(store());
    const CommandResult nothing = runCommand(restoreCommand, {file}, {{"merge", ""}});
    QCOMPARE(nothing.err, QString());
    QCOMPARE(nothing.out, QString("Added: 0 channels, 0 messages, 0 enclosures\n"));
    QCOMPARE(everythingIn(store()), before);
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    addChannel("Radio", {message("c")});
    QCOMPARE(runCommand(restoreCommand, {file}, {{"merge", ""}}).out,
             QString("Added: 1 channel, 2 messages, 1 enclosure\n"));
    QCOMPARE(runCommand(restoreCommand, {home() + "/none"}, {{"merge", ""}}).err,
             "tidel: could not merge the backup: " + home()
                 + "/none: the file does not exist or cannot be read; check its name\n");
    // Nothing is left of the other archive.
    QVERIFY(!QFileInfo::exists(store().dataFolder() + "/tidel/merging"));
}

/// What was merged before a kill stays, and the next merge completes it.
void TestBackupCommands::killedMerge()
{
    constexpr int groups = 6;
    const QString file = home() + "/archive.ttl.gz";
    QList<FeedMessage> messages;
    for (int i = 0; i < groups * 100; ++i)
        messages.append(message(QString("m%1").arg(i)));
    const QString news = addChannel("News", messages);
    QVERIFY(runCommand(backupCommand, {file}).isFine);
    const QStringList expected = titles(news);
    QVERIFY(runCommand(unsubscribeCommand, {"News"}).isFine);
    addChannel("Radio", {message("own")});

    for (int kill = 0; kill < 4; ++kill) {
        const int before = store().count("?m a mfo:FeedMessage");
        QProcess program;
        program.start(TIDEL_PROGRAM, {"restore", "--merge", file});
        QTRY_VERIFY_WITH_TIMEOUT(
            store().count("?m a mfo:FeedMessage") > before || program.state() == QProcess::NotRunning, 60000);
        program.kill();
        QVERIFY(program.waitForFinished(60000));
    }
    const CommandResult completed = runCommand(restoreCommand, {file}, {{"merge", ""}});
    QCOMPARE(completed.err, QString());
    QCOMPARE(titles(news), expected);
    QCOMPARE(store().count("?m a mfo:FeedMessage"), groups * 100 + 1);
    QCOMPARE(QProcess::execute(TIDEL_PROGRAM, {"check", "--quiet"}), 0);
    QCOMPARE(runCommand(restoreCommand, {file}, {{"merge", ""}}).out,
             QString("Added: 0 channels, 0 messages, 0 enclosures\n"));
    QVERIFY(!QFileInfo::exists(store().dataFolder() + "/tidel/merging"));
}

void TestBackupCommands::unreadableBackup()
{
    const CommandResult result = runCommand(restoreCommand, {home() + "/none"});
    QVERIFY(!result.isFine);
    QCOMPARE(result.err,
             "tidel: could not restore the backup: " + home()
                 + "/none: the file does not exist or cannot be read; check its name\n");
}

void TestBackupCommands::failures_data()
{
    QTest::addColumn<const Command *>("command");
    QTest::newRow("backup") << &backupCommand;
    QTest::newRow("restore") << &restoreCommand;
}

void TestBackupCommands::failures()
{
    QFETCH(const Command *, command);
    const QString file = home() + "/archive.ttl.gz";
    QVERIFY(runCommand(backupCommand, {file}).isFine);
    failEverywhere(
        *command, {file}, {}, [] {}, [&] { QCOMPARE(everythingIn(store()), QStringList()); });
}

QTEST_GUILESS_MAIN(TestBackupCommands)
#include "tst_backupcommands.moc"
