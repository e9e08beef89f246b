// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SQLITEFILE_P_H
#define TIDEL_SQLITEFILE_P_H

#include "sqlitedatabase_p.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>

namespace Tidel {

/// A database file that is only read, below Tracker. The functions and collations that its tables name exist,
/// but order nothing.
class SqliteFile
{
public:
    /// What a function got from the file.
    enum Outcome {
        Done,
        Damaged, ///< A part of the file, or all of it, cannot be read.
        Failed ///< Something else; see error().
    };

    /// How the list of tables is read.
    enum Reading {
        Strict, ///< If a part of the list is damaged, nothing can be read.
        Tolerant ///< Then the tables in the other parts can be read. The file may also be shorter than it
                 ///< says.
    };

    explicit SqliteFile(const QString &path, Reading reading);

    /// What SQLite said of the last failure.
    QString error() const;

    /// Appends what is damaged to \a findings, at most a hundred lines.
    Outcome check(QStringList *findings);
    /// Calls \a row with the values of each row of \a statement, to whose parameter \a parameter is bound.
    Outcome read(const QString &statement, const std::function<void(const QVariantList &)> &row,
                 const QVariant &parameter = {});

private:
    Q_DISABLE_COPY(SqliteFile)

    Outcome outcomeOf(int code) const;

    SqliteDatabase m_database;
};

} // namespace Tidel

#endif
