// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SPARQLTABLE_P_H
#define SPARQLTABLE_P_H

#include <QStringList>
#include <QVariant>

#include <vector>

/// The answer to a query, its cells row by row. A cell keeps no name, so that a million rows stay affordable.
struct SparqlTable
{
    enum class CellKind : quint8 { Literal, Resource, BlankNode };

    struct Cell
    {
        QVariant value;
        CellKind kind = CellKind::Literal;
    };

    QStringList names;
    std::vector<Cell> cells;

    int columnCount() const { return int(names.size()); }
    int rowCount() const { return names.isEmpty() ? 0 : int(cells.size() / size_t(names.size())); }
    const Cell &cell(int row, int column) const
    {
        return cells[size_t(row) * size_t(names.size()) + size_t(column)];
    }
};

#endif
