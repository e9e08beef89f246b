// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SPARQLTABLE_P_H
#define SPARQLTABLE_P_H

#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <deque>
#include <memory>
#include <vector>

/**
 * The rows of a query's result. A hundred thousand rows need little memory: cells have no names, and texts
 * are kept in UTF-8, many in one block. cell() converts them.
 */
class SparqlTable
{
public:
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

    /// What a text stands for.
    enum class TextType : quint8 { Literal, Time, Resource, BlankNode };

    /// Constructs a table without rows whose columns have the names \a names.
    explicit SparqlTable(const QStringList &names = {}) : m_names(names) { }

    /// The names of the columns.
    const QStringList &names() const { return m_names; }
    /// Returns the number of columns.
    int columnCount() const { return int(m_names.size()); }
    /// Returns the number of rows.
    int rowCount() const { return m_names.isEmpty() ? 0 : int(m_values.size() / size_t(m_names.size())); }
    /// Returns the cell in \a row and \a column.
    Cell cell(int row, int column) const;

    /// Adds a cell without a value behind the last one. The cells of the first row come first.
    void append() { m_values.emplace_back(); }
    void append(bool value) { m_values.emplace_back(Type::Boolean, value); }
    void append(qint64 value) { m_values.emplace_back(Type::Integer, value); }
    void append(double value);
    /// Adds the text of \a length bytes at \a utf8.
    void append(TextType type, const char *utf8, size_t length);

    /// Gives all cells in \a column the value \a iri.
    void fillColumn(int column, const QByteArray &iri);
    /// Removes the rows for whose numbers \a isUnwanted returns true.
    template <typename Condition> void removeRows(Condition isUnwanted)
    {
        std::deque<Value> kept;
        const auto columns = columnCount();
        for (int row = 0; row < rowCount(); ++row) {
            const auto first = m_values.begin() + ptrdiff_t(row) * columns;
            if (!isUnwanted(row))
                kept.insert(kept.end(), first, first + columns);
        }
        m_values = std::move(kept);
    }

private:
    enum class Type : quint8 { Nothing, Boolean, Integer, Double, Literal, Time, Resource, BlankNode };

    struct Value
    {
        Value() = default;
        Value(Type valueType, qint64 value) : number(value), type(valueType) { }

        union {
            qint64 number = 0;
            double real;
            const char *utf8;
        };
        quint32 length = 0; // of the text
        Type type = Type::Nothing;
    };

    Value keep(Type type, const char *utf8, size_t length);

    QStringList m_names;
    std::deque<Value> m_values; // It grows without a copy.
    std::vector<std::unique_ptr<char[]>> m_blocks;
    char *m_free = nullptr; // in the last block
    size_t m_freeSize = 0;
};

#endif
