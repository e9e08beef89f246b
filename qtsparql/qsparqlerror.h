// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLERROR_H
#define QSPARQLERROR_H

#include "qsparql.h"

#include <QSharedDataPointer>
#include <QString>

class QDebug;
class QSparqlErrorPrivate;

/**
 * The reason why a connection or a statement failed.
 *
 * A default-constructed error means that nothing failed. The message is for people and ends with the message
 * of the store. Programs use type().
 *
 * The class is implicitly shared.
 */
class Q_SPARQL_EXPORT QSparqlError
{
public:
    /// The kinds of errors.
    enum ErrorType {
        NoError, ///< nothing failed
        ConnectionError, ///< the driver is unknown or the store cannot be opened
        StatementError, ///< the statement has a syntax error or names an unknown class or property
        TransactionError, ///< the update contradicts the ontology and was undone
        BackendError, ///< the store itself failed: the disk is full, a file is damaged, an access is
                      ///< interrupted
        UnknownError ///< another reason
    };

    /// Constructs an error. \a number is the error code of the store, or -1 if it has none.
    explicit QSparqlError(const QString &message = QString(), ErrorType type = NoError, int number = -1);
    /// Constructs a copy of \a other.
    QSparqlError(const QSparqlError &other);
    /// Moves \a other, which is no error afterwards.
    QSparqlError(QSparqlError &&other) noexcept;
    ~QSparqlError();
    /// Assigns \a other.
    QSparqlError &operator=(const QSparqlError &other);
    /// Moves \a other.
    QSparqlError &operator=(QSparqlError &&other) noexcept;
    /// Exchanges this error with \a other.
    void swap(QSparqlError &other) noexcept { d.swap(other.d); }

    /// Returns the message.
    QString message() const;
    /// Sets the message to \a message.
    void setMessage(const QString &message);
    /// Returns the kind of error.
    ErrorType type() const;
    /// Sets the kind of error to \a type.
    void setType(ErrorType type);
    /// Returns the error code of the store, or -1 if there is none.
    int number() const;
    /// Sets the error code of the store to \a number.
    void setNumber(int number);

    /// Returns true if type() is not NoError; otherwise returns false.
    bool isValid() const;

private:
    QSharedDataPointer<QSparqlErrorPrivate> d;
};

Q_DECLARE_SHARED(QSparqlError)

/// Prints `QSparqlError(type, number, "message")`.
Q_SPARQL_EXPORT QDebug operator<<(QDebug debug, const QSparqlError &error);

#endif
