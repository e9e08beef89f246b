// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLERROR_H
#define QSPARQLERROR_H

#include "qsparql.h"

#include <QString>

class QDebug;

/**
 * What went wrong with a connection or a statement.
 *
 * A default-constructed error means that nothing did. The message is meant for people and ends with the
 * store's own words; type() is what a program should look at.
 */
class Q_SPARQL_EXPORT QSparqlError
{
public:
    enum ErrorType {
        NoError, ///< nothing went wrong
        ConnectionError, ///< the driver is unknown or the store cannot be opened
        StatementError, ///< the statement is refused: its syntax, or a class or property that the store lacks
        TransactionError, ///< an update contradicts the ontology and was undone
        BackendError, ///< the store itself fails: disk full, damaged file, interrupted
        UnknownError ///< none of these
    };

    /// \a number is the store's own error code, -1 where it has none.
    explicit QSparqlError(const QString &message = QString(), ErrorType type = NoError, int number = -1);

    QString message() const;
    void setMessage(const QString &message);
    ErrorType type() const;
    void setType(ErrorType type);
    int number() const;
    void setNumber(int number);

    /// True when there is an error, that is, when type() is not NoError.
    bool isValid() const;

private:
    QString m_message;
    ErrorType m_type;
    int m_number;
};

/// Prints `QSparqlError(type, number, "message")`.
Q_SPARQL_EXPORT QDebug operator<<(QDebug debug, const QSparqlError &error);

#endif
