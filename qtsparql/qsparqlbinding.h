// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLBINDING_H
#define QSPARQLBINDING_H

#include "qsparql.h"

#include <QSharedDataPointer>
#include <QString>
#include <QUrl>
#include <QVariant>

class QDebug;
class QSparqlBindingPrivate;

/**
 * A named RDF term: the value of a variable in a result row, or a value for a placeholder of a statement.
 *
 * The value is a QVariant. A resource that the store returns is a text for which isUri() returns true, so
 * that QVariant's conversions from text work. A QUrl is a resource too.
 *
 * The class is implicitly shared.
 */
class Q_SPARQL_EXPORT QSparqlBinding
{
public:
    /// Constructs a binding of \a value to \a name.
    explicit QSparqlBinding(const QString &name = QString(), const QVariant &value = QVariant());
    /// Constructs a copy of \a other.
    QSparqlBinding(const QSparqlBinding &other);
    /// Moves \a other, which is empty afterwards.
    QSparqlBinding(QSparqlBinding &&other) noexcept;
    ~QSparqlBinding();
    /// Assigns \a other.
    QSparqlBinding &operator=(const QSparqlBinding &other);
    /// Moves \a other.
    QSparqlBinding &operator=(QSparqlBinding &&other) noexcept;
    /// Exchanges this binding with \a other.
    void swap(QSparqlBinding &other) noexcept { d.swap(other.d); }

    /// Returns the name.
    QString name() const;
    /// Sets the name to \a name.
    void setName(const QString &name);

    /// Returns the value. It is invalid if the variable is unbound.
    QVariant value() const;
    /// Sets the value to \a value and removes the language tag and the datatype.
    void setValue(const QVariant &value);
    /// Sets the value to the literal \a value with the datatype \a dataTypeUri.
    void setValue(const QString &value, const QUrl &dataTypeUri);

    /// Returns the datatype that was set, or else the datatype of the value's type. It is empty for a
    /// resource.
    QUrl dataTypeUri() const;
    /// Sets the datatype to \a dataTypeUri.
    void setDataTypeUri(const QUrl &dataTypeUri);
    /// Returns the language tag.
    QString languageTag() const;
    /// Sets the language tag to \a languageTag.
    void setLanguageTag(const QString &languageTag);

    /// Sets the value to the resource \a iri, which is kept as text.
    void setResource(const QString &iri);
    /// Sets the value to the blank node with the label \a label.
    void setBlankNodeLabel(const QString &label);

    /// Returns true if the value is a resource; otherwise returns false.
    bool isUri() const;
    /// Returns true if the value is a literal; otherwise returns false.
    bool isLiteral() const;
    /// Returns true if the value is a blank node; otherwise returns false.
    bool isBlank() const;
    /// Returns true if there is a value; otherwise returns false.
    bool isValid() const;

    /// Removes the value, its language tag and its datatype. The name stays.
    void clear();

    /**
     * Returns the term as a statement contains it, quoted and escaped: `<http://example.org/a%20b>`,
     * `"say \"hi\""`, `42`, `true`, `"2026-11-21T10:00:00Z"^^xsd:dateTime`. The text is empty if there is no
     * value.
     *
     * Literals escape `\t \n \r \b \f \" \' \\` only. Characters outside ASCII are not escaped.
     */
    QString toString() const;

    /// Returns true if the names, values, kinds, language tags and datatypes are equal; otherwise returns
    /// false.
    bool operator==(const QSparqlBinding &other) const;
    /// Returns true if the bindings differ; otherwise returns false.
    bool operator!=(const QSparqlBinding &other) const { return !(*this == other); }

private:
    QSharedDataPointer<QSparqlBindingPrivate> d;
};

Q_DECLARE_SHARED(QSparqlBinding)

/// Prints `QSparqlBinding(name, term)`.
Q_SPARQL_EXPORT QDebug operator<<(QDebug debug, const QSparqlBinding &binding);

#endif
