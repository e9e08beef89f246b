// SPDX-License-Identifier: LGPL-2.1-or-later
// Reads any text as a statement: the lexer, the placeholders and the translation for the store.
#include <fuzzing.h>
#include <sparqllexer_p.h>
#include <trackerdialect_p.h>

#include <QSparqlQuery>

namespace {

void ignore(QtMsgType, const QMessageLogContext &, const QString &) { }

struct Tokens
{
    QString guarded; // what stands in literals, IRIs and comments
    bool hasPlaceholder = false;
};

Tokens tokensOf(const QString &text)
{
    Tokens tokens;
    int end = 0;
    SparqlLexer lexer(text);
    for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next()) {
        require(token.start == end && !token.text.isEmpty(), "the tokens follow each other");
        require(token.text == QStringView(text).mid(token.start, token.text.size()),
                "a token is a part of the text");
        end = token.end();
        tokens.hasPlaceholder = tokens.hasPlaceholder || token.kind == SparqlToken::Placeholder;
        const bool isIri =
            token.kind == SparqlToken::Iri && token.text != u"<>" && token.text != u"<urn:tidel:empty>";
        // Date-times are translated.
        const bool isText = token.kind == SparqlToken::String && !token.text.contains(u'-');
        if (isIri || isText || token.kind == SparqlToken::Comment)
            tokens.guarded += token.text.toString();
    }
    require(end == text.size(), "the tokens cover the text");
    return tokens;
}

void checkTranslation(const QString &text, const Tokens &tokens)
{
    const QString sent = TrackerDialect::toTracker(text);
    require(TrackerDialect::toTracker(sent) == sent, "a translated statement needs no translation");
    require(TrackerDialect::isBlank(sent) == TrackerDialect::isBlank(text), "a blank statement stays blank");
    require(tokensOf(sent).guarded == tokens.guarded, "literals, IRIs and comments stay");
}

void checkEmptySubjects(const QString &update)
{
    const QString left = TrackerDialect::withoutEmptySubjects(update);
    require(left.size() <= update.size(), "empty subjects are taken out only");
    require(TrackerDialect::withoutEmptySubjects(left) == left, "no empty subject is left");
}

void checkPlaceholders(const QString &text, const Tokens &tokens)
{
    QSparqlQuery query(text);
    require(query.preparedQueryText() == text, "a statement without values stays as it is");
    // Each name in the text gets a value that is a name itself.
    SparqlLexer lexer(text);
    for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next()) {
        if (token.kind == SparqlToken::Placeholder)
            query.bindValue(token.text.mid(2).toString(), QStringLiteral("?:a <>"));
    }
    const QString filled = query.preparedQueryText();
    require(tokens.hasPlaceholder == (filled != text), "placeholders get their values");
    require(filled.count(QStringLiteral("?:a <>")) >= (tokens.hasPlaceholder ? 1 : 0),
            "values stay as they are");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QtMessageHandler silence = qInstallMessageHandler(ignore);
    Q_UNUSED(silence)
    const QString text = textOf(bytesOf(data, size));
    const Tokens tokens = tokensOf(text);
    checkTranslation(text, tokens);
    checkEmptySubjects(text);
    checkEmptySubjects(QLatin1String("INSERT {") + text);
    checkPlaceholders(text, tokens);
    return 0;
}
