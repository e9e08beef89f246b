// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sparqltableresult_p.h"

#include <QEvent>

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
    if (!isValid())
        return QSparqlResultRow();
    QVector<QSparqlBinding> bindings;
    bindings.reserve(m_table.columnCount());
    for (int i = 0; i < m_table.columnCount(); ++i)
        bindings.append(binding(i));
    return QSparqlResultRow(std::move(bindings));
}

QSparqlBinding SparqlTableResult::binding(int index) const
{
    if (!hasColumn(index))
        return QSparqlBinding();
    const QString &name = m_table.names().at(index);
    const SparqlTable::Cell found = m_table.cell(pos(), index);
    if (found.kind == SparqlTable::CellKind::Literal)
        return QSparqlBinding(name, found.value);
    QSparqlBinding binding(name);
    if (found.kind == SparqlTable::CellKind::Resource)
        binding.setResource(found.value.toString());
    else
        binding.setBlankNodeLabel(found.value.toString());
    return binding;
}

QVariant SparqlTableResult::value(int index) const
{
    return hasColumn(index) ? m_table.cell(pos(), index).value : QVariant();
}

bool SparqlTableResult::event(QEvent *event)
{
    if (event->type() == QEvent::Close)
        m_table = SparqlTable();
    return QSparqlResult::event(event);
}

/// Returns true if there is a current row with a column \a index; otherwise returns false.
bool SparqlTableResult::hasColumn(int index) const
{
    return isValid() && index >= 0 && index < m_table.columnCount();
}
