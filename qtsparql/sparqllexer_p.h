// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SPARQLLEXER_P_H
#define SPARQLLEXER_P_H

#include <QString>

/// Returns true if an IRI must not contain \a character; otherwise returns false.
bool isForbiddenInIri(QChar character);

/// Returns true if \a text contains \a first with \a second behind it; otherwise returns false. Updates are
/// long, and this search is much faster than the lexer and than Qt's search for a text.
bool hasPair(const QString &text, QChar first, QChar second);

/// A part of a SPARQL statement.
struct SparqlToken
{
    /// The kinds of tokens.
    enum Kind {
        End, ///< the end of the statement
        Space, ///< white space
        Comment, ///< a comment without its line break
        String, ///< a quoted literal, short or long, without language tag and datatype
        Iri, ///< an IRI reference with its angle brackets
        Variable, ///< `?name` or `$name`
        Placeholder, ///< `?:name` or `$:name`
        Other ///< a word, or any other single character
    };

    Kind kind = End;
    int start = 0; ///< the position in the statement
    QStringView text;

    /// Returns the position after the token.
    int end() const { return start + int(text.size()); }
};

/// Returns true if \a token is the word \a word in any case; otherwise returns false.
inline bool isWord(const SparqlToken &token, const char *word)
{
    return token.kind == SparqlToken::Other
        && token.text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

/// Returns true if \a token is the single character \a sign; otherwise returns false.
inline bool isSign(const SparqlToken &token, QChar sign)
{
    return token.kind == SparqlToken::Other && token.text == sign;
}

/**
 * Divides a statement into tokens. It distinguishes literals, IRIs, variables and comments from the rest.
 *
 * The tokens cover the whole text. The lexer reports no errors; the parser of the store does that.
 *
 * `<?:name` is the beginning of an IRI, except behind a value within parentheses: there it can be a
 * comparison with a placeholder.
 */
class SparqlLexer
{
public:
    /// Constructs a lexer for \a text, which must exist as long as the lexer.
    explicit SparqlLexer(QStringView text);

    /// Returns the next token.
    SparqlToken next();
    /// Returns the next token that is neither white space nor a comment.
    SparqlToken nextMeaningful();

private:
    struct Extent
    {
        SparqlToken::Kind kind;
        int length;
    };
    Extent extentOfNext() const;
    bool isComparison() const;
    void follow(const SparqlToken &token);
    Extent variableExtent() const;
    int spaceLength() const;
    int commentLength() const;
    int stringLength() const;
    int iriLength() const;
    int wordLength(int from) const;
    bool standsAt(int position, QStringView text) const;

    QStringView m_text;
    int m_position = 0;
    quint64 m_brackets = 0; // a bit for each open bracket, the lowest for the innermost; 1 is a parenthesis
    bool m_isAfterValue = false;
};

#endif
