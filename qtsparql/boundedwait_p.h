// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef BOUNDEDWAIT_P_H
#define BOUNDEDWAIT_P_H

#include <QDeadlineTimer>
#include <QThread>

/// Calls \a isDone every 10 ms until it returns true or \a milliseconds have passed. Returns true if it
/// returned true; otherwise returns false.
template <typename Function> bool waitUntil(Function isDone, int milliseconds = 30000)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!isDone()) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(10);
    }
    return true;
}

#endif
