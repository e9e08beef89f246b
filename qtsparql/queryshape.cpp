// SPDX-License-Identifier: LGPL-2.1-or-later
#include "queryshape_p.h"

#include "sparqllexer_p.h"

#include <QCache>

#include <array>

namespace {

// A program that composes texts of its own must not fill the memory.
constexpr int mostCharacters = 100000;

/// Follows the tokens of a query and says what the next one can be.
class TriplePosition
{
public:
    /// Continues with \a token, which is neither white space nor a comment.
    void pass(const SparqlToken &token)
    {
        if (isSign(token, u'{') || isSign(token, u'('))
            m_brackets = m_brackets << 1 | quint64(isSign(token, u'{'));
        else if (isSign(token, u'}') || isSign(token, u')'))
            m_brackets >>= 1;
        m_isInValues = isWord(token, "VALUES") || (m_isInValues && !isSign(token, u'}'));
        for (size_t i = m_last.size() - 1; i > 0; --i)
            m_last[i] = m_last[i - 1];
        m_last[0] = token;
    }

    bool isAtSubject() const
    {
        return isInTriples() && (isSign(last(), u'{') || isSign(last(), u'.') || isSign(last(), u'}'));
    }

    /// Returns the property if the next token is its object; otherwise returns an empty text.
    QString property() const
    {
        if (!isInTriples())
            return QString();
        const bool isIri = last().kind == SparqlToken::Iri;
        const bool isName = m_last[2].kind == SparqlToken::Other && isSign(m_last[1], u':')
            && m_last[2].end() == m_last[1].start && m_last[1].end() == last().start;
        const SparqlToken &before = m_last[isIri ? 1 : 3];
        // The class in a triple is a part of the query for Tracker. A path can end in an inverse property.
        const bool isType = last().text.contains(QLatin1String("type"), Qt::CaseInsensitive);
        if ((!isIri && !isName) || isType || QStringView(u"/|^!-").contains(before.text.left(1)))
            return QString();
        const QString name = last().text.toString();
        return isIri ? name.mid(1, name.size() - 2) : m_last[2].text.toString() + QLatin1Char(':') + name;
    }

private:
    const SparqlToken &last() const { return m_last[0]; }
    bool isInTriples() const { return (m_brackets & 1) != 0 && !m_isInValues; }

    std::array<SparqlToken, 4> m_last; // the newest first
    quint64 m_brackets = 0; // a bit for each open bracket, the lowest for the innermost; 1 is a brace
    bool m_isInValues = false;
};

} // namespace

QueryShape::QueryShape(const QString &statement)
    : mayHaveParameters(!statement.contains(QLatin1Char('~'))
                        && !statement.contains(QLatin1String("PREFIX"), Qt::CaseInsensitive)),
      filtered(FilteredValue::of(statement))
{
    TriplePosition position;
    SparqlLexer lexer(statement);
    for (SparqlToken token = lexer.nextMeaningful(); token.kind != SparqlToken::End;
         token = lexer.nextMeaningful()) {
        if (token.kind == SparqlToken::Placeholder)
            places.append({token.start, token.end(), token.text.mid(2).toString(), position.isAtSubject(),
                           position.property()});
        position.pass(token);
    }
}

std::shared_ptr<const QueryShape> QueryShape::of(const QString &statement)
{
    thread_local QCache<QString, std::shared_ptr<const QueryShape>> shapes(mostCharacters);
    if (const auto *known = shapes.object(statement))
        return *known;
    const auto shape = std::make_shared<const QueryShape>(statement);
    shapes.insert(statement, new std::shared_ptr<const QueryShape>(shape), int(statement.size()) + 1);
    return shape;
}
