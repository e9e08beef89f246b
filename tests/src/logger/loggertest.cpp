// SPDX-License-Identifier: LGPL-2.1-or-later
#include "loggertest.h"

#include <QFile>
#include <QProcess>
#include <QTest>

QString structured(const QString &message, const QString &category)
{
    return category + "\nsrc/file.cpp\n46\nvoid Class::function()\nfunction\n " + message;
}

QByteArray logSettings(const QString &dirPath)
{
    return "[log-settings]\ndir-path=" + dirPath.toUtf8() + "\nfile-name=log.txt\n";
}

void LoggerTestCase::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_MESSAGE_PATTERN", "QT_LOGGING_RULES", "QT_LOGGING_CONF", "QT_FATAL_WARNINGS",
                             "QT_FATAL_CRITICALS"})
        environment.remove(name);
    environment.insert("QT_FORCE_STDERR_LOGGING", "1");
    environment.insert("LC_ALL", "C.UTF-8");
}

void LoggerTestCase::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray LoggerTestCase::content(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void LoggerTestCase::writeSettings(const QByteArray &format, const QByteArray &more) const
{
    write("settings.ini",
          logSettings(path(QString())) + "[Test]\ndebug=true\nwarning=true\n[log-format]\nformat=\"" + format
              + "\"\n" + more);
}

std::vector<HostRun> LoggerTestCase::runTogether(const std::vector<QStringList> &lists) const
{
    std::vector<std::unique_ptr<QProcess>> processes;
    for (const QStringList &actions : lists) {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->setWorkingDirectory(path(QString()));
        process->start(TIDEL_LOGGING_HOST,
                       QStringList(path(QString("report%1").arg(processes.size()))) + actions);
        processes.push_back(std::move(process));
    }
    std::vector<HostRun> runs;
    for (const auto &process : processes) {
        HostRun run;
        if (process->waitForFinished(120000)) {
            (process->exitStatus() == QProcess::NormalExit ? run.exitCode : run.signal) = process->exitCode();
            run.out = process->readAllStandardOutput();
            run.err = process->readAllStandardError();
            run.report = QString::fromUtf8(content(QString("report%1").arg(runs.size())))
                             .split('\n', Qt::SkipEmptyParts);
        } else {
            qWarning("The host does not end: %s", qPrintable(process->errorString()));
        }
        runs.push_back(run);
    }
    return runs;
}
