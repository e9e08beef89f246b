// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sqlitefile_p.h"

#include <sqlite3.h>

namespace Tidel {

namespace {

// Tracker's own functions are not needed to read rows, but SQLite refuses statements about tables that name
// them.
void sameValue(sqlite3_context *context, int, sqlite3_value **values)
{
    sqlite3_result_value(context, values[0]);
}

int sameOrder(void *, int, const void *, int, const void *) { return 0; }

} // namespace

SqliteFile::SqliteFile(const QString &path, Reading reading) : m_database(path, SQLITE_OPEN_READONLY)
{
    sqlite3 *const handle = m_database.handle();
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    for (const char *name : {"SparqlTimeSort", "SparqlTimestamp"})
        sqlite3_create_function(handle, name, 1, flags, nullptr, sameValue, nullptr, nullptr);
    for (const char *name : {"TRACKER", "TRACKER_TITLE"})
        sqlite3_create_collation(handle, name, SQLITE_UTF8, nullptr, sameOrder);
    // It does not make the file writable.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_WRITABLE_SCHEMA, int(reading == Tolerant), nullptr);
    sqlite3_busy_timeout(handle, 30000);
}

QString SqliteFile::error() const { return m_database.error(); }

SqliteFile::Outcome SqliteFile::check(QStringList *findings)
{
    // The full check would also compare the indexes with their tables, for which it needs Tracker's
    // functions.
    const Outcome outcome = read(QStringLiteral("PRAGMA quick_check(100)"), [&](const QVariantList &row) {
        const QStringList lines = row.first().toString().split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            if (line != QLatin1String("ok"))
                findings->append(line);
        }
    });
    return outcome == Done && !findings->isEmpty() ? Damaged : outcome;
}

SqliteFile::Outcome SqliteFile::read(const QString &statement,
                                     const std::function<void(const QVariantList &)> &row,
                                     const QVariant &parameter)
{
    return outcomeOf(m_database.run(statement.toUtf8(),
                                    parameter.isValid() ? QVariantList{parameter} : QVariantList(), row));
}

SqliteFile::Outcome SqliteFile::outcomeOf(int code) const
{
    switch (code) {
    case SQLITE_OK:
    case SQLITE_DONE: return Done;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR: // no such table, or no such column: the schema is lost
    case SQLITE_IOERR: return Damaged;
    default: return Failed;
    }
}

} // namespace Tidel
