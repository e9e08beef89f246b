// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dividedquery_p.h"

#include "sparqltokens_p.h"

#include <QSet>

namespace {

using Names = QSet<QString>;

/// The variables in the range.
Names variablesOf(const Tokens &tokens, int from, int end)
{
    Names names;
    for (int i = from; i < end; ++i) {
        if (tokens[i].kind == SparqlToken::Variable)
            names.insert(tokens[i].text.toString());
    }
    return names;
}

/// The names with a prefix in the range that are not classes.
Names propertiesOf(const Tokens &tokens, int from, int end)
{
    Names names;
    for (int i = from + 2; i < end; ++i) {
        if (isSign(tokens[i - 1], u':') && !isWord(tokens[i - 3], "a"))
            names.insert(tokens[i - 2].text.toString() + QLatin1Char(':') + tokens[i].text.toString());
    }
    return names;
}

/// Returns true if the query ends at \a from, but for points and one brace; otherwise returns false.
bool endsAt(const Tokens &tokens, int from)
{
    int braces = 0;
    for (; isSign(tokens[from], u'.') || isSign(tokens[from], u'}'); ++from)
        braces += isSign(tokens[from], u'}');
    return braces == 1 && tokens[from].kind == SparqlToken::End;
}

/// Returns the position of FILTER NOT EXISTS; -1 if there is none.
int findFilter(const Tokens &tokens, int from)
{
    for (int i = from; i < tokens.size(); ++i) {
        if (isWord(tokens[i], "FILTER") && isWord(tokens[i + 1], "NOT") && isWord(tokens[i + 2], "EXISTS"))
            return i;
    }
    return -1;
}

} // namespace

std::optional<DividedQuery> DividedQuery::of(const QString &query)
{
    if (!query.contains(QLatin1String("FILTER NOT EXISTS")))
        return std::nullopt;
    const Tokens tokens(query);
    const int firstBrace = tokens.find(u'{', 0);
    const int filter = findFilter(tokens, firstBrace);
    const int open = filter + 3;
    const int close = tokens.find(u'}', open);
    if (!tokens.hasPlainColumns(firstBrace) || filter == -1 || !isSign(tokens[open], u'{')
        || tokens.find(u'{', firstBrace + 1) != open || tokens.find(u'{', open + 1) < tokens.size()
        || !endsAt(tokens, close + 1))
        return std::nullopt;
    const Names shared = variablesOf(tokens, firstBrace, filter).intersect(variablesOf(tokens, open, close));
    const QString variable = tokens[1].text.toString();
    if (shared != Names{variable}
        || !propertiesOf(tokens, firstBrace, filter).intersects(propertiesOf(tokens, open, close)))
        return std::nullopt;
    DividedQuery divided;
    divided.m_candidates = query.left(tokens[filter].start) + QLatin1Char('}');
    divided.m_variable = variable;
    const int pattern = tokens[open].end();
    divided.m_pattern = query.mid(pattern, tokens[close].end() - pattern);
    return divided;
}

QString DividedQuery::excluded(const QStringList &resources) const
{
    QString values;
    for (const QString &resource : resources) {
        if (resource.isEmpty() || std::any_of(resource.begin(), resource.end(), isForbiddenInIri))
            return QString();
        values += QLatin1Char('<') + resource + QLatin1String("> ");
    }
    return QStringLiteral("SELECT %1 { VALUES %1 { %2} ").arg(m_variable, values) + m_pattern;
}
