// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLRESULT_H
#define QSPARQLRESULT_H

#include "qsparql.h"
#include "qsparqlbinding.h"
#include "qsparqlerror.h"
#include "qsparqlquery.h"
#include "qsparqlresultrow.h"

#include <QObject>

#include <memory>

class QSparqlResultPrivate;

/**
 * The result of a statement: rows, a truth value, or an error.
 *
 * At first the position is before the first row:
 * \code
 * const QScopedPointer<QSparqlResult> result(connection.exec(query));
 * result->waitForFinished();
 * while (result->next())
 *     use(result->stringValue(0));
 * \endcode
 * A result with an error has no rows. The caller of exec() owns the result. The result does not need the
 * connection.
 *
 * A result that is deleted later keeps its memory until then. The event QEvent::Close frees it at once: the
 * rows and the text of the statement are gone.
 */
class Q_SPARQL_EXPORT QSparqlResult : public QObject
{
    Q_OBJECT

public:
    ~QSparqlResult() override;

    /// Returns the statement that was run, with its values filled in.
    QString query() const;
    /// Returns the kind of statement that was run.
    QSparqlQuery::StatementType statementType() const;
    /// Returns true if the statement returns rows; otherwise returns false.
    bool isTable() const;
    /// Returns true if the statement returns a truth value; otherwise returns false.
    bool isBool() const;

    /// Blocks until the statement has finished.
    virtual void waitForFinished();
    /// Returns true if the statement has finished; otherwise returns false.
    virtual bool isFinished() const;

    /// Returns true if the statement failed; otherwise returns false.
    bool hasError() const;
    /// Returns the reason why the statement failed.
    QSparqlError lastError() const;

    /// Returns the index of the current row, or one of QSparql::Location.
    int pos() const;
    /// Returns true if there is a current row; otherwise returns false.
    bool isValid() const;
    /// Makes the row \a pos the current one and returns true. If there is no such row, moves before the first
    /// or after the last row and returns false.
    bool setPos(int pos);
    /// Moves to the next row. Returns true if there is one; otherwise returns false.
    bool next();
    /// Moves to the previous row. Returns true if there is one; otherwise returns false.
    bool previous();
    /// Moves to the first row. Returns true if there is one; otherwise returns false.
    bool first();
    /// Moves to the last row. Returns true if there is one; otherwise returns false.
    bool last();

    /// Returns the number of rows.
    virtual int size() const = 0;
    /// Returns the current row. It is empty if there is none.
    virtual QSparqlResultRow current() const = 0;
    /// Returns the binding at \a index in the current row. It is empty if there is none.
    virtual QSparqlBinding binding(int index) const = 0;
    /// Returns the value at \a index in the current row. It is invalid if there is none.
    virtual QVariant value(int index) const = 0;
    /// Returns value() at \a index as text.
    QString stringValue(int index) const;

    /// Returns the answer to an ASK statement.
    bool boolValue() const;

    /// Frees the text of the statement if \a event is QEvent::Close, and moves before the first row. A class
    /// with rows frees these too.
    bool event(QEvent *event) override;

protected:
    /// Constructs the result of the statement \a query.
    QSparqlResult(const QString &query, QSparqlQuery::StatementType type);

    /// Sets lastError() to \a error.
    void setLastError(const QSparqlError &error);
    /// Sets boolValue() to \a value.
    void setBoolValue(bool value);

private:
    const std::unique_ptr<QSparqlResultPrivate> d;
};

#endif
