// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sqlitewaiting_p.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>
#include <QVector>

#include <algorithm>

#include <sqlite3.h>
#include <sys/stat.h>

namespace {

/// A connection of Tracker to the database.
struct Connection
{
    sqlite3 *database;
    SqliteWaiting *const
        *update; ///< That of the thread that opened the connection. Tracker may use another one.
};

thread_local SqliteWaiting *current = nullptr;
/// Called by SQLite when it closes a connection.
void forget(void *connection) { delete static_cast<Connection *>(connection); }

void doNothing(sqlite3_context *, int, sqlite3_value **) { }

/// Called by SQLite while another process keeps a lock. \a count is the number of calls for the same lock.
int waitForOthers(void *data, int count)
{
    const Connection &connection = *static_cast<Connection *>(data);
    // The locks of most updates are short.
    const unsigned pause = count < 10 ? 1 : 10;
    const bool isInUpdate = sqlite3_get_autocommit(connection.database) == 0;
    if (*connection.update && isInUpdate)
        return (*connection.update)->goOn(pause);
    // SQLite empties its log, which can wait until the next time.
    QThread::msleep(pause);
    return count < 100;
}

/// Called by SQLite before it commits an update.
int refuseIncomplete(void *data)
{
    const SqliteWaiting *update = *static_cast<Connection *>(data)->update;
    return update && (update->isOver() || update->isUndone() || update->hasMissedLock());
}

/// Called by SQLite when it undoes an update.
void noteUndone(void *data)
{
    if (SqliteWaiting *update = *static_cast<Connection *>(data)->update)
        update->undo();
}

/// Called by SQLite when \a statement has ended. One that should have written, but did not begin to, found
/// the database locked. SQLite does not wait then if the update has read before.
int noteNotWritten(unsigned, void *data, void *statement, void *)
{
    const Connection &connection = *static_cast<Connection *>(data);
    SqliteWaiting *const update = *connection.update;
    const bool isInUpdate = update && sqlite3_get_autocommit(connection.database) == 0;
    if (isInUpdate && sqlite3_stmt_readonly(static_cast<sqlite3_stmt *>(statement)) == 0
        && sqlite3_txn_state(connection.database, "main") != SQLITE_TXN_WRITE)
        update->missLock();
    return 0;
}

/// Returns the process of a line of /proc/locks if it is a lock for writing to the database whose index is
/// the file \a inode; otherwise returns 0.
qint64 writerOf(const QByteArray &line, ino_t inode)
{
    // 1: POSIX  ADVISORY  WRITE 5907 fe:00:10953269 120 120
    const QList<QByteArray> words = line.simplified().split(' ');
    // SQLite's lock for writing is this byte of the index.
    const bool isWriter = words.size() == 8 && words.at(1) == "POSIX" && words.at(3) == "WRITE"
        && words.at(5).endsWith(':' + QByteArray::number(qulonglong(inode))) && words.at(6) == "120";
    return isWriter ? words.at(4).toLongLong() : 0;
}

} // namespace

SqliteWaiting::SqliteWaiting(const QString &folder, int milliseconds)
    : m_folder(folder), m_wait(milliseconds, "writing"), m_previous(current)
{
    current = this;
}

SqliteWaiting::~SqliteWaiting() { current = m_previous; }

// Tracker sets its own waiting time when it has opened a connection, and so before this function ends.
QVector<sqlite3 *> SqliteWaiting::govern(const std::function<void()> &open)
{
    const QVector<sqlite3 *> databases = connectionsOpenedBy(open);
    for (sqlite3 *database : databases) {
        auto *connection = new Connection{database, &current};
        // SQLite calls forget() when it drops the function, which it does when the connection ends.
        sqlite3_create_function_v2(database, "tidel_waiting", 0, SQLITE_UTF8, connection, doNothing, nullptr,
                                   nullptr, forget);
        sqlite3_busy_handler(database, waitForOthers, connection);
        sqlite3_commit_hook(database, refuseIncomplete, connection);
        sqlite3_rollback_hook(database, noteUndone, connection);
        sqlite3_trace_v2(database, SQLITE_TRACE_PROFILE, noteNotWritten, connection);
    }
    return databases;
}

bool SqliteWaiting::goOn(unsigned pause)
{
    m_isOver = m_isOver || !m_wait.goOn([this] { return writer(); }, pause);
    return !m_isOver;
}

/// Returns the other process that writes to the database; one without a number if there is none.
// The file of the index is not opened here: closing it would release the locks that SQLite has on it.
Holder SqliteWaiting::writer() const
{
    struct stat index;
    if (stat(QFile::encodeName(m_folder + QLatin1String("/meta.db-shm")).constData(), &index) != 0)
        return {};
    QFile locks(QStringLiteral("/proc/locks"));
    locks.open(QIODevice::ReadOnly);
    const QList<QByteArray> lines = locks.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const qint64 process = writerOf(line, index.st_ino);
        if (process != 0 && process != QCoreApplication::applicationPid())
            return {process, 0, nameOfProcess(process)};
    }
    return {};
}
