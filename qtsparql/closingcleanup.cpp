// SPDX-License-Identifier: LGPL-2.1-or-later
#include "closingcleanup_p.h"

#include <cstring>

#include <sqlite3.h>

namespace {

/// Called by SQLite for each action of a statement that it prepares.
int refuseCleanup(void *, int action, const char *table, const char *, const char *, const char *)
{
    return action == SQLITE_DELETE && std::strcmp(table, "Resource") == 0 ? SQLITE_DENY : SQLITE_OK;
}

} // namespace

ClosingCleanup::ClosingCleanup(sqlite3 *database) : m_database(database)
{
    sqlite3_update_hook(database, noteChange, this);
}

/// Called by SQLite for each row that changes. Tracker removes the count of a resource when it becomes 0.
void ClosingCleanup::noteChange(void *self, int action, const char *, const char *table, long long)
{
    if (action == SQLITE_DELETE && std::strcmp(table, "Refcount") == 0)
        static_cast<ClosingCleanup *>(self)->m_isNeeded = true;
}

void ClosingCleanup::beforeClosing() const
{
    if (!m_isNeeded)
        sqlite3_set_authorizer(m_database, refuseCleanup, nullptr);
}
