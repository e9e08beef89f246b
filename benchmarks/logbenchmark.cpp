// SPDX-License-Identifier: LGPL-2.1-or-later
#include <qstlogger.h>
#include <qsttrace.h>

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

void writeSettings(const QString &path, const QString &folder)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("could not write the settings");
    file.write("[log-settings]\ndir-path=" + folder.toUtf8()
               + "\nfile-name=log.txt\n[log-format]\n"
                 "format=<timestamp><file><line><msgtype><function><message>\n"
                 "[On]\ndebug=true\n[Off]\ndebug=false\n");
}

void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

/// Writes a typical trace of the store: a text and a URI.
void writeTrace(benchmark::State &state, QtMessageHandler handler, const char *category)
{
    qInstallMessageHandler(handler);
    const QString uri = QStringLiteral("urn:uuid:f81d4fae-7dec-11d0-a765-00a0c91e6bf6");
    for ([[maybe_unused]] auto _ : state)
        QST_DEBUG(category) << "Channel Uri: " << uri;
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    const QTemporaryDir folder;
    const QString settings = folder.filePath(QStringLiteral("settings.ini"));
    writeSettings(settings, folder.path());
    const QstLogger logger(settings);
    const QtMessageHandler log = qInstallMessageHandler(dropMessage);

    // The difference to the first benchmark is the cost of the logger.
    benchmark::RegisterBenchmark("trace/no logger", writeTrace, dropMessage, "On");
    benchmark::RegisterBenchmark("trace/unknown category", writeTrace, log, "Unknown");
    benchmark::RegisterBenchmark("trace/level off", writeTrace, log, "Off");
    benchmark::RegisterBenchmark("trace/written", writeTrace, log, "On");
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
