// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SQLITEDATABASE_P_H
#define TIDEL_SQLITEDATABASE_P_H

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

#include <functional>

struct sqlite3;
struct sqlite3_stmt;

namespace Tidel {

/// A connection to a database file of SQLite. Functions return a code of SQLite, without details.
class SqliteDatabase
{
public:
    using Row = std::function<void(const QVariantList &)>;

    /// Opens \a path with the flags of sqlite3_open_v2().
    SqliteDatabase(const QString &path, int flags);
    ~SqliteDatabase();

    /// The code of the opening.
    int opened() const { return m_opened; }
    /// What SQLite said of the last failure.
    QString error() const;
    sqlite3 *handle() const { return m_handle; }

    /// Runs one statement, whose parameters are \a values, and calls \a row with the values of each row of
    /// its answer. Returns the code of a failure, or SQLITE_DONE. Keeps the statement prepared.
    int run(const QByteArray &statement, const QVariantList &values = {}, const Row &row = {});

private:
    Q_DISABLE_COPY(SqliteDatabase)

    sqlite3 *m_handle = nullptr;
    int m_opened;
    QHash<QByteArray, sqlite3_stmt *> m_prepared;
};

} // namespace Tidel

#endif
