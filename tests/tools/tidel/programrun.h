// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef PROGRAMRUN_H
#define PROGRAMRUN_H

#include <QProcess>
#include <QStringList>

/// The result of a run of the program.
struct Run
{
    int exitCode = -1; ///< -1 if it did not end by itself.
    QString out;
    QString err;

    QStringList lines() const { return out.split('\n', Qt::SkipEmptyParts); }
    QStringList errors() const { return err.split('\n', Qt::SkipEmptyParts); }
};

/// Waits for the end of \a process, and returns its result.
inline Run finishedRun(QProcess &process)
{
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

/// Fails, and shows what the program wrote, if \a run has not ended with \a code.
#define VERIFY_RUN(run, code)                                                                                \
    do {                                                                                                     \
        const Run ended = (run);                                                                             \
        QVERIFY2(ended.exitCode == (code),                                                                   \
                 qPrintable(QString("exit code %1\n%2\n%3").arg(ended.exitCode).arg(ended.out, ended.err))); \
    } while (false)

#endif
