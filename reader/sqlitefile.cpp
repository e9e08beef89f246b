// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sqlitefile_p.h"

#include <QFile>

#include <sqlite3.h>

namespace Tidel {

namespace {

struct Finalizer
{
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

// Tracker's own functions are not needed to read rows, but SQLite refuses statements about tables that name
// them.
void sameValue(sqlite3_context *context, int, sqlite3_value **values)
{
    sqlite3_result_value(context, values[0]);
}

int sameOrder(void *, int, const void *, int, const void *) { return 0; }

QVariant valueOf(sqlite3_stmt *statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER: return qlonglong(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT: return sqlite3_column_double(statement, column);
    case SQLITE_TEXT:
        return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, column)),
                                 sqlite3_column_bytes(statement, column));
    default: return {};
    }
}

void bind(sqlite3_stmt *statement, const QVariant &parameter)
{
    if (parameter.userType() == QMetaType::QString) {
        const QByteArray utf8 = parameter.toString().toUtf8();
        sqlite3_bind_text(statement, 1, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    } else if (parameter.isValid()) {
        sqlite3_bind_int64(statement, 1, parameter.toLongLong());
    }
}

} // namespace

SqliteFile::SqliteFile(const QString &path, Reading reading)
    : m_opened(
        sqlite3_open_v2(QFile::encodeName(path).constData(), &m_database, SQLITE_OPEN_READONLY, nullptr))
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    for (const char *name : {"SparqlTimeSort", "SparqlTimestamp"})
        sqlite3_create_function(m_database, name, 1, flags, nullptr, sameValue, nullptr, nullptr);
    for (const char *name : {"TRACKER", "TRACKER_TITLE"})
        sqlite3_create_collation(m_database, name, SQLITE_UTF8, nullptr, sameOrder);
    // It does not make the file writable.
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_WRITABLE_SCHEMA, int(reading == Tolerant), nullptr);
    sqlite3_busy_timeout(m_database, 30000);
}

SqliteFile::~SqliteFile() { sqlite3_close(m_database); }

QString SqliteFile::error() const { return QString::fromUtf8(sqlite3_errmsg(m_database)); }

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
    if (m_opened != SQLITE_OK)
        return outcomeOf(m_opened);
    sqlite3_stmt *prepared = nullptr;
    const int code = sqlite3_prepare_v2(m_database, statement.toUtf8().constData(), -1, &prepared, nullptr);
    const Statement owner(prepared);
    if (code != SQLITE_OK)
        return outcomeOf(code);
    bind(prepared, parameter);
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW) {
        QVariantList values;
        for (int i = 0; i < sqlite3_column_count(prepared); ++i)
            values.append(valueOf(prepared, i));
        row(values);
    }
    return outcomeOf(step);
}

SqliteFile::Outcome SqliteFile::outcomeOf(int code) const
{
    switch (code & 0xff) {
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
