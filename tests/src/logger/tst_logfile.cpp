// SPDX-License-Identifier: LGPL-2.1-or-later
#include "loggertest.h"

#include <QDir>
#include <QTest>

#include <csignal>

/// Tests of a log file that fails, and of messages that arrive while another message is being written.
class TestLogFile : public LoggerTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void fullDisk();
    void diskFullForAWhile();
    void removedFolder();
    void removedFile();
    void eachLineIsOneWrite();

    void messageDuringWriting_data();
    void messageDuringWriting();
    void fatalMessageDuringWriting();
    void messageWithinTheHandlerGoesToQt();
    void settingsReadDuringWriting();
};

void TestLogFile::fullDisk()
{
    write("settings.ini", "[log-settings]\ndir-path=/dev\nfile-name=full\n[log-format]\nx=y\n[Test]\n");
    const QString message = structured(QString(30000, 'x'));
    QStringList actions;
    for (int i = 0; i < 20; ++i)
        actions.append("send:critical," + message);
    const HostRun run = runLogger(actions + QStringList("log:critical,Test,file,1,f(),f,text"));
    VERIFY_ENDED(run);
    QCOMPARE(run.out, QByteArray());
    QCOMPARE(runLogger({"send:fatal," + message}).signal, SIGABRT);
}

void TestLogFile::diskFullForAWhile()
{
    writeSettings("<message>");
    QStringList actions{"send:debug," + structured("before"), "refusewrites:3"};
    for (int i = 0; i < 3; ++i)
        actions.append("log:debug,Test,file,1,f(),f,lost");
    const HostRun run = runLogger(actions + QStringList("send:debug," + structured("after")));
    VERIFY_QUIET(run);
    QCOMPARE(run.report, QStringList({"written", "written", "written", "end"}));
    QCOMPARE(log(), QByteArray("before\nafter\n"));
}

void TestLogFile::removedFolder()
{
    QVERIFY(QDir(path(QString())).mkdir("logs"));
    write("settings.ini", logSettings(path("logs")) + "[Test]\n");
    const QString critical = "send:critical," + structured("text");
    const HostRun run = runLogger({critical, "remove:logs/log.txt", "rmdir:logs", critical, "reload:0",
                                   critical, "log:critical,Test,file,1,f(),f,text"});
    VERIFY_QUIET(run);
    QCOMPARE(run.report, QStringList({"removed", "removed", "loaded 1", "written", "end"}));
    QVERIFY(!QDir(path("logs")).exists());
}

void TestLogFile::removedFile()
{
    writeSettings("<message>");
    const QString debug = "send:debug," + structured("text");
    VERIFY_QUIET(runLogger({debug, "remove:log.txt", debug}));
    QCOMPARE(log(), QByteArray("(none)"));
}

// One write for each line keeps the lines of several processes apart.
void TestLogFile::eachLineIsOneWrite()
{
    writeSettings("<message>");
    const QString debug = "send:debug," + structured(QString(50000, 'x'));
    VERIFY_QUIET(runLogger({"refusewrites:1", debug}));
    QCOMPARE(log(), QByteArray());
}

void TestLogFile::messageDuringWriting_data()
{
    QTest::addColumn<QString>("nested");
    QTest::newRow("filter") << "filter:debug," + structured("nested");
    QTest::newRow("log") << QString("log:debug,Test,file,1,f(),f,nested");
    QTest::newRow("Qt's handler") << "send:debug," + structured("nested");
}

void TestLogFile::messageDuringWriting()
{
    QFETCH(QString, nested);
    writeSettings("<message>");
    const HostRun run = runLogger({"duringwrite:" + nested, "filter:debug," + structured("outer"),
                                   "filter:debug," + structured("later")});
    QCOMPARE(run.out + run.err, QByteArray());
    VERIFY_ENDED(run);
    QCOMPARE(log(), QByteArray("nested\nouter\nlater\n"));
}

void TestLogFile::fatalMessageDuringWriting()
{
    writeSettings("<message>");
    const HostRun run = runLogger(
        {"duringwrite:filter:fatal," + structured("last words"), "filter:debug," + structured("outer")});
    QCOMPARE(run.signal, SIGABRT);
    QCOMPARE(log(), QByteArray("last words\n"));
}

// Qt does not call the message handler while the handler runs.
void TestLogFile::messageWithinTheHandlerGoesToQt()
{
    writeSettings("<message>");
    const QString nested = structured("nested");
    const HostRun run = runLogger({"duringwrite:send:debug," + nested, "send:debug," + structured("outer"),
                                   "send:debug," + structured("later")});
    VERIFY_ENDED(run);
    QCOMPARE(run.err, nested.toUtf8() + '\n');
    QCOMPARE(log(), QByteArray("outer\nlater\n"));
}

void TestLogFile::settingsReadDuringWriting()
{
    writeSettings("<message>");
    write("new.ini", logSettings(path(QString())) + "[New]\n");
    const HostRun run = runLogger({"replace:new.ini," + path("settings.ini"), "duringwrite:reload:0",
                                   "send:debug," + structured("old"), "send:debug," + structured("unknown"),
                                   "send:critical," + structured("new", "New")});
    VERIFY_QUIET(run);
    QCOMPARE(run.report, QStringList({"replaced", "loaded 1", "end"}));
    QCOMPARE(log(), QByteArray("old\nnew\n"));
}

QTEST_GUILESS_MAIN(TestLogFile)
#include "tst_logfile.moc"
