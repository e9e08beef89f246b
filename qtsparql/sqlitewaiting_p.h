// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SQLITEWAITING_P_H
#define SQLITEWAITING_P_H

#include "patientwait_p.h"

/**
 * How long the connections of SQLite that this thread uses wait for other processes, as long as the object
 * lives. Tracker lets them wait for 100 s each time, without a word.
 */
class SqliteWaiting
{
public:
    /// \a folder is that of the database. All waiting together takes at most \a milliseconds.
    SqliteWaiting(const QString &folder, int milliseconds);
    ~SqliteWaiting();

    /// Calls \a open, and has the connections that it opens wait as objects of this class say.
    static void govern(const std::function<void()> &open);

    /// Sleeps and returns true. Returns false if the time is over.
    bool goOn(unsigned pause = 10)
    {
        return m_wait.goOn([this] { return writer(); }, pause);
    }
    /// Says for whom this object waited in vain.
    QString failure() const { return m_wait.failure(writer()); }
    /// Returns the other process that writes to the database; one without a number if there is none.
    Holder writer() const;

private:
    Q_DISABLE_COPY(SqliteWaiting)

    const QString m_folder;
    PatientWait m_wait;
    SqliteWaiting *const m_previous;
};

#endif
