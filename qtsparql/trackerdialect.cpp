// SPDX-License-Identifier: LGPL-2.1-or-later
#include "trackerdialect_p.h"

#include "sparqllexer_p.h"

#include <QDateTime>
#include <QRegularExpression>

namespace {

const QLatin1String emptyIri("urn:tidel:empty");

/// Returns true if \a following begins with the datatype of a date-time; otherwise returns false.
bool isDateTimeType(SparqlLexer following)
{
    if (following.nextMeaningful().text != u"^" || following.nextMeaningful().text != u"^")
        return false;
    const SparqlToken type = following.nextMeaningful();
    if (type.kind == SparqlToken::Iri)
        return type.text == u"<http://www.w3.org/2001/XMLSchema#dateTime>";
    return type.text == u"xsd" && following.next().text == u":" && following.next().text == u"dateTime";
}

/// Returns the literal \a quoted as the same instant in UTC. Returns a null text if it needs no change.
QString inUtc(QStringView quoted)
{
    const qsizetype mark = quoted.size() >= 6 && quoted[1] == quoted[0] ? 3 : 1;
    QString value = quoted.mid(mark, quoted.size() - 2 * mark).toString();
    // QDateTime knows no fractions below milliseconds, so that the text is kept.
    QString fraction;
    const int point = int(value.indexOf(u'.'));
    for (int i = point; i != -1 && i < value.size() && (i == point || value[i].isDigit()); ++i)
        fraction += value[i];
    value.remove(point, fraction.size());

    const QDateTime time = QDateTime::fromString(value, Qt::ISODate);
    if (value.endsWith(u'Z') || !time.isValid())
        return QString();
    QString utc = time.toUTC().toString(Qt::ISODate);
    // The UTC time can be outside the years that the text can express.
    if (utc.isEmpty())
        return QString();
    return QLatin1Char('"') + utc.insert(utc.size() - 1, fraction) + QLatin1Char('"');
}

/// Returns what Tracker gets for \a token. Returns a null text if the token needs no change.
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

bool mayHaveEmptyIri(const QString &text) { return hasPair(text, u'<', u'>'); }

/// Returns true if each date-time in \a text is certainly in UTC; otherwise returns false.
bool hasOnlyUtc(const QString &text)
{
    const QLatin1String type("dateTime");
    const QLatin1String before("Z\"^^xsd:");
    for (auto at = text.indexOf(type); at != -1; at = text.indexOf(type, at + 1)) {
        if (!QStringView(text).left(at).endsWith(before))
            return false;
    }
    return true;
}

/// Returns true if toTracker() may have to change \a statement; otherwise returns false. Most updates are
/// long and need no change, and these searches are much faster than the lexer.
bool mayDiffer(const QString &statement)
{
    return mayHaveEmptyIri(statement) || hasPair(statement, u'?', u'_') || !hasOnlyUtc(statement);
}

/// Follows the tokens of an update and finds the subjects in its templates.
class TemplateReader
{
public:
    /// Returns true if the next token is the subject of a triples block.
    bool isAtSubject() const { return m_isTemplate && m_isAtSubject; }

    /// Continues with \a token, which is neither white space nor a comment.
    void pass(const SparqlToken &token)
    {
        m_isAtSubject = token.text == u"{" || token.text == u"}" || token.text == u".";
        if (token.text == u"{") {
            ++m_depth;
        } else if (token.text == u"}") {
            --m_depth;
            m_isTemplate = m_isTemplate && m_depth != 0;
        } else if (m_depth == 0) {
            // The braces of DELETE WHERE are a pattern. It would match more without some of its triples.
            m_isTemplate = isWord(token, "INSERT") || isWord(token, "DELETE")
                || (m_isTemplate && !isWord(token, "WHERE"));
        }
    }

private:
    int m_depth = 0;
    bool m_isTemplate = false;
    bool m_isAtSubject = false;
};

/// Returns the end of the number, the prefixed name or the language tag at \a start, or -1 if there is none.
/// The lexer divides numbers and names at their points.
int endOfWord(const QString &text, int start)
{
    static const QRegularExpression word(QStringLiteral("\\G(?:@[\\w-]+"
                                                        "|\\d+\\.[eE][+-]?\\d+"
                                                        "|\\d*\\.?\\d+(?:[eE][+-]?\\d+)?"
                                                        "|(?:[\\w:%-]|\\\\.)+(?:\\.+(?:[\\w:%-]|\\\\.)+)*)"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    return int(word.match(text, start).capturedEnd());
}

/// Returns the point or the brace after the triples block that \a lexer is in.
SparqlToken endOfTriples(const QString &update, SparqlLexer *lexer)
{
    int wordEnd = 0;
    for (SparqlToken token = lexer->nextMeaningful();; token = lexer->nextMeaningful()) {
        if (token.kind == SparqlToken::End)
            return token;
        if (token.kind != SparqlToken::Other || token.start < wordEnd)
            continue;
        wordEnd = qMax(wordEnd, endOfWord(update, token.start));
        if (token.start >= wordEnd && (token.text == u"." || token.text == u"{" || token.text == u"}"))
            return token;
    }
}

} // namespace

namespace TrackerDialect {

QString toTracker(const QString &statement)
{
    if (!mayDiffer(statement))
        return statement;
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

QString withoutEmptySubjects(const QString &update)
{
    if (!mayHaveEmptyIri(update))
        return update;
    QString result;
    int copied = 0;
    TemplateReader reader;
    SparqlLexer lexer(update);
    for (SparqlToken token = lexer.nextMeaningful(); token.kind != SparqlToken::End;
         token = lexer.nextMeaningful()) {
        if (token.text == u"<>" && reader.isAtSubject()) {
            result.append(update.constData() + copied, token.start - copied);
            token = endOfTriples(update, &lexer);
            copied = token.text == u"." ? token.end() : token.start;
        }
        reader.pass(token);
    }
    return copied == 0 ? update : result.append(update.constData() + copied, update.size() - copied);
}

QString iriFromTracker(const QString &iri) { return iri == emptyIri ? QString() : iri; }

bool isBlank(const QString &statement)
{
    return SparqlLexer(statement).nextMeaningful().kind == SparqlToken::End;
}

} // namespace TrackerDialect
