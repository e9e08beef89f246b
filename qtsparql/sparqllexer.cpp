// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sparqllexer_p.h"

namespace {

bool isWordCharacter(QChar character) { return character.isLetterOrNumber() || character == u'_'; }

} // namespace

bool hasPair(const QString &text, QChar first, QChar second)
{
    auto at = text.indexOf(first);
    while (at != -1 && (at + 1 == text.size() || text[at + 1] != second))
        at = text.indexOf(first, at + 1);
    return at != -1;
}

bool isForbiddenInIri(QChar character)
{
    switch (character.unicode()) {
    case u'<':
    case u'>':
    case u'"':
    case u'{':
    case u'}':
    case u'|':
    case u'^':
    case u'`':
    case u'\\': return true;
    default: return character.unicode() <= u' ';
    }
}

SparqlLexer::SparqlLexer(QStringView text) : m_text(text) { }

SparqlToken SparqlLexer::next()
{
    if (m_position >= m_text.size())
        return {SparqlToken::End, m_position, {}};
    const Extent extent = extentOfNext();
    const SparqlToken token{extent.kind, m_position, m_text.mid(m_position, extent.length)};
    m_position = token.end();
    follow(token);
    return token;
}

SparqlToken SparqlLexer::nextMeaningful()
{
    SparqlToken token = next();
    while (token.kind == SparqlToken::Space || token.kind == SparqlToken::Comment)
        token = next();
    return token;
}

SparqlLexer::Extent SparqlLexer::extentOfNext() const
{
    const QChar first = m_text[m_position];
    switch (first.unicode()) {
    case u'#': return {SparqlToken::Comment, commentLength()};
    case u'"':
    case u'\'': return {SparqlToken::String, stringLength()};
    case u'?':
    case u'$': return variableExtent();
    case u'\\':
        // An escaped character in a prefixed name. It can be a quote or a number sign.
        return {SparqlToken::Other, m_position + 1 < m_text.size() ? 2 : 1};
    case u'<':
        if (const int length = isComparison() ? 0 : iriLength())
            return {SparqlToken::Iri, length};
        break;
    default: break;
    }
    if (first.isSpace())
        return {SparqlToken::Space, spaceLength()};
    return {SparqlToken::Other, qMax(1, wordLength(m_position))};
}

/// Returns true if the angle bracket compares a value with a placeholder; otherwise returns false.
bool SparqlLexer::isComparison() const
{
    // `(?a<?:limit&&?b>?c)` has only characters that an IRI can contain. A comparison stands in parentheses;
    // pasted text, which can begin like a placeholder, stands between braces.
    const bool isPossible = m_isAfterValue && (m_brackets & 1);
    return isPossible && (standsAt(m_position + 1, u"?:") || standsAt(m_position + 1, u"$:"));
}

/// Remembers the brackets that are open behind \a token, and whether it can be the end of a value.
void SparqlLexer::follow(const SparqlToken &token)
{
    if (token.kind == SparqlToken::Space || token.kind == SparqlToken::Comment)
        return;
    const QChar first = token.text[0];
    m_isAfterValue = token.kind != SparqlToken::Other || first == u')' || isWordCharacter(first);
    if (token.kind != SparqlToken::Other)
        return;
    if (first == u'(' || first == u'{' || first == u'[')
        m_brackets = m_brackets << 1 | quint64(first == u'(');
    else if (first == u')' || first == u'}' || first == u']')
        m_brackets >>= 1;
}

SparqlLexer::Extent SparqlLexer::variableExtent() const
{
    const bool isPlaceholder = standsAt(m_position + 1, u":");
    const int mark = isPlaceholder ? 2 : 1;
    const int name = wordLength(m_position + mark);
    if (name == 0)
        return {SparqlToken::Other, 1};
    return {isPlaceholder ? SparqlToken::Placeholder : SparqlToken::Variable, mark + name};
}

int SparqlLexer::spaceLength() const
{
    int end = m_position;
    while (end < m_text.size() && m_text[end].isSpace())
        ++end;
    return end - m_position;
}

int SparqlLexer::commentLength() const
{
    int end = m_position;
    while (end < m_text.size() && m_text[end] != u'\n' && m_text[end] != u'\r')
        ++end;
    return end - m_position;
}

int SparqlLexer::stringLength() const
{
    const QChar quote = m_text[m_position];
    const QChar triple[] = {quote, quote, quote};
    const bool isLong = standsAt(m_position, QStringView(triple, 3));
    const QStringView terminator(triple, isLong ? 3 : 1);
    for (int end = m_position + int(terminator.size()); end < m_text.size(); ++end) {
        if (m_text[end] == u'\\')
            ++end;
        else if (m_text[end] == quote && standsAt(end, terminator))
            return end + int(terminator.size()) - m_position;
    }
    return int(m_text.size()) - m_position;
}

/// Returns 0 if the angle bracket does not begin an IRI.
int SparqlLexer::iriLength() const
{
    int end = m_position + 1;
    while (end < m_text.size() && !isForbiddenInIri(m_text[end]))
        ++end;
    return standsAt(end, u">") ? end + 1 - m_position : 0;
}

int SparqlLexer::wordLength(int from) const
{
    int end = from;
    while (end < m_text.size() && isWordCharacter(m_text[end]))
        ++end;
    return end - from;
}

bool SparqlLexer::standsAt(int position, QStringView text) const
{
    return position <= m_text.size() && m_text.mid(position, text.size()) == text;
}
