// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlbinding.h"

#include "sparqllexer_p.h"

#include <QDateTime>
#include <QDebug>
#include <QLocale>

namespace {

const QLatin1String xsd("http://www.w3.org/2001/XMLSchema#");

QString escaped(const QString &text)
{
    QString result;
    result.reserve(text.size() + 2);
    for (const QChar character : text) {
        switch (character.unicode()) {
        case u'\t': result += QLatin1String("\\t"); break;
        case u'\n': result += QLatin1String("\\n"); break;
        case u'\r': result += QLatin1String("\\r"); break;
        case u'\b': result += QLatin1String("\\b"); break;
        case u'\f': result += QLatin1String("\\f"); break;
        case u'"': result += QLatin1String("\\\""); break;
        case u'\'': result += QLatin1String("\\'"); break;
        case u'\\': result += QLatin1String("\\\\"); break;
        default: result += character;
        }
    }
    return result;
}

QString quoted(const QString &text) { return QLatin1Char('"') + escaped(text) + QLatin1Char('"'); }

QString iri(const QUrl &url)
{
    return QLatin1Char('<') + QString::fromLatin1(url.toEncoded()) + QLatin1Char('>');
}

/// A resource as the store names it: a QUrl would write some of them another way, and others not at all.
QString iri(const QString &text)
{
    QString result;
    for (const QChar character : text) {
        if (isForbiddenInIri(character))
            result += QStringLiteral("%%1").arg(character.unicode(), 2, 16, QLatin1Char('0')).toUpper();
        else
            result += character;
    }
    return QLatin1Char('<') + result + QLatin1Char('>');
}

QString dateTimeText(const QDateTime &time)
{
    // Zones of the past were off by seconds, which the text has no place for.
    const int offset = time.offsetFromUtc();
    return time.toOffsetFromUtc(offset - offset % 60).toString(Qt::ISODate);
}

QString doubleText(double value)
{
    QString text = QString::number(value, 'g', QLocale::FloatingPointShortest);
    // A whole number would be an integer, and Tracker refuses an exponent after one.
    if (!text.contains(QLatin1Char('.'))) {
        const int exponent = int(text.indexOf(QLatin1Char('e')));
        text.insert(exponent == -1 ? int(text.size()) : exponent, QLatin1String(".0"));
    }
    return text;
}

/// The local name of the XML Schema type that a value of this meta type has; null for others.
const char *schemaType(int metaType)
{
    switch (metaType) {
    case QMetaType::QString: return "string";
    case QMetaType::Bool: return "boolean";
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: return "integer";
    case QMetaType::Float:
    case QMetaType::Double: return "double";
    case QMetaType::QDateTime: return "dateTime";
    case QMetaType::QDate: return "date";
    default: return nullptr;
    }
}

/// A literal of a type that has a form of its own; an empty text for all that are written between quotes.
QString bareLiteral(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool: return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong: return QString::number(value.toLongLong());
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong: return QString::number(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        // Not-a-number and the infinities have no bare form.
        return qIsFinite(value.toDouble()) ? doubleText(value.toDouble()) : QString();
    case QMetaType::QDateTime:
        return quoted(dateTimeText(value.toDateTime())) + QLatin1String("^^xsd:dateTime");
    case QMetaType::QDate: return quoted(value.toDate().toString(Qt::ISODate)) + QLatin1String("^^xsd:date");
    default: return QString();
    }
}

} // namespace

QSparqlBinding::QSparqlBinding(const QString &name, const QVariant &value) : m_name(name), m_value(value) { }

QString QSparqlBinding::name() const { return m_name; }

void QSparqlBinding::setName(const QString &name) { m_name = name; }

QVariant QSparqlBinding::value() const { return m_value; }

void QSparqlBinding::setValue(const QVariant &value)
{
    clear();
    m_value = value;
}

void QSparqlBinding::setValue(const QString &value, const QUrl &dataTypeUri)
{
    setValue(value);
    m_dataTypeUri = dataTypeUri;
}

QUrl QSparqlBinding::dataTypeUri() const
{
    if (!m_dataTypeUri.isEmpty() || !isLiteral())
        return m_dataTypeUri;
    const char *type = schemaType(m_value.userType());
    return type ? QUrl(xsd + QLatin1String(type)) : QUrl();
}

void QSparqlBinding::setDataTypeUri(const QUrl &dataTypeUri) { m_dataTypeUri = dataTypeUri; }

QString QSparqlBinding::languageTag() const { return m_languageTag; }

void QSparqlBinding::setLanguageTag(const QString &languageTag) { m_languageTag = languageTag; }

void QSparqlBinding::setResource(const QString &iri)
{
    setValue(iri);
    m_kind = Kind::Resource;
}

void QSparqlBinding::setBlankNodeLabel(const QString &label)
{
    setValue(label);
    m_kind = Kind::BlankNode;
}

bool QSparqlBinding::isUri() const
{
    return m_kind == Kind::Resource || (m_kind == Kind::FromValue && m_value.userType() == QMetaType::QUrl);
}

bool QSparqlBinding::isLiteral() const { return isValid() && !isUri() && !isBlank(); }

bool QSparqlBinding::isBlank() const { return m_kind == Kind::BlankNode; }

bool QSparqlBinding::isValid() const { return m_value.isValid(); }

void QSparqlBinding::clear()
{
    m_value = QVariant();
    m_languageTag.clear();
    m_dataTypeUri.clear();
    m_kind = Kind::FromValue;
}

QString QSparqlBinding::toString() const
{
    if (!isValid())
        return QString();
    if (isBlank())
        return QLatin1String("_:") + m_value.toString();
    if (isUri())
        return m_kind == Kind::Resource ? iri(m_value.toString()) : iri(m_value.toUrl());
    if (m_dataTypeUri.isEmpty() && m_languageTag.isEmpty()) {
        const QString bare = bareLiteral(m_value);
        return bare.isEmpty() ? quoted(m_value.toString()) : bare;
    }
    const bool isDateTime = m_value.userType() == QMetaType::QDateTime;
    const QString literal = quoted(isDateTime ? dateTimeText(m_value.toDateTime()) : m_value.toString());
    return m_languageTag.isEmpty() ? literal + QLatin1String("^^") + iri(m_dataTypeUri)
                                   : literal + QLatin1Char('@') + m_languageTag;
}

bool QSparqlBinding::operator==(const QSparqlBinding &other) const
{
    return m_kind == other.m_kind && m_name == other.m_name && m_value == other.m_value
        && m_languageTag == other.m_languageTag && dataTypeUri() == other.dataTypeUri();
}

QDebug operator<<(QDebug debug, const QSparqlBinding &binding)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << "QSparqlBinding(" << binding.name() << ", " << binding.toString() << ")";
    return debug;
}
