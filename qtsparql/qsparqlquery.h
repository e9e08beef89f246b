// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLQUERY_H
#define QSPARQLQUERY_H

#include "qsparql.h"
#include "qsparqlbinding.h"
#include "qsparqlresultrow.h"

#include <QMap>
#include <QString>
#include <QVariant>

/**
 * A SPARQL statement and the values for its placeholders.
 *
 * A placeholder is written `?:name` or `$:name` and is recognised outside string literals, IRIs and comments.
 *
 * \code
 * QSparqlQuery query("SELECT ?t { ?:channel nie:title ?t }");
 * query.bindValue("channel", QUrl("urn:uuid:1"));
 * query.preparedQueryText(); // SELECT ?t { <urn:uuid:1> nie:title ?t }
 * \endcode
 */
class Q_SPARQL_EXPORT QSparqlQuery
{
public:
    enum StatementType {
        AskStatement,
        ConstructStatement,
        DescribeStatement,
        SelectStatement,
        InsertStatement, ///< an update; it may hold several operations, deletions among them
        DeleteStatement ///< an update as well; the two differ in name only
    };

    explicit QSparqlQuery(const QString &query = QString(), StatementType type = SelectStatement);

    QString query() const;
    void setQuery(const QString &query);
    StatementType type() const;
    void setType(StatementType type);

    /// Sets the value for `?:placeholder`; an invalid value unbinds it.
    void bindValue(const QString &placeholder, const QVariant &value);
    /// The same with the binding's name as the placeholder.
    void bindValue(const QSparqlBinding &binding);
    /// Binds every binding of \a row under its own name.
    void bindValues(const QSparqlResultRow &row);
    /// The value bound to \a placeholder; invalid where there is none.
    QVariant boundValue(const QString &placeholder) const;
    QMap<QString, QVariant> boundValues() const;
    /// Forgets all values.
    void unbindValues();

    /**
     * The statement with each bound value written as QSparqlBinding::toString() writes it. A placeholder
     * without a value stays as it is, with a warning in the category `tidel.sparql.query`. A value is never
     * searched again.
     */
    QString preparedQueryText() const;

private:
    QString m_query;
    QMap<QString, QSparqlBinding> m_bindings;
    StatementType m_type;
};

/// Prints `QSparqlQuery(type, "text")`, and the bound values.
Q_SPARQL_EXPORT QDebug operator<<(QDebug debug, const QSparqlQuery &query);

#endif
