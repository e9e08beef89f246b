// SPDX-License-Identifier: LGPL-2.1-or-later
#include "loggertest.h"

#include <QTest>

/// Tests that the store's traces are written to the log file.
class TestStoreLog : public LoggerTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void tracesOfTheStore_data();
    void tracesOfTheStore();
    void criticalOnesByDefault();
    void loggingRulesDoNotSuppressTraces();
};

namespace {

const QString title = QStringLiteral("Gr\u00fc\u00dfe \u4f60\u597d \U0001f4f0");

} // namespace

void TestStoreLog::init()
{
    LoggerTestCase::init();
    environment.insert("XDG_DATA_HOME", path("data"));
}

void TestStoreLog::tracesOfTheStore_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("C") << "C";
    QTest::newRow("C.UTF-8") << "C.UTF-8";
}

void TestStoreLog::tracesOfTheStore()
{
    QFETCH(QString, locale);
    environment.insert("LC_ALL", locale);
    const QByteArray noPadding = "file-length=0\nfunction-length=0\nmsgtype-length=0\n";
    writeSettings("<msgtype>|<file>|<function>|<message>", noPadding + "[Tracker]\ndebug=true\n");
    const HostRun run = runLogger({"store:" + title});
    VERIFY_QUIET(run);
    const QString uri = run.report.value(0);
    QCOMPARE(run.report.mid(1), QStringList({title, "added", "not added", "end"}));

    const auto line = [](const QString &level, const QString &function, const QString &message) {
        return level + "|feedtrackersparql.cpp|" + function + '|' + message;
    };
    const QStringList lines = QString::fromUtf8(log()).split('\n');
    QCOMPARE(lines.mid(0, 2),
             QStringList({line("Debug", "instance", "object init "),
                          line("Critical", "FeedTrackerSparql", "QTRACKER_DIRECT : Driver found ")}));
    QCOMPARE(lines.mid(lines.size() - 3),
             QStringList({line("Debug", "releaseInstance", "object de-init "),
                          line("Debug", "~FeedTrackerSparql", "QTRACKER_DIRECT: de-init "), QString()}));
    QVERIFY2(lines.contains(line("Debug", "addChannel", "Channel Uri:  \"" + uri + "\" ")),
             log().constData());
    // The title is in the insert statement and in the text of the channel, which has many lines.
    const QStringList found = lines.filter(title);
    QCOMPARE(found.size(), 2);
    QVERIFY2(found.first().startsWith(line("Debug", "addChannel", "\"INSERT {")), qPrintable(found.first()));
    QCOMPARE(found.last().trimmed(), "Title:  \"" + title + '"');
    QVERIFY(lines.contains(line("Debug", "channelForUri", "channel =  Channel :  ")));
}

void TestStoreLog::criticalOnesByDefault()
{
    write("settings.ini",
          logSettings(path(QString())) + "[Tracker]\n[log-format]\nformat=<msgtype>|\nmsgtype-length=0\n");
    VERIFY_QUIET(runLogger({"store:" + title}));
    // One line says that the driver was found, the other one that a statement was refused.
    QCOMPARE(log(), QByteArray("Critical|\nCritical|\n"));
}

void TestStoreLog::loggingRulesDoNotSuppressTraces()
{
    environment.insert("QT_LOGGING_RULES", "*.debug=false;*.critical=false");
    writeSettings("<message>", "[Tracker]\ndebug=true\n");
    VERIFY_QUIET(runLogger({"store:" + title, "send:debug," + structured("suppressed")}));
    const QStringList lines = QString::fromUtf8(log()).split('\n');
    QVERIFY2(lines.contains("object init "), log().constData());
    QVERIFY(lines.contains("QTRACKER_DIRECT : Driver found "));
    QVERIFY(lines.contains("QTRACKER_DIRECT: de-init "));
    QVERIFY(!lines.contains("suppressed"));
}

QTEST_GUILESS_MAIN(TestStoreLog)
#include "tst_storelog.moc"
