// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLRESULT_H
#define QSPARQLRESULT_H

#include "qsparql.h"
#include "qsparqlbinding.h"
#include "qsparqlerror.h"
#include "qsparqlquery.h"
#include "qsparqlresultrow.h"

#include <QObject>

/**
 * What a statement yields: rows, a truth value, or an error.
 *
 * A result starts before its first row:
 * \code
 * const QScopedPointer<QSparqlResult> result(connection.exec(query));
 * result->waitForFinished();
 * while (result->next())
 *     use(result->stringValue(0));
 * \endcode
 * After an error there are no rows. A result belongs to the caller of exec() and does not need the connection
 * any more.
 */
class Q_SPARQL_EXPORT QSparqlResult : public QObject
{
    Q_OBJECT

public:
    ~QSparqlResult() override;

    /// The statement as it was run, with its values filled in.
    QString query() const;
    QSparqlQuery::StatementType statementType() const;
    bool isTable() const;
    bool isBool() const;

    virtual void waitForFinished();
    virtual bool isFinished() const;

    bool hasError() const;
    QSparqlError lastError() const;

    /// The row that the result stands on, counted from 0, or one of QSparql::Location.
    int pos() const;
    /// True when the result stands on a row.
    bool isValid() const;
    /// Moves to the row \a pos; outside the rows it moves before the first or behind the last one and returns
    /// false.
    bool setPos(int pos);
    bool next();
    bool previous();
    bool first();
    bool last();

    /// The number of rows.
    virtual int size() const = 0;
    /// The current row, its binding or its value at \a index; empty where there is none.
    virtual QSparqlResultRow current() const = 0;
    virtual QSparqlBinding binding(int index) const = 0;
    virtual QVariant value(int index) const = 0;
    QString stringValue(int index) const;

    /// The answer to an ASK statement.
    bool boolValue() const;

protected:
    QSparqlResult(const QString &query, QSparqlQuery::StatementType type);

    void setLastError(const QSparqlError &error);
    void setBoolValue(bool value);

private:
    const QString m_query;
    const QSparqlQuery::StatementType m_type;
    QSparqlError m_error;
    int m_pos = QSparql::BeforeFirstRow;
    bool m_boolValue = false;
};

#endif
