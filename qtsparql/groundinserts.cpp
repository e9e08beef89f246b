// SPDX-License-Identifier: LGPL-2.1-or-later
#include "groundinserts_p.h"

#include "sparqllexer_p.h"

#include <QStringList>

#include <algorithm>

namespace {

const QLatin1String rdfType("rdf:type");

bool isWord(const SparqlToken &token)
{
    return token.kind == SparqlToken::Other && (token.text[0].isLetterOrNumber() || token.text[0] == u'_');
}

bool isNumber(QStringView text)
{
    return !text.isEmpty() && text.size() < 19
        && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// Returns true if Tracker replaces anything before it parses \a update; otherwise returns false. It replaces
/// code points in comments, and behind another backslash, too.
bool hasCodePoints(const QString &update)
{
    for (int i = int(update.indexOf(u'\\')); i != -1; i = int(update.indexOf(u'\\', i + 1))) {
        if (i + 1 < update.size() && update[i + 1].toLower() == u'u')
            return true;
    }
    return false;
}

/// Returns the text between the quotes of \a quoted without escapes; a null text if it has another form.
QString unquoted(QStringView quoted)
{
    const bool isShort = quoted.size() >= 2 && quoted[0] == quoted[quoted.size() - 1]
        && (quoted.size() == 2 || quoted[1] != quoted[0]);
    if (!isShort || quoted.contains(u'\n') || quoted.contains(u'\r'))
        return QString();
    static const QString escapes = QStringLiteral("tnrbf\"'\\");
    static const QString meanings = QStringLiteral("\t\n\r\b\f\"'\\");
    QString text = quoted.mid(1, quoted.size() - 2).toString();
    for (int i = int(text.indexOf(u'\\')); i != -1; i = int(text.indexOf(u'\\', i + 1))) {
        const int known = i + 1 < text.size() ? int(escapes.indexOf(text[i + 1])) : -1;
        if (known == -1)
            return QString();
        text.replace(i, 2, meanings[known]);
    }
    return text;
}

/// Reads the triples between the braces of an INSERT.
class TripleReader
{
public:
    explicit TripleReader(SparqlLexer *lexer) : m_lexer(lexer) { next(); }

    /// Returns false if anything has another form than those that are read.
    bool read(QVector<GroundTriple> *triples)
    {
        while (!isSign(m_token, u'}')) {
            if (!readSubject(triples))
                return false;
            if (isSign(m_token, u'.'))
                next();
            else if (!isSign(m_token, u'}'))
                return false;
        }
        return true;
    }

private:
    void next()
    {
        m_end = m_token.end();
        m_token = m_lexer->nextMeaningful();
    }

    /// Returns true if nothing stands before the token that divides it from the last one.
    bool isAttached() const { return m_token.start == m_end && m_token.kind == SparqlToken::Other; }

    bool readSubject(QVector<GroundTriple> *triples)
    {
        GroundTriple triple;
        if (!readIri(&triple.subject))
            return false;
        m_isDescribed = m_isDescribed && triple.subject == m_subject;
        m_subject = triple.subject;
        do {
            while (isSign(m_token, u';'))
                next();
            if (isSign(m_token, u'.') || isSign(m_token, u'}'))
                return true;
            if (!readProperty(&triple.property) || (m_isDescribed && triple.property == rdfType))
                return false;
            m_isDescribed = triple.property != rdfType;
            do {
                if (isSign(m_token, u','))
                    next();
                if (!readObject(&triple))
                    return false;
                triples->append(triple);
            } while (isSign(m_token, u','));
        } while (isSign(m_token, u';'));
        return true;
    }

    bool readIri(QString *iri)
    {
        // Tracker would take another scheme for a prefix.
        static const QStringList schemes = {QStringLiteral("http:"), QStringLiteral("https:"),
                                            QStringLiteral("urn:"), QStringLiteral("file:")};
        if (m_token.kind != SparqlToken::Iri)
            return false;
        *iri = m_token.text.mid(1, m_token.text.size() - 2).toString();
        next();
        return std::any_of(schemes.begin(), schemes.end(),
                           [iri](const QString &scheme) { return iri->startsWith(scheme); });
    }

    bool readName(QString *name)
    {
        if (!isWord(m_token))
            return false;
        *name = m_token.text.toString();
        next();
        if (!isSign(m_token, u':') || !isAttached())
            return false;
        do {
            *name += m_token.text;
            next();
        } while (isAttached() && (isWord(m_token) || isSign(m_token, u'-')));
        // More characters can belong to names.
        return !isAttached() || QStringView(u".;,}").contains(m_token.text[0]);
    }

    bool readProperty(QString *property)
    {
        if (m_token.text == u"a") {
            next();
            *property = rdfType;
            return !isAttached();
        }
        return readName(property);
    }

    bool readObject(GroundTriple *triple)
    {
        switch (m_token.kind) {
        case SparqlToken::Iri: triple->kind = GroundTriple::Iri; return readIri(&triple->object);
        case SparqlToken::String: return readText(triple);
        case SparqlToken::Other: break;
        default: return false;
        }
        const bool isNegative = isSign(m_token, u'-');
        if (isNegative)
            next();
        const bool isBoolean = m_token.text == u"true" || m_token.text == u"false";
        if (!isBoolean && !isNumber(m_token.text)) {
            triple->kind = GroundTriple::Name;
            return !isNegative && readName(&triple->object);
        }
        triple->kind = GroundTriple::Literal;
        triple->object = QLatin1String(isNegative ? "-" : "") + m_token.text.toString();
        next();
        return !isAttached() || QStringView(u";,}").contains(m_token.text[0]);
    }

    bool readText(GroundTriple *triple)
    {
        triple->kind = GroundTriple::Literal;
        triple->object = unquoted(m_token.text);
        next();
        if (isSign(m_token, u'^')) {
            triple->kind = GroundTriple::DateTime;
            for (const char *each : {"^", "^", "xsd", ":", "dateTime"}) {
                if (m_token.text != QLatin1String(each))
                    return false;
                next();
            }
        }
        return !triple->object.isNull() && !isSign(m_token, u'@');
    }

    SparqlLexer *const m_lexer;
    SparqlToken m_token;
    int m_end = 0;
    QString m_subject;
    bool m_isDescribed = false; // the subject has other properties than its classes
};

/// Divides an update while it passes its tokens.
class Divider
{
public:
    explicit Divider(const QString &update) : m_update(update), m_lexer(update) { }

    QVector<UpdatePart> parts()
    {
        bool isDivided = false;
        for (SparqlToken token = m_lexer.nextMeaningful(); token.kind != SparqlToken::End;
             token = m_lexer.nextMeaningful()) {
            if (m_depth == 0 && m_isAtOperation && isWord(token, "INSERT") && takeInsert(token))
                isDivided = true;
            else if (!pass(token))
                return {};
        }
        appendText(m_update.size());
        return isDivided ? m_parts : QVector<UpdatePart>();
    }

private:
    /// Takes the INSERT at \a token out of the text if it is ground. Returns false if it is not.
    bool takeInsert(const SparqlToken &token)
    {
        SparqlLexer lexer = m_lexer;
        SparqlToken next = lexer.nextMeaningful();
        if (isWord(next, "DATA"))
            next = lexer.nextMeaningful();
        UpdatePart part;
        if (!isSign(next, u'{') || !TripleReader(&lexer).read(&part.triples) || part.triples.isEmpty())
            return false;
        SparqlLexer behind = lexer;
        next = behind.nextMeaningful();
        const bool isEnd = next.kind == SparqlToken::End || isWord(next, "INSERT") || isWord(next, "DELETE");
        if (!isEnd)
            return false;
        appendText(token.start);
        m_parts.append(part);
        m_copied = next.kind == SparqlToken::End ? int(m_update.size()) : next.start;
        m_lexer = lexer;
        return true;
    }

    /// Returns false if the whole update has to be read in one piece: prefixes and labels of blank nodes hold
    /// for all of it.
    bool pass(const SparqlToken &token)
    {
        if (token.text == u"_" || (m_depth == 0 && (isWord(token, "PREFIX") || isWord(token, "BASE"))))
            return false;
        if (isSign(token, u'{')) {
            ++m_depth;
        } else if (isSign(token, u'}')) {
            --m_depth;
            m_isAtOperation = m_depth == 0 && !m_isDeletion;
        } else if (m_depth == 0) {
            // A DELETE without a pattern belongs to the INSERT behind it.
            m_isDeletion = isWord(token, "DELETE");
            m_isAtOperation = false;
        }
        return true;
    }

    void appendText(qsizetype end)
    {
        const QString text = m_update.mid(m_copied, int(end) - m_copied);
        if (SparqlLexer(text).nextMeaningful().kind != SparqlToken::End)
            m_parts.append({text, {}});
    }

    const QString &m_update;
    SparqlLexer m_lexer;
    QVector<UpdatePart> m_parts;
    int m_copied = 0;
    int m_depth = 0;
    bool m_isAtOperation = true;
    bool m_isDeletion = false;
};

} // namespace

QVector<UpdatePart> groundInserts(const QString &update)
{
    return hasCodePoints(update) ? QVector<UpdatePart>() : Divider(update).parts();
}
