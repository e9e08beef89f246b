// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SPARQLLEXER_P_H
#define SPARQLLEXER_P_H

#include <QString>

/// True for what may not stand between the angle brackets of an IRI.
bool isForbiddenInIri(QChar character);

/// A piece of a SPARQL statement.
struct SparqlToken
{
    enum Kind {
        End,
        Space,
        Comment,
        String, ///< a quoted literal, short or long, without its language tag or datatype
        Iri, ///< an IRI reference with its angle brackets
        Variable, ///< `?name` or `$name`
        Placeholder, ///< `?:name` or `$:name`
        Other ///< a single character of anything else, or a word
    };

    Kind kind = End;
    int start = 0;
    QStringView text;

    int end() const { return start + int(text.size()); }
};

/**
 * Cuts a statement into tokens, just far enough to know what is a literal, an IRI, a variable or a comment.
 * The tokens cover the whole text; nothing is refused here, since the store has its own parser for that.
 */
class SparqlLexer
{
public:
    /// \a text must outlive the lexer.
    explicit SparqlLexer(QStringView text);

    SparqlToken next();
    /// The next token that is neither white space nor a comment.
    SparqlToken nextMeaningful();

private:
    struct Extent
    {
        SparqlToken::Kind kind;
        int length;
    };
    Extent extentOfNext() const;
    Extent variableExtent() const;
    int spaceLength() const;
    int commentLength() const;
    int stringLength() const;
    int iriLength() const;
    int wordLength(int from) const;
    bool standsAt(int position, QStringView text) const;

    QStringView m_text;
    int m_position = 0;
};

#endif
