// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLQUERY_H
#define QSPARQLQUERY_H

#include "qsparql.h"
#include "qsparqlbinding.h"
#include "qsparqlresultrow.h"

#include <QMap>
#include <QSharedDataPointer>
#include <QString>
#include <QVariant>

class QSparqlQueryPrivate;

/**
 * A SPARQL statement and the values of its placeholders.
 *
 * A placeholder is written `?:name` or `$:name`. In string literals, IRIs and comments there are no
 * placeholders.
 *
 * \code
 * QSparqlQuery query("SELECT ?t { ?:channel nie:title ?t }");
 * query.bindValue("channel", QUrl("urn:uuid:1"));
 * query.preparedQueryText(); // SELECT ?t { <urn:uuid:1> nie:title ?t }
 * \endcode
 *
 * The class is implicitly shared.
 */
class Q_SPARQL_EXPORT QSparqlQuery
{
public:
    /// The kinds of statements.
    enum StatementType {
        AskStatement, ///< a question that is answered with true or false
        ConstructStatement, ///< a query that returns triples
        DescribeStatement, ///< a query that returns the triples of a resource
        SelectStatement, ///< a query that returns rows
        InsertStatement, ///< an update, which can contain several operations, also deletions
        DeleteStatement ///< an update, run like InsertStatement
    };

    /// Constructs a statement of the kind \a type with the text \a query.
    explicit QSparqlQuery(const QString &query = QString(), StatementType type = SelectStatement);
    /// Constructs a copy of \a other.
    QSparqlQuery(const QSparqlQuery &other);
    /// Moves \a other, which is empty afterwards.
    QSparqlQuery(QSparqlQuery &&other) noexcept;
    ~QSparqlQuery();
    /// Assigns \a other.
    QSparqlQuery &operator=(const QSparqlQuery &other);
    /// Moves \a other.
    QSparqlQuery &operator=(QSparqlQuery &&other) noexcept;
    /// Exchanges this statement with \a other.
    void swap(QSparqlQuery &other) noexcept { d.swap(other.d); }

    /// Returns the text with its placeholders.
    QString query() const;
    /// Sets the text to \a query. The values stay.
    void setQuery(const QString &query);
    /// Returns the kind of statement.
    StatementType type() const;
    /// Sets the kind of statement to \a type.
    void setType(StatementType type);

    /// Binds \a value to `?:placeholder`. An invalid value unbinds it.
    void bindValue(const QString &placeholder, const QVariant &value);
    /// Binds the value of \a binding to the placeholder with the binding's name.
    void bindValue(const QSparqlBinding &binding);
    /// Binds every binding of \a row to the placeholder with its name.
    void bindValues(const QSparqlResultRow &row);
    /// Returns the value that is bound to \a placeholder. It is invalid if there is none.
    QVariant boundValue(const QString &placeholder) const;
    /// Returns all bound values by the names of their placeholders.
    QMap<QString, QVariant> boundValues() const;
    /// Unbinds all values.
    void unbindValues();

    /**
     * Returns the text with each placeholder replaced by its value in the form of
     * QSparqlBinding::toString(). A placeholder without a value stays, with a warning in the category
     * `tidel.sparql.query`. Placeholders inside values are not replaced.
     */
    QString preparedQueryText() const;

private:
    friend class QueryParameters;
    Q_DECL_HIDDEN const QMap<QString, QSparqlBinding> &bindings() const;

    QSharedDataPointer<QSparqlQueryPrivate> d;
};

Q_DECLARE_SHARED(QSparqlQuery)

/// Prints `QSparqlQuery(type, "text")` and the bound values.
Q_SPARQL_EXPORT QDebug operator<<(QDebug debug, const QSparqlQuery &query);

#endif
