// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLRESULTROW_H
#define QSPARQLRESULTROW_H

#include "qsparql.h"
#include "qsparqlbinding.h"

#include <QVector>

/**
 * One row of a result: its bindings in the order of the statement's variables.
 *
 * An index or a name that the row lacks yields an empty binding or an invalid value, never a failure.
 */
class Q_SPARQL_EXPORT QSparqlResultRow
{
public:
    QSparqlResultRow();

    void append(const QSparqlBinding &binding);
    void clear();

    bool isEmpty() const;
    int count() const;

    QSparqlBinding binding(int index) const;
    QSparqlBinding binding(const QString &name) const;
    QVariant value(int index) const;
    QVariant value(const QString &name) const;
    /// The name of the variable at \a index, without its question mark.
    QString variableName(int index) const;

    /// The first position of \a name, or -1.
    int indexOf(const QString &name) const;
    bool contains(const QString &name) const;

    bool operator==(const QSparqlResultRow &other) const;
    bool operator!=(const QSparqlResultRow &other) const { return !(*this == other); }

private:
    QVector<QSparqlBinding> m_bindings;
};

/// Prints `QSparqlResultRow(count)` and its bindings, one a line.
Q_SPARQL_EXPORT QDebug operator<<(QDebug debug, const QSparqlResultRow &row);

#endif
