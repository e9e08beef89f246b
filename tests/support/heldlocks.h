// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef HELDLOCKS_H
#define HELDLOCKS_H

#include <QFile>
#include <QList>
#include <QThread>

#include <csignal>

#include <sys/types.h>

/// Returns true if \a process holds a lock of the kind \a mode on the byte \a from or a later one up to \a
/// to.
inline bool holdsLock(qint64 process, const char *mode, int from, int to)
{
    QFile file(QStringLiteral("/proc/locks"));
    file.open(QIODevice::ReadOnly);
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() == 8 && words.at(3) == mode && words.at(4).toLongLong() == process
            && words.at(6).toInt() >= from && words.at(6).toInt() <= to)
            return true;
    }
    return false;
}

/// Stops \a process as Ctrl-Z does, while it holds a lock like that. Returns false if that does not succeed.
inline bool stopWithLock(qint64 process, const char *mode, int from, int to)
{
    for (int i = 0; i < 10000; ++i) {
        kill(pid_t(process), SIGSTOP);
        // The process runs on for a moment.
        QThread::msleep(1);
        if (holdsLock(process, mode, from, to))
            return true;
        kill(pid_t(process), SIGCONT);
        QThread::usleep(ulong(200 + i % 50 * 37));
    }
    return false;
}

#endif
