// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SQLITEWAITING_P_H
#define SQLITEWAITING_P_H

#include "patientwait_p.h"
#include "sqliteconnections_p.h"

#include <atomic>
#include <functional>

/**
 * How the updates of this thread wait for other processes, as long as the object lives, and that they are
 * stored whole or not at all. Tracker alone would wait for 100 s each time, without a word, and then report
 * success. If the disk is full, SQLite undoes an update, and Tracker would store the rest of it.
 */
class SqliteWaiting
{
public:
    /// \a folder is that of the database. All waiting together takes at most \a milliseconds.
    SqliteWaiting(const QString &folder, int milliseconds);
    ~SqliteWaiting();

    /// Calls \a open, and has the connections that it opens wait as objects of this class say. Returns these.
    static QVector<sqlite3 *> govern(const std::function<void()> &open);

    /// Sleeps and returns true. Returns false if the time is over.
    bool goOn(unsigned pause = 10);
    /// Returns true if goOn() has returned false; otherwise returns false. Nothing is committed from then on.
    bool isOver() const { return m_isOver; }

    /// Begins an update after another one, which may be undone.
    void begin() { m_isUndone = m_hasMissedLock = false; }
    /// Has nothing more of the update committed. Tracker may call this in another thread.
    void undo() { m_isUndone = true; }
    /// Returns true if the update was undone; otherwise returns false.
    bool isUndone() const { return m_isUndone; }

    /// Notes that a part of the update found the database locked. Nothing of the update is committed then.
    void missLock() { m_hasMissedLock = true; }
    /// Returns true if a part of the update found the database locked, so that the update has to be repeated;
    /// otherwise returns false. Tracker may have reported success.
    bool hasMissedLock() const { return m_hasMissedLock; }

    /// Says for whom this object waited in vain.
    QString failure() const { return m_wait.failure(writer()); }

private:
    Q_DISABLE_COPY(SqliteWaiting)

    Holder writer() const;

    const QString m_folder;
    PatientWait m_wait;
    SqliteWaiting *const m_previous;
    bool m_isOver = false;
    std::atomic<bool> m_isUndone{false};
    std::atomic<bool> m_hasMissedLock{false};
};

#endif
