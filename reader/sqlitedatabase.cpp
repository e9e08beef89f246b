// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sqlitedatabase_p.h"

#include <QFile>

#include <sqlite3.h>

namespace Tidel {

namespace {

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

int bind(sqlite3_stmt *statement, int place, const QVariant &value)
{
    if (value.userType() == QMetaType::QString) {
        const QByteArray utf8 = value.toString().toUtf8();
        return sqlite3_bind_text(statement, place, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    }
    return value.isValid() ? sqlite3_bind_int64(statement, place, value.toLongLong())
                           : sqlite3_bind_null(statement, place);
}

} // namespace

SqliteDatabase::SqliteDatabase(const QString &path, int flags)
    : m_opened(sqlite3_open_v2(QFile::encodeName(path).constData(), &m_handle, flags, nullptr))
{
}

SqliteDatabase::~SqliteDatabase()
{
    for (sqlite3_stmt *statement : qAsConst(m_prepared))
        sqlite3_finalize(statement);
    sqlite3_close(m_handle);
}

QString SqliteDatabase::error() const { return QString::fromUtf8(sqlite3_errmsg(m_handle)); }

int SqliteDatabase::run(const QByteArray &statement, const QVariantList &values, const Row &row)
{
    if (m_opened != SQLITE_OK)
        return m_opened & 0xff;
    // While the statement runs, it is not among the prepared ones: the caller of this may run the same one.
    sqlite3_stmt *prepared = m_prepared.take(statement);
    if (!prepared) {
        const int code = sqlite3_prepare_v2(m_handle, statement.constData(), -1, &prepared, nullptr);
        if (code != SQLITE_OK)
            return code & 0xff;
    }
    int code = SQLITE_OK;
    for (int i = 0; i < values.size() && code == SQLITE_OK; ++i)
        code = bind(prepared, i + 1, values.at(i));
    while (code == SQLITE_OK || code == SQLITE_ROW) {
        code = sqlite3_step(prepared);
        if (code != SQLITE_ROW || !row)
            continue;
        QVariantList rowValues;
        for (int i = 0; i < sqlite3_column_count(prepared); ++i)
            rowValues.append(valueOf(prepared, i));
        row(rowValues);
    }
    // The code and the message of a failure stay.
    sqlite3_reset(prepared);
    sqlite3_finalize(m_prepared.value(statement));
    m_prepared.insert(statement, prepared);
    return code & 0xff;
}

} // namespace Tidel
