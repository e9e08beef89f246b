// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SPARQLTOKENS_P_H
#define SPARQLTOKENS_P_H

#include "sparqllexer_p.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

/// The meaningful tokens of a query, which must exist as long as the object.
class Tokens
{
public:
    explicit Tokens(const QString &query)
    {
        SparqlLexer lexer(query);
        do {
            m_tokens.push_back(lexer.nextMeaningful());
        } while (m_tokens.back().kind != SparqlToken::End);
    }

    int size() const { return int(m_tokens.size()); }
    /// The token at \a index; the end of the query if there is none.
    const SparqlToken &operator[](int index) const { return m_tokens[size_t(qBound(0, index, size() - 1))]; }

    /// Returns the first index from \a from on at which \a sign stands; size() if there is none.
    int find(QChar sign, int from) const
    {
        while (from < size() && !isSign((*this)[from], sign))
            ++from;
        return from;
    }

    /// Returns true if the query is a SELECT whose columns are nothing but variables; otherwise returns
    /// false.
    bool hasPlainColumns(int firstBrace) const
    {
        int i = 1;
        while ((*this)[i].kind == SparqlToken::Variable)
            ++i;
        return isWord((*this)[0], "SELECT") && i > 1 && i + int(isWord((*this)[i], "WHERE")) == firstBrace;
    }

    /// Returns true if any token in the range is one of \a words; otherwise returns false.
    bool hasWord(std::initializer_list<const char *> words, int from, int end) const
    {
        return std::any_of(m_tokens.begin() + from, m_tokens.begin() + end, [&](const SparqlToken &token) {
            return std::any_of(words.begin(), words.end(),
                               [&](const char *word) { return isWord(token, word); });
        });
    }

    /// Returns true if a triple in the range certainly gives \a variable a value; otherwise returns false.
    /// What stands in parentheses gives none.
    bool binds(int from, int end, QStringView variable) const
    {
        int depth = 0;
        for (int i = from; i < end; ++i) {
            depth += isSign((*this)[i], u'(') - isSign((*this)[i], u')');
            if (depth == 0 && (*this)[i].text == variable)
                return true;
        }
        return false;
    }

    /// Returns how often \a text is a token of the range.
    int count(int from, int end, QStringView text) const
    {
        return int(std::count_if(m_tokens.begin() + from, m_tokens.begin() + end,
                                 [text](const SparqlToken &token) { return token.text == text; }));
    }

private:
    std::vector<SparqlToken> m_tokens;
};

#endif
