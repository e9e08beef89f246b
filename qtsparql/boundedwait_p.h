// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef BOUNDEDWAIT_P_H
#define BOUNDEDWAIT_P_H

#include <QDeadlineTimer>
#include <QThread>

/// Calls \a isDone every 10 ms until it returns true or 30 s have passed. Returns true if it returned true;
/// otherwise returns false.
template <typename Function> bool waitUntil(Function isDone)
{
    const QDeadlineTimer deadline(30000);
    while (!isDone()) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(10);
    }
    return true;
}

#endif
