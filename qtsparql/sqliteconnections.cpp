// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sqliteconnections_p.h"

#include <sqlite3.h>

namespace {

thread_local QVector<sqlite3 *> *opened = nullptr;

/// Called by SQLite when it closes the connection \a database.
void noteClosed(void *database)
{
    if (opened)
        opened->removeAll(static_cast<sqlite3 *>(database));
}

void doNothing(sqlite3_context *, int, sqlite3_value **) { }

/// Called by SQLite for each connection that any thread opens.
int noteOpened(sqlite3 *database, char **, const sqlite3_api_routines *)
{
    if (!opened)
        return SQLITE_OK;
    opened->append(database);
    // SQLite calls noteClosed() when it drops the function, which it does when the connection ends.
    return sqlite3_create_function_v2(database, "tidel_connection", 0, SQLITE_UTF8, database, doNothing,
                                      nullptr, nullptr, noteClosed);
}

} // namespace

QVector<sqlite3 *> connectionsOpenedBy(const std::function<void()> &work)
{
    QVector<sqlite3 *> connections;
    opened = &connections;
    const auto entry = reinterpret_cast<void (*)()>(noteOpened);
    sqlite3_auto_extension(entry);
    work();
    opened = nullptr;
    return connections;
}
