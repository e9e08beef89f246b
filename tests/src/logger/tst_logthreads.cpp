// SPDX-License-Identifier: LGPL-2.1-or-later
#include "loggertest.h"

#include <QRegularExpression>
#include <QTest>

#include <vector>

/// Tests of several threads and processes. With ThreadSanitizer, a race ends the host with a report and
/// another exit code.
class TestLogThreads : public LoggerTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void linesStayWhole();
    void severalProcesses();
};

namespace {

constexpr int writerCount = 4;
constexpr int lineCount = 500;

/// Returns true if \a text contains all lines of all writers, each writer's lines in order, and nothing else.
/// \a pattern matches the number of the writer and the number of the line.
bool isComplete(const QByteArray &text, const QString &pattern)
{
    const QRegularExpression expression(pattern);
    std::vector<int> next(writerCount, 0);
    QStringList lines = QString::fromUtf8(text).split('\n');
    if (lines.takeLast() != QString())
        return false;
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = expression.match(line);
        const int writer = match.captured(1).toInt();
        if (!match.hasMatch() || writer >= writerCount || match.captured(2).toInt() != next[size_t(writer)]++)
            return false;
    }
    return next == std::vector<int>(writerCount, lineCount);
}

} // namespace

void TestLogThreads::linesStayWhole()
{
    writeSettings("<timestamp>|<file>|<function>|<msgtype>|<message>|",
                  "[log-settings]\nshow-unlogged=true\n[Quiet]\n");
    const HostRun run = runLogger(
        {"send:debug," + structured("first"), QString("threads:%1,%2").arg(writerCount).arg(lineCount)});
    QCOMPARE(run.err, QByteArray());
    VERIFY_ENDED(run);
    QCOMPARE(run.report.first(), QString("%1 writes").arg(1 + writerCount * lineCount));
    QVERIFY(isComplete(run.out, "^(\\d) (\\d+) shown $"));
    const QByteArray lines = log();
    QVERIFY(isComplete(lines.mid(lines.indexOf('\n') + 1),
                       "^\\d\\d:\\d\\d:\\d\\d {12}\\|logginghost\\.cpp {5}\\|operator\\(\\) {10}\\|Debug "
                       "{15}\\|(\\d) (\\d+) filed \\|$"));
}

void TestLogThreads::severalProcesses()
{
    writeSettings("<message>");
    const QString filling(1000, 'x');
    std::vector<QStringList> hosts(writerCount, QStringList(construct()));
    for (int writer = 0; writer < writerCount; ++writer) {
        for (int line = 0; line < lineCount; ++line)
            hosts[size_t(writer)].append("send:debug,"
                                         + structured(QString("%1 %2 ").arg(writer).arg(line) + filling));
    }
    for (const HostRun &host : runTogether(hosts))
        VERIFY_QUIET(host);
    QVERIFY(isComplete(log(), "^(\\d) (\\d+) x{1000}$"));
}

QTEST_GUILESS_MAIN(TestLogThreads)
#include "tst_logthreads.moc"
