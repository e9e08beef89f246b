// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SPARQLTABLE_P_H
#define SPARQLTABLE_P_H

#include <QStringList>
#include <QVariant>

#include <vector>

/// The rows of a query's result. Cells have no names, so that a million rows need little memory.
struct SparqlTable
{
    /// The kinds of values.
    enum class CellKind : quint8 {
        Literal, ///< a literal, or nothing if the value is invalid
        Resource, ///< an IRI as text
        BlankNode ///< the label of a blank node
    };

    /// A value in a row.
    struct Cell
    {
        QVariant value;
        CellKind kind = CellKind::Literal;
    };

    /// The names of the columns.
    QStringList names;
    /// The cells of the first row, then those of the second row, and so on.
    std::vector<Cell> cells;

    /// Returns the number of columns.
    int columnCount() const { return int(names.size()); }
    /// Returns the number of rows.
    int rowCount() const { return names.isEmpty() ? 0 : int(cells.size() / size_t(names.size())); }
    /// Returns the cell in \a row and \a column.
    const Cell &cell(int row, int column) const
    {
        return cells[size_t(row) * size_t(names.size()) + size_t(column)];
    }
    /// Returns the same cell for writing.
    Cell &cell(int row, int column) { return cells[size_t(row) * size_t(names.size()) + size_t(column)]; }
    /// Removes the rows for whose numbers \a isUnwanted returns true.
    template <typename Condition> void removeRows(Condition isUnwanted)
    {
        std::vector<Cell> kept;
        for (int row = 0; row < rowCount(); ++row) {
            for (int column = 0; column < columnCount() && !isUnwanted(row); ++column)
                kept.push_back(cell(row, column));
        }
        cells = std::move(kept);
    }
};

#endif
