// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLRESULTROW_H
#define QSPARQLRESULTROW_H

#include "qsparql.h"
#include "qsparqlbinding.h"

#include <QSharedDataPointer>
#include <QVector>

class QSparqlResultRowPrivate;

/**
 * A row of a result: its bindings in the order of the statement's variables.
 *
 * For an unknown index or name the functions return an empty binding or an invalid value.
 *
 * The class is implicitly shared.
 */
class Q_SPARQL_EXPORT QSparqlResultRow
{
public:
    /// Constructs an empty row.
    QSparqlResultRow();
    /// Constructs a copy of \a other.
    QSparqlResultRow(const QSparqlResultRow &other);
    /// Moves \a other, which is empty afterwards.
    QSparqlResultRow(QSparqlResultRow &&other) noexcept;
    ~QSparqlResultRow();
    /// Assigns \a other.
    QSparqlResultRow &operator=(const QSparqlResultRow &other);
    /// Moves \a other.
    QSparqlResultRow &operator=(QSparqlResultRow &&other) noexcept;
    /// Exchanges this row with \a other.
    void swap(QSparqlResultRow &other) noexcept { d.swap(other.d); }

    /// Appends \a binding.
    void append(const QSparqlBinding &binding);
    /// Removes all bindings.
    void clear();

    /// Returns true if the row has no bindings; otherwise returns false.
    bool isEmpty() const;
    /// Returns the number of bindings.
    int count() const;

    /// Returns the binding at \a index.
    QSparqlBinding binding(int index) const;
    /// Returns the first binding with the name \a name.
    QSparqlBinding binding(const QString &name) const;
    /// Returns the value of the binding at \a index.
    QVariant value(int index) const;
    /// Returns the value of the first binding with the name \a name.
    QVariant value(const QString &name) const;
    /// Returns the name of the variable at \a index, without its question mark.
    QString variableName(int index) const;

    /// Returns the position of the first binding with the name \a name, or -1 if there is none.
    int indexOf(const QString &name) const;
    /// Returns true if there is a binding with the name \a name; otherwise returns false.
    bool contains(const QString &name) const;

    /// Returns true if the rows have equal bindings in the same order; otherwise returns false.
    bool operator==(const QSparqlResultRow &other) const;
    /// Returns true if the rows differ; otherwise returns false.
    bool operator!=(const QSparqlResultRow &other) const { return !(*this == other); }

private:
    friend class SparqlTableResult;
    explicit QSparqlResultRow(QVector<QSparqlBinding> bindings);

    QSharedDataPointer<QSparqlResultRowPrivate> d;
};

Q_DECLARE_SHARED(QSparqlResultRow)

/// Prints `QSparqlResultRow(count)` and its bindings, one on each line.
Q_SPARQL_EXPORT QDebug operator<<(QDebug debug, const QSparqlResultRow &row);

#endif
