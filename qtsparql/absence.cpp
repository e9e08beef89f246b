// SPDX-License-Identifier: LGPL-2.1-or-later
#include "absence_p.h"

#include "sparqltokens_p.h"

namespace {

/// `OPTIONAL { ... } . FILTER(!bound(?v))` in a query: positions of tokens.
struct Negation
{
    int optional = 0; ///< the word OPTIONAL
    int open = 0; ///< the brace after it
    int close = 0; ///< the brace that closes the pattern
    int end = 0; ///< after the filter
    QStringView variable;
};

/// Reads the negation whose OPTIONAL is at \a start. Returns false if there is none.
bool readNegation(const Tokens &tokens, int start, Negation *negation)
{
    negation->optional = start;
    negation->open = start + 1;
    negation->close = tokens.find(u'}', start);
    int next = negation->close + 1;
    if (isSign(tokens[next], u'.'))
        ++next;
    if (!isSign(tokens[start + 1], u'{') || !isWord(tokens[next++], "FILTER"))
        return false;
    int parentheses = 0;
    for (; isSign(tokens[next], u'('); ++next)
        ++parentheses;
    if (!isSign(tokens[next++], u'!') || !isWord(tokens[next++], "bound") || !isSign(tokens[next++], u'('))
        return false;
    negation->variable = tokens[next].text;
    if (parentheses == 0 || tokens[next++].kind != SparqlToken::Variable)
        return false;
    for (int i = 0; i <= parentheses; ++i) {
        if (!isSign(tokens[next++], u')'))
            return false;
    }
    negation->end = next;
    return true;
}

/// Returns true if the pattern has only triples and filters, the query gives its variables their values
/// before it, and nothing else needs those that it has alone; otherwise returns false.
bool isPlain(const Tokens &tokens, const Negation &negation, int firstBrace)
{
    const int begin = negation.open + 1;
    const bool isSimple = tokens.find(u'{', begin) >= negation.close
        && tokens.find(u'{', firstBrace + 1) == negation.open && tokens.find(u'}', 0) == negation.close
        && !tokens.hasWord({"bind", "bound", "coalesce", "if", "exists"}, begin, negation.close);
    if (!isSimple || !tokens.binds(begin, negation.close, negation.variable))
        return false;
    const int inPattern = tokens.count(begin, negation.close, negation.variable);
    if (tokens.count(0, tokens.size(), negation.variable) != inPattern + 1)
        return false;
    for (int i = begin; i < negation.close; ++i) {
        const QStringView name = tokens[i].text;
        if (tokens[i].kind != SparqlToken::Variable || name == negation.variable)
            continue;
        const bool isOwn = tokens.count(0, tokens.size(), name) == tokens.count(begin, negation.close, name);
        if (!isOwn && !tokens.binds(firstBrace + 1, negation.optional, name))
            return false;
    }
    return true;
}

QString rewritten(const QString &query, const Tokens &tokens, const Negation &negation)
{
    const int start = tokens[negation.optional].start;
    const int brace = tokens[negation.open].start;
    return query.left(start) + QLatin1String("FILTER NOT EXISTS ")
        + query.mid(brace, tokens[negation.close].end() - brace) + query.mid(tokens[negation.end - 1].end());
}

} // namespace

QString withNotExists(const QString &query)
{
    // Most queries have no negation, and this search is much faster than the lexer. `$v` is another name of
    // `?v`.
    if (!query.contains(QLatin1String("!bound"), Qt::CaseInsensitive) || query.contains(QLatin1Char('$')))
        return query;
    const Tokens tokens(query);
    const int firstBrace = tokens.find(u'{', 0);
    // The variables of the pattern would be columns.
    if (!isWord(tokens[0], "SELECT") || isSign(tokens[1], u'*') || isSign(tokens[2], u'*'))
        return query;
    for (int i = firstBrace + 1; i < tokens.size(); ++i) {
        Negation negation;
        if (isWord(tokens[i], "OPTIONAL") && readNegation(tokens, i, &negation))
            return isPlain(tokens, negation, firstBrace) ? rewritten(query, tokens, negation) : query;
    }
    return query;
}
