// SPDX-License-Identifier: LGPL-2.1-or-later
#include "trackerdialect_p.h"

#include "sparqllexer_p.h"

#include <QDateTime>

namespace {

const QLatin1String emptyIri("urn:tidel:empty");

/// True when what follows a literal types it as a date-time.
bool isDateTimeType(SparqlLexer following)
{
    if (following.nextMeaningful().text != u"^" || following.nextMeaningful().text != u"^")
        return false;
    const SparqlToken type = following.nextMeaningful();
    if (type.kind == SparqlToken::Iri)
        return type.text == u"<http://www.w3.org/2001/XMLSchema#dateTime>";
    return type.text == u"xsd" && following.next().text == u":" && following.next().text == u"dateTime";
}

/// The literal \a quoted with its instant in UTC; a null text where it stands as it is.
QString inUtc(QStringView quoted)
{
    const QString value = quoted.mid(1, quoted.size() - 2).toString();
    const QDateTime time = QDateTime::fromString(value, Qt::ISODateWithMs);
    if (value.endsWith(u'Z') || !time.isValid())
        return QString();
    const auto format = time.time().msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs;
    return QLatin1Char('"') + time.toUTC().toString(format) + QLatin1Char('"');
}

/// What stands for \a token in a statement for Tracker; a null text where it stands as it is.
QString replacement(const SparqlToken &token, const SparqlLexer &following)
{
    switch (token.kind) {
    case SparqlToken::Variable:
        return token.text.startsWith(u"?_") ? QLatin1Char('$') + token.text.mid(1).toString() : QString();
    case SparqlToken::Iri:
        return token.text == u"<>" ? QLatin1Char('<') + emptyIri + QLatin1Char('>') : QString();
    case SparqlToken::String: return isDateTimeType(following) ? inUtc(token.text) : QString();
    default: return QString();
    }
}

} // namespace

namespace TrackerDialect {

QString toTracker(const QString &statement)
{
    QString result;
    int copied = 0;
    SparqlLexer lexer(statement);
    for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next()) {
        const QString text = replacement(token, lexer);
        if (text.isNull())
            continue;
        result.append(statement.constData() + copied, token.start - copied);
        result += text;
        copied = token.end();
    }
    return copied == 0 ? statement : result.append(statement.constData() + copied, statement.size() - copied);
}

QString iriFromTracker(const QString &iri) { return iri == emptyIri ? QString() : iri; }

bool isBlank(const QString &statement)
{
    return SparqlLexer(statement).nextMeaningful().kind == SparqlToken::End;
}

} // namespace TrackerDialect
