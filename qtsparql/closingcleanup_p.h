// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef CLOSINGCLEANUP_P_H
#define CLOSINGCLEANUP_P_H

#include <QtGlobal>

struct sqlite3;

/**
 * When Tracker closes a database that it has opened for writing, it reads all resources and removes those
 * that nothing refers to any more. An object of this class has it do so only if its connection has left such
 * a resource. What a killed program has left stays until then.
 */
class ClosingCleanup
{
public:
    /// Watches what the connection \a database changes.
    explicit ClosingCleanup(sqlite3 *database);
    /// Prepares the connection for being closed.
    void beforeClosing() const;

private:
    Q_DISABLE_COPY(ClosingCleanup)

    static void noteChange(void *self, int action, const char *schema, const char *table, long long row);

    sqlite3 *const m_database;
    bool m_isNeeded = false;
};

#endif
