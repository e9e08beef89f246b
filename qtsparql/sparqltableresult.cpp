// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sparqltableresult_p.h"

SparqlTableResult::SparqlTableResult(const QString &query, QSparqlQuery::StatementType type,
                                     SparqlTable table)
    : QSparqlResult(query, type), m_table(std::move(table))
{
    if (isBool() && m_table.rowCount() > 0)
        setBoolValue(m_table.cell(0, 0).value.toBool());
}

SparqlTableResult::SparqlTableResult(const QString &query, QSparqlQuery::StatementType type,
                                     const QSparqlError &error)
    : QSparqlResult(query, type)
{
    setLastError(error);
}

int SparqlTableResult::size() const { return m_table.rowCount(); }

QSparqlResultRow SparqlTableResult::current() const
{
    QSparqlResultRow row;
    for (int i = 0; isValid() && i < m_table.columnCount(); ++i)
        row.append(binding(i));
    return row;
}

QSparqlBinding SparqlTableResult::binding(int index) const
{
    const SparqlTable::Cell *found = cell(index);
    if (!found)
        return QSparqlBinding();
    QSparqlBinding binding(m_table.names.at(index));
    switch (found->kind) {
    case SparqlTable::CellKind::Literal: binding.setValue(found->value); break;
    case SparqlTable::CellKind::Resource: binding.setResource(found->value.toString()); break;
    case SparqlTable::CellKind::BlankNode: binding.setBlankNodeLabel(found->value.toString()); break;
    }
    return binding;
}

QVariant SparqlTableResult::value(int index) const
{
    const SparqlTable::Cell *found = cell(index);
    return found ? found->value : QVariant();
}

const SparqlTable::Cell *SparqlTableResult::cell(int index) const
{
    return isValid() && index >= 0 && index < m_table.columnCount() ? &m_table.cell(pos(), index) : nullptr;
}
