// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qsparqlbinding.h"

#include "sharedrecord_p.h"
#include "sparqllexer_p.h"

#include <QDateTime>
#include <QDebug>
#include <QLocale>

class QSparqlBindingPrivate : public QSharedData
{
public:
    enum class Kind : quint8 { FromValue, Resource, BlankNode };

    explicit QSparqlBindingPrivate(const QString &givenName = QString(),
                                   const QVariant &givenValue = QVariant())
        : name(givenName), value(givenValue)
    {
    }

    /// Replaces the value and all that describes it.
    void setTerm(const QVariant &newValue, Kind newKind)
    {
        value = newValue;
        kind = newKind;
        languageTag.clear();
        dataTypeUri.clear();
    }

    QString name;
    QVariant value;
    QString languageTag;
    QUrl dataTypeUri;
    Kind kind = Kind::FromValue;
};

using Kind = QSparqlBindingPrivate::Kind;

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

/// Returns the resource \a text as the store names it. QUrl would change some of these texts and reject
/// others.
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
    // The offsets of historical time zones include seconds, which ISO 8601 cannot express. A stream can
    // contain any offset; XML Schema has those up to 14 hours.
    const int offset = qAbs(time.offsetFromUtc()) <= 14 * 3600 ? time.offsetFromUtc() : 0;
    return time.toOffsetFromUtc(offset - offset % 60).toString(Qt::ISODate);
}

QString doubleText(double value)
{
    QString text = QString::number(value, 'g', QLocale::FloatingPointShortest);
    // Without a point, a whole number would be an integer, and Tracker refuses an exponent after it.
    if (!text.contains(QLatin1Char('.'))) {
        const int exponent = int(text.indexOf(QLatin1Char('e')));
        text.insert(exponent == -1 ? int(text.size()) : exponent, QLatin1String(".0"));
    }
    return text;
}

/// Returns the local name of the XML Schema type for values of the type \a metaType, or null if there is
/// none.
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

/// Returns the literal \a value in the form of its type. The text is empty if the literal is a quoted text.
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
        // NaN and the infinities have no form without quotes.
        return qIsFinite(value.toDouble()) ? doubleText(value.toDouble()) : QString();
    case QMetaType::QDateTime:
        return quoted(dateTimeText(value.toDateTime())) + QLatin1String("^^xsd:dateTime");
    case QMetaType::QDate: return quoted(value.toDate().toString(Qt::ISODate)) + QLatin1String("^^xsd:date");
    default: return QString();
    }
}

} // namespace

QSparqlBinding::QSparqlBinding(const QString &name, const QVariant &value)
    : d(name.isNull() && !value.isValid() ? nullptr : new QSparqlBindingPrivate(name, value))
{
}

QSparqlBinding::QSparqlBinding(const QSparqlBinding &other) = default;

QSparqlBinding::QSparqlBinding(QSparqlBinding &&other) noexcept = default;

QSparqlBinding::~QSparqlBinding() = default;

QSparqlBinding &QSparqlBinding::operator=(const QSparqlBinding &other) = default;

QSparqlBinding &QSparqlBinding::operator=(QSparqlBinding &&other) noexcept = default;

QString QSparqlBinding::name() const { return readable(d).name; }

void QSparqlBinding::setName(const QString &name) { writable(d).name = name; }

QVariant QSparqlBinding::value() const { return readable(d).value; }

void QSparqlBinding::setValue(const QVariant &value) { writable(d).setTerm(value, Kind::FromValue); }

void QSparqlBinding::setValue(const QString &value, const QUrl &dataTypeUri)
{
    setValue(value);
    setDataTypeUri(dataTypeUri);
}

QUrl QSparqlBinding::dataTypeUri() const
{
    const QSparqlBindingPrivate &record = readable(d);
    if (!record.dataTypeUri.isEmpty() || !isLiteral())
        return record.dataTypeUri;
    const char *type = schemaType(record.value.userType());
    return type ? QUrl(xsd + QLatin1String(type)) : QUrl();
}

void QSparqlBinding::setDataTypeUri(const QUrl &dataTypeUri) { writable(d).dataTypeUri = dataTypeUri; }

QString QSparqlBinding::languageTag() const { return readable(d).languageTag; }

void QSparqlBinding::setLanguageTag(const QString &languageTag) { writable(d).languageTag = languageTag; }

void QSparqlBinding::setResource(const QString &iri) { writable(d).setTerm(iri, Kind::Resource); }

void QSparqlBinding::setBlankNodeLabel(const QString &label) { writable(d).setTerm(label, Kind::BlankNode); }

bool QSparqlBinding::isUri() const
{
    const QSparqlBindingPrivate &record = readable(d);
    return record.kind == Kind::Resource
        || (record.kind == Kind::FromValue && record.value.userType() == QMetaType::QUrl);
}

bool QSparqlBinding::isLiteral() const { return isValid() && !isUri() && !isBlank(); }

bool QSparqlBinding::isBlank() const { return readable(d).kind == Kind::BlankNode; }

bool QSparqlBinding::isValid() const { return readable(d).value.isValid(); }

void QSparqlBinding::clear()
{
    if (d)
        d->setTerm(QVariant(), Kind::FromValue);
}

QString QSparqlBinding::toString() const
{
    const QSparqlBindingPrivate &record = readable(d);
    const QVariant &value = record.value;
    if (!value.isValid())
        return QString();
    if (isBlank())
        return QLatin1String("_:") + value.toString();
    if (isUri())
        return record.kind == Kind::Resource ? iri(value.toString()) : iri(value.toUrl());
    if (record.dataTypeUri.isEmpty() && record.languageTag.isEmpty()) {
        const QString bare = bareLiteral(value);
        return bare.isEmpty() ? quoted(value.toString()) : bare;
    }
    const bool isDateTime = value.userType() == QMetaType::QDateTime;
    const QString literal = quoted(isDateTime ? dateTimeText(value.toDateTime()) : value.toString());
    return record.languageTag.isEmpty() ? literal + QLatin1String("^^") + iri(record.dataTypeUri)
                                        : literal + QLatin1Char('@') + record.languageTag;
}

bool QSparqlBinding::operator==(const QSparqlBinding &other) const
{
    const QSparqlBindingPrivate &record = readable(d);
    const QSparqlBindingPrivate &otherRecord = readable(other.d);
    return record.kind == otherRecord.kind && record.name == otherRecord.name
        && record.value == otherRecord.value && record.languageTag == otherRecord.languageTag
        && dataTypeUri() == other.dataTypeUri();
}

QDebug operator<<(QDebug debug, const QSparqlBinding &binding)
{
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << "QSparqlBinding(" << binding.name() << ", " << binding.toString() << ")";
    return debug;
}
