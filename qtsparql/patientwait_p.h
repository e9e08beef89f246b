// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef PATIENTWAIT_P_H
#define PATIENTWAIT_P_H

#include <QElapsedTimer>
#include <QString>

#include <functional>

/// A process for which others wait.
struct Holder
{
    qint64 process = 0; ///< 0 if it is unknown
    qint64 since = 0; ///< in seconds since 1970; 0 if it is unknown
    QString name = QString();
};

/// How long this project waits for other programs, in milliseconds.
constexpr int usualPatience = 30000;

/**
 * A wait for other programs that ends after a time. After two seconds it says once for whom it waits, as a
 * message of the logging category "tidel.waiting".
 */
class PatientWait
{
public:
    /// Begins a wait of at most \a milliseconds. \a activity says what the others do, such as "writing".
    PatientWait(int milliseconds, const char *activity);

    /// Sleeps for \a pause milliseconds and returns true. Returns false if the time is over. \a holder is
    /// asked when somebody has to be named.
    bool goOn(const std::function<Holder()> &holder, unsigned pause = 10);

    /// Says for whom this object waited in vain, and what the user can do.
    QString failure(const Holder &holder) const;

private:
    QString description(const Holder &holder) const;
    qint64 seconds(const Holder &holder) const;

    const int m_milliseconds;
    const QString m_activity;
    QElapsedTimer m_clock;
    bool m_isTold = false;
};

/// Returns the name of the program that runs as \a process, as the system knows it.
QString nameOfProcess(qint64 process);

#endif
