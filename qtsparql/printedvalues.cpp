// SPDX-License-Identifier: LGPL-2.1-or-later
#include "printedvalues_p.h"

#include <QDate>

#include <sqlite3.h>

namespace {

// SQLite keeps data of a negative number until the query ends. Tracker's number has it dropped after each
// call.
constexpr int keptLookup = -0x7465;

constexpr qint64 secondsOfDay = 86400;
// Tracker prints no other times.
constexpr qint64 firstTime = -62135596800; // 0001-01-01T00:00:00Z
constexpr qint64 lastTime = 253402300799; // 9999-12-31T23:59:59Z

void finalize(void *statement) { sqlite3_finalize(static_cast<sqlite3_stmt *>(statement)); }

/// Returns the statement that finds the name of a resource. If it cannot be prepared, fails the function that
/// \a context is of, and returns null.
sqlite3_stmt *nameLookup(sqlite3_context *context)
{
    if (void *kept = sqlite3_get_auxdata(context, keptLookup))
        return static_cast<sqlite3_stmt *>(kept);
    sqlite3_stmt *lookup = nullptr;
    const int state = sqlite3_prepare_v2(sqlite3_context_db_handle(context),
                                         "SELECT Uri FROM Resource WHERE ID = ?", -1, &lookup, nullptr);
    if (state != SQLITE_OK)
        sqlite3_result_error_code(context, state);
    sqlite3_set_auxdata(context, keptLookup, lookup, finalize);
    // SQLite has finalized the statement if it cannot keep it.
    return static_cast<sqlite3_stmt *>(sqlite3_get_auxdata(context, keptLookup));
}

/// A blank node has no name, and is printed as Tracker prints it.
void printFound(sqlite3_context *context, sqlite3_stmt *lookup, sqlite3_value *resource)
{
    if (sqlite3_column_bytes(lookup, 0) > 0) {
        sqlite3_result_value(context, sqlite3_column_value(lookup, 0));
        return;
    }
    char *label = sqlite3_mprintf("urn:bnode:%lld", sqlite3_value_int64(resource));
    sqlite3_result_text(context, label, -1, sqlite3_free);
}

/// Called by SQLite for the number of a resource. Anything else is printed as it is.
void printName(sqlite3_context *context, int, sqlite3_value **values)
{
    sqlite3_value *const resource = values[0];
    if (sqlite3_value_numeric_type(resource) != SQLITE_INTEGER) {
        sqlite3_result_value(context, resource);
        return;
    }
    sqlite3_stmt *const lookup = nameLookup(context);
    if (!lookup)
        return;
    sqlite3_bind_value(lookup, 1, resource);
    const int state = sqlite3_step(lookup);
    if (state == SQLITE_ROW)
        printFound(context, lookup, resource);
    else if (state != SQLITE_DONE)
        sqlite3_result_error_code(context, state);
    sqlite3_reset(lookup);
}

/// Writes \a number with \a digits digits to \a to. Returns the end.
char *writeNumber(char *to, int number, int digits)
{
    for (int i = digits - 1; i >= 0; --i, number /= 10)
        to[i] = char('0' + number % 10);
    return to + digits;
}

/// Prints \a time, in seconds since 1970. SQLite's own functions and those of Qt take several times as long.
void printSeconds(sqlite3_context *context, qint64 time)
{
    const int second = int((time % secondsOfDay + secondsOfDay) % secondsOfDay);
    const QDate date = QDate(1970, 1, 1).addDays((time - second) / secondsOfDay);
    char text[] = "0000-00-00T00:00:00Z";
    char *to = writeNumber(text, date.year(), 4);
    for (int number : {date.month(), date.day(), second / 3600, second / 60 % 60, second % 60})
        to = writeNumber(to + 1, number, 2);
    sqlite3_result_text(context, text, -1, SQLITE_TRANSIENT);
}

/// Called by SQLite for a time in seconds since 1970, or a text, which is printed as it is.
void printTime(sqlite3_context *context, int, sqlite3_value **values)
{
    const int type = sqlite3_value_numeric_type(values[0]);
    const qint64 time = sqlite3_value_int64(values[0]);
    if (type == SQLITE_TEXT)
        sqlite3_result_value(context, values[0]);
    else if (type == SQLITE_FLOAT || type == SQLITE_BLOB)
        sqlite3_result_error(context, "SparqlFormatTime helper: Invalid argument type", -1);
    else if (type == SQLITE_INTEGER && time >= firstTime && time <= lastTime)
        printSeconds(context, time);
}

} // namespace

void printValuesFast(sqlite3 *database)
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function(database, "SparqlPrintIRI", 1, flags, nullptr, printName, nullptr, nullptr);
    sqlite3_create_function(database, "SparqlFormatTime", 1, flags, nullptr, printTime, nullptr, nullptr);
}
