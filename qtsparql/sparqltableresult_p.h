// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SPARQLTABLERESULT_P_H
#define SPARQLTABLERESULT_P_H

#include "qsparqlresult.h"
#include "sparqltable_p.h"

/// A result that holds all its rows and no resources of the store.
class SparqlTableResult : public QSparqlResult
{
    Q_OBJECT

public:
    /// Constructs the result of a statement that returned \a table.
    SparqlTableResult(const QString &query, QSparqlQuery::StatementType type, SparqlTable table);
    /// Constructs the result of a statement that failed with \a error.
    SparqlTableResult(const QString &query, QSparqlQuery::StatementType type, const QSparqlError &error);

    int size() const override;
    QSparqlResultRow current() const override;
    QSparqlBinding binding(int index) const override;
    QVariant value(int index) const override;
    bool event(QEvent *event) override;

private:
    bool hasColumn(int index) const;

    SparqlTable m_table;
};

#endif
