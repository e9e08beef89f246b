// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLBINDING_H
#define QSPARQLBINDING_H

#include "qsparql.h"

#include <QString>
#include <QUrl>
#include <QVariant>

class QDebug;

/**
 * One RDF term under a name: the value of a variable in a result row, or a value to be put into a statement.
 *
 * The value is an ordinary QVariant. A resource that the store returns is held as text with isUri() true, so
 * that every conversion of QVariant from text works on it; a QUrl is a resource too.
 */
class Q_SPARQL_EXPORT QSparqlBinding
{
public:
    explicit QSparqlBinding(const QString &name = QString(), const QVariant &value = QVariant());

    QString name() const;
    void setName(const QString &name);

    /// The value; invalid where the variable is unbound.
    QVariant value() const;
    /// Takes \a value as it is; a language tag or datatype set earlier is dropped.
    void setValue(const QVariant &value);
    /// Takes the literal \a value with the datatype \a dataTypeUri.
    void setValue(const QString &value, const QUrl &dataTypeUri);

    /// The datatype as set, else the one that the value's type implies; empty for resources.
    QUrl dataTypeUri() const;
    void setDataTypeUri(const QUrl &dataTypeUri);
    QString languageTag() const;
    void setLanguageTag(const QString &languageTag);

    /// Holds \a iri as text that isUri() knows as a resource.
    void setResource(const QString &iri);
    /// Holds \a label as the label of a blank node.
    void setBlankNodeLabel(const QString &label);

    bool isUri() const;
    bool isLiteral() const;
    bool isBlank() const;
    /// True when there is a value.
    bool isValid() const;

    /// Drops the value with its language tag and datatype; the name stays.
    void clear();

    /**
     * The term as it stands in a statement, quoted and escaped: `<http://example.org/a%20b>`,
     * `"say \"hi\""`, `42`, `true`, `"2026-11-21T10:00:00Z"^^xsd:dateTime`. Empty when there is no value.
     *
     * Literals escape `\t \n \r \b \f \" \' \\` and nothing else: characters outside ASCII stand as they are.
     */
    QString toString() const;

    /// Compares names, values, kinds, language tags and datatypes.
    bool operator==(const QSparqlBinding &other) const;
    bool operator!=(const QSparqlBinding &other) const { return !(*this == other); }

private:
    enum class Kind : quint8 { FromValue, Resource, BlankNode };

    QString m_name;
    QVariant m_value;
    QString m_languageTag;
    QUrl m_dataTypeUri;
    Kind m_kind = Kind::FromValue;
};

/// Prints `QSparqlBinding(name, term)`.
Q_SPARQL_EXPORT QDebug operator<<(QDebug debug, const QSparqlBinding &binding);

#endif
