// SPDX-License-Identifier: LGPL-2.1-or-later
#include "filteredvalue_p.h"

#include "sparqltokens_p.h"

namespace {

/// `FILTER((?v = ?:x)) .` in a query: positions of tokens.
struct Equality
{
    int filter = 0; ///< the word FILTER
    int end = 0; ///< after the filter
    QStringView variable;
    QStringView placeholder;
};

/// Reads the filter at \a start. Returns false if it is another one.
bool readEquality(const Tokens &tokens, int start, Equality *equality)
{
    int next = start + 1;
    while (isSign(tokens[next], u'('))
        ++next;
    const int parentheses = next - start - 1;
    if (parentheses == 0 || tokens[next].kind != SparqlToken::Variable || !isSign(tokens[next + 1], u'=')
        || tokens[next + 2].kind != SparqlToken::Placeholder)
        return false;
    equality->filter = start;
    equality->variable = tokens[next].text;
    equality->placeholder = tokens[next + 2].text;
    next += 3;
    for (int i = 0; i < parentheses; ++i) {
        if (!isSign(tokens[next++], u')'))
            return false;
    }
    equality->end = next + int(isSign(tokens[next], u'.'));
    return true;
}

/// Returns true if the query has one group, whose triples alone use the variable outside the filter;
/// otherwise returns false.
bool isPlain(const Tokens &tokens, const Equality &equality, int firstBrace)
{
    const int close = tokens.find(u'}', firstBrace);
    if (!tokens.hasPlainColumns(firstBrace) || tokens.count(0, firstBrace, equality.variable) > 1
        || tokens.find(u'{', firstBrace + 1) < tokens.size() || tokens[close + 1].kind != SparqlToken::End
        || tokens.hasWord({"VALUES", "BIND", "EXISTS"}, firstBrace, close))
        return false;
    const int inFilters = tokens.count(equality.filter, equality.end, equality.variable);
    int depth = 0;
    int inTriples = 0;
    for (int i = firstBrace; i < close; ++i) {
        depth += isSign(tokens[i], u'(') - isSign(tokens[i], u')');
        inTriples += depth == 0 && tokens[i].text == equality.variable;
    }
    return inTriples > 0 && tokens.count(firstBrace, close, equality.variable) == inTriples + inFilters;
}

/// Returns the query with the placeholder in place of the variable and without the filter.
QString withoutFilter(const QString &query, const Tokens &tokens, const Equality &equality, int firstBrace)
{
    QString result;
    int copied = 0;
    const auto replace = [&](int from, int end, const QString &text) {
        result.append(query.constData() + copied, from - copied);
        result += text;
        copied = end;
    };
    for (int i = 1; tokens[i].kind != SparqlToken::End; ++i) {
        if (i == equality.filter) {
            i = equality.end - 1;
            replace(tokens[equality.filter].start, tokens[i].end(), QString());
        } else if (tokens[i].text == equality.variable) {
            const QString name = (i < firstBrace ? equality.variable : equality.placeholder).toString();
            replace(tokens[i].start, tokens[i].end(),
                    i < firstBrace ? QLatin1String("(1 AS ") + name + QLatin1Char(')') : name);
        }
    }
    return result.append(query.constData() + copied, query.size() - copied);
}

} // namespace

std::optional<FilteredValue> FilteredValue::of(const QString &query)
{
    // Most queries have no such filter, and this search is much faster than the lexer. `$v` is another name
    // of
    // `?v`.
    if (!query.contains(QLatin1String("FILTER")) || query.contains(QLatin1Char('$')))
        return std::nullopt;
    const Tokens tokens(query);
    const int firstBrace = tokens.find(u'{', 0);
    Equality equality;
    int filter = firstBrace;
    while (filter < tokens.size()
           && !(isWord(tokens[filter], "FILTER") && readEquality(tokens, filter, &equality)))
        ++filter;
    if (filter == tokens.size() || !isPlain(tokens, equality, firstBrace))
        return std::nullopt;
    FilteredValue value;
    value.text = withoutFilter(query, tokens, equality, firstBrace);
    value.placeholder = equality.placeholder.mid(2).toString();
    for (int i = 1; i < firstBrace && value.column == -1; ++i)
        value.column = tokens[i].text == equality.variable ? i - 1 : -1;
    return value;
}
