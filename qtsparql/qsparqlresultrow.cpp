// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlresultrow.h"

#include <QDebug>

#include <algorithm>

QSparqlResultRow::QSparqlResultRow() = default;

void QSparqlResultRow::append(const QSparqlBinding &binding) { m_bindings.append(binding); }

void QSparqlResultRow::clear() { m_bindings.clear(); }

bool QSparqlResultRow::isEmpty() const { return m_bindings.isEmpty(); }

int QSparqlResultRow::count() const { return int(m_bindings.size()); }

QSparqlBinding QSparqlResultRow::binding(int index) const { return m_bindings.value(index); }

QSparqlBinding QSparqlResultRow::binding(const QString &name) const { return binding(indexOf(name)); }

QVariant QSparqlResultRow::value(int index) const { return binding(index).value(); }

QVariant QSparqlResultRow::value(const QString &name) const { return binding(name).value(); }

QString QSparqlResultRow::variableName(int index) const { return binding(index).name(); }

int QSparqlResultRow::indexOf(const QString &name) const
{
    const auto found =
        std::find_if(m_bindings.cbegin(), m_bindings.cend(),
                     [&name](const QSparqlBinding &binding) { return binding.name() == name; });
    return found == m_bindings.cend() ? -1 : int(found - m_bindings.cbegin());
}

bool QSparqlResultRow::contains(const QString &name) const { return indexOf(name) != -1; }

bool QSparqlResultRow::operator==(const QSparqlResultRow &other) const
{
    return m_bindings == other.m_bindings;
}

QDebug operator<<(QDebug debug, const QSparqlResultRow &row)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "QSparqlResultRow(" << row.count() << ")";
    for (int i = 0; i < row.count(); ++i)
        debug << "\n " << row.binding(i);
    return debug;
}
