// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sparqllexer_p.h"

#include <QStringList>
#include <QTest>

class TestLexer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokens_data();
    void tokens();
    void positions();
    void endStaysTheEnd();
    void meaningful();
    void copyReadsOnByItself();
};

namespace {

/// Returns a letter for each token: Space, Comment (#), String, Iri, Variable, Placeholder, Other.
QString kinds(const QString &text)
{
    static const char letters[] = {'.', ' ', '#', 'S', 'I', 'V', 'P', 'O'};
    QString result;
    SparqlLexer lexer(text);
    for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next())
        result += QLatin1Char(letters[token.kind]);
    return result;
}

QString joined(const QString &text)
{
    QString result;
    SparqlLexer lexer(text);
    for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next())
        result += token.text.toString();
    return result;
}

} // namespace

void TestLexer::tokens_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *text, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromLatin1(expected);
    };
    row("empty", "", "");
    row("space", " \t\r\n", " ");
    row("a query", "SELECT ?a { ?a nie:title \"x\" }", "O V O V OOO S O");
    row("variable of either mark", "?a $b", "V V");
    row("variable with an underscore", "?_a ?a_b ?1", "V V V");
    row("mark alone", "? $", "O O");
    row("two marks", "??a", "OV");
    row("placeholder", "?:a $:b", "P P");
    row("placeholder without a name", "?: $:", "OO OO");
    row("variable ends at a dot", "?a.?b", "VOV");
    row("path operator", "nie:title? ?a", "OOOO V");

    row("strings", "\"a\" 'b'", "S S");
    row("empty strings", "\"\"''", "SS");
    row("long strings", "\"\"\"a\"\"\" '''b'''", "S S");
    row("empty long strings", "\"\"\"\"\"\" ''''''", "S S");
    row("quotes in a long string", "\"\"\"a\"b\"\"c\"\"\"", "S");
    row("line break in a long string", "\"\"\"a\nb\"\"\"", "S");
    row("long string ends at the first three", "\"\"\"a\"\"\"\"", "SS");
    row("other quote", "\"'\" '\"'", "S S");
    row("escapes", "\"\\\"\" '\\'' \"\\\\\" '\\\\'", "S S S S");
    row("escaped quote in a long string", "\"\"\"\\\"\"\"\"", "S");
    row("language", "\"a\"@de-CH", "SOOOO");
    row("datatype", "\"a\"^^xsd:string", "SOOOOO");
    row("unterminated", "\"a b ?c", "S");
    row("unterminated long", "'''a 'b' ''", "S");
    row("unterminated, ends in a backslash", "\"a\\", "S");
    row("quote alone", "'", "S");
    row("string that a string follows", "\"a\"\"b\"", "SS");

    row("IRI", "<http://example.org/a?b=c#d>", "I");
    row("empty IRI", "<>", "I");
    row("relative IRI", "</tmp/a.mp3>", "I");
    row("IRIs side by side", "<a><b>", "II");
    row("IRI that looks like other things", "<?_a> <'> <#> <$a>", "I I I I");
    row("less than", "?a < ?b", "V O V");
    row("less and greater than", "?a < ?b && ?c > ?d", "V O V OO V O V");
    row("less than a placeholder", "(?a<?:b&&?c>?d)", "OVOPOOVOVO");
    row("less than a placeholder of the other mark", "(3<$:b&&?c>?d)", "OOOPOOVOVO");
    row("less than a placeholder, with blanks and a comment", "(f(?a) #\n<?:b&&?c>?d)", "OOOVO # OPOOVOVO");
    row("IRI that begins like a placeholder", "<?:a> <$:a> <?:a&&b>", "I I I");
    row("such an IRI behind a value", "?a <?:b&&c>", "V I");
    row("such an IRI in parentheses", "(<?:a>/<?:b>=<?:c>, <?:d>)", "OIOIOIO IO");
    row("such an IRI in braces in parentheses", "(?a{?b <?:c>}<?:d>)", "OVOV IOIO");
    row("such an IRI in square brackets", "([nie:links <?:a>])", "OOOOO IOO");
    row("such an IRI behind parentheses", "(?a) <?:b>", "OVO I");
    row("deep brackets", "((((?a<?:b&&?c>?d))))", "OOOOVOPOOVOVOOOO");
    row("less or equal", "?a<=3", "VOOO");
    row("blank inside", "<a b>", "OO OO");
    row("quote inside", "<a\">", "OOS");
    row("brace inside", "<a{b}>", "OOOOOO");
    row("backslash inside", "<a\\u0041>", "OOOOO");
    row("unterminated IRI", "<http", "OO");
    row("IRI in an IRI", "<a<b>", "OOI");

    row("comment", "# a ?b \"c\" <d>", "#");
    row("comment to the line's end", "#a\n?b#c\r?d", "# V# V");
    row("number sign in a string", "\"#\"?a", "SV");
    row("number sign in an IRI", "<a#b>?a", "IV");
    row("quote in a comment", "# it's\n'a'", "# S");

    row("escaped quote in a name", "nie:it\\'s ?a", "OOOOO V");
    row("escaped number sign in a name", "nie:a\\#b ?c", "OOOOO V");
    row("backslash at the end", "a\\", "OO");
    row("words and signs", "{ ?a a mfo:FeedMessage; }", "O V O OOOO O");
    row("outside ASCII", "?\u00e4 \u65e5\u672c \"\U0001f4fb\"", "V O S");
    QTest::newRow("null character") << QStringLiteral("?a") + QChar(0) + QStringLiteral("?b")
                                    << QStringLiteral("VOV");
}

void TestLexer::tokens()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(kinds(text), expected);
    QCOMPARE(joined(text), text);
}

void TestLexer::positions()
{
    const QString text = QStringLiteral("?a <b>'c'");
    SparqlLexer lexer(text);
    SparqlToken token = lexer.next();
    QCOMPARE(token.start, 0);
    QCOMPARE(token.end(), 2);
    QCOMPARE(token.text.toString(), QStringLiteral("?a"));
    lexer.next();
    token = lexer.next();
    QCOMPARE(token.start, 3);
    QCOMPARE(token.end(), 6);
    QCOMPARE(token.text.toString(), QStringLiteral("<b>"));
    token = lexer.next();
    QCOMPARE(token.end(), int(text.size()));
}

void TestLexer::endStaysTheEnd()
{
    SparqlLexer lexer(u"a");
    lexer.next();
    for (int i = 0; i < 3; ++i) {
        const SparqlToken token = lexer.next();
        QCOMPARE(token.kind, SparqlToken::End);
        QCOMPARE(token.start, 1);
        QVERIFY(token.text.isEmpty());
    }
}

void TestLexer::meaningful()
{
    SparqlLexer lexer(u" # one\n # two\n ?a #");
    QCOMPARE(lexer.nextMeaningful().text.toString(), QStringLiteral("?a"));
    QCOMPARE(lexer.nextMeaningful().kind, SparqlToken::End);
}

void TestLexer::copyReadsOnByItself()
{
    SparqlLexer lexer(u"?a ?b");
    lexer.next();
    SparqlLexer copy = lexer;
    copy.nextMeaningful();
    QCOMPARE(copy.next().kind, SparqlToken::End);
    QCOMPARE(lexer.nextMeaningful().text.toString(), QStringLiteral("?b"));
}

QTEST_GUILESS_MAIN(TestLexer)
#include "tst_sparqllexer.moc"
