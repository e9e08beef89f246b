// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DAMAGEDTABLES_P_H
#define TIDEL_DAMAGEDTABLES_P_H

#include "sqlitefile_p.h"

namespace Tidel {

/// A table of a database.
struct Table
{
    QString name;
    QStringList columns;
};

/// The table with the numbers and names of all resources.
Table namesTable();

/// Hears the values of a row. It can be called several times for one row.
using Row = std::function<void(const QVariantList &)>;

/// The tables whose description can be read; empty if none can be.
QVector<Table> tablesOf(SqliteFile &file);

/// Reads all rows of \a table that can be read: from the table, and if a part of it is damaged, also from
/// indexes that have the same columns.
void readRows(SqliteFile &file, const Table &table, const Row &row);

} // namespace Tidel

#endif
