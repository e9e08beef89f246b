// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QUERYPARAMETERS_P_H
#define QUERYPARAMETERS_P_H

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

#include <optional>

class QSparqlBinding;
class QSparqlQuery;
struct QueryShape;

/**
 * A query whose bound values are parameters as far as possible. Tracker parses such a text once for all
 * values.
 *
 * A value becomes a parameter if it is an IRI or a plain text and stands as the subject or the object of a
 * triple. There Tracker compares a parameter as it compares the value in the text. Elsewhere it does not: in
 * a FILTER or VALUES a parameter is a text, never a resource. All other values are in the text. A FILTER that
 * lets one resource through is taken out of the text, and the resource put into its triples.
 */
class QueryParameters
{
public:
    /// A value that is not in the text.
    struct Parameter
    {
        QByteArray value;
        QString property; ///< as the text names it; empty if the value is the subject
        bool isFiltered; ///< It stands for a variable, and must be a resource.
    };

    /// A column that has the same resource in all rows. The text has a number in its place.
    struct Column
    {
        int index;
        QByteArray resource;
    };

    /// Constructs an object without parameters.
    QueryParameters() = default;
    /// Reads \a query. There are no parameters if the query has nothing that can be one.
    explicit QueryParameters(const QSparqlQuery &query);

    /// Returns the text, in which the parameters are `~` and name().
    QString text() const { return m_text; }
    const QVector<Parameter> &parameters() const { return m_parameters; }
    const std::optional<Column> &column() const { return m_column; }
    /// Returns the name of the parameter with the number \a index.
    static QByteArray name(int index) { return "value" + QByteArray::number(index); }

private:
    bool parametrize(const QString &statement, const QueryShape &shape,
                     const QMap<QString, QSparqlBinding> &bindings, const QString &filtered = QString());
    QString term(const QSparqlBinding &binding, bool isSubject, const QString &property);

    QString m_text;
    QVector<Parameter> m_parameters;
    std::optional<Column> m_column;
};

#endif
