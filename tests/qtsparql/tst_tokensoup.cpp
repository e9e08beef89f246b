// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagelog.h"
#include "sparqllexer_p.h"
#include "trackerdialect_p.h"

#include <QSparqlQuery>

#include <QDebug>
#include <QTest>

#include <array>
#include <random>

/// Tests random sequences of tokens. Every run has the same ones.
class TestTokenSoup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokensCoverTheText();
    void bridgeIsIdempotent();
    void protectedTextStays();
    void emptySubjectsGoAtOnce();
    void nothingBoundChangesNothing();
};

namespace {

constexpr int soups = 20000;

QString soup(std::mt19937 &random)
{
    static const std::array<QString, 52> pieces = {
        QStringLiteral("\""),
        QStringLiteral("'"),
        QStringLiteral("\"\"\""),
        QStringLiteral("'''"),
        QStringLiteral("\\"),
        QStringLiteral("\\\""),
        QStringLiteral("\\'"),
        QStringLiteral("\\\\"),
        QStringLiteral("<"),
        QStringLiteral(">"),
        QStringLiteral("<>"),
        QStringLiteral("<urn:a>"),
        QStringLiteral("</tmp/a b>"),
        QStringLiteral("<#"),
        QStringLiteral("#"),
        QStringLiteral("\n"),
        QStringLiteral("\r"),
        QStringLiteral(" "),
        QStringLiteral("\t"),
        QStringLiteral("?"),
        QStringLiteral("$"),
        QStringLiteral("?_a"),
        QStringLiteral("$_a"),
        QStringLiteral("?a"),
        QStringLiteral("?:a"),
        QStringLiteral("$:a"),
        QStringLiteral("?:"),
        QStringLiteral(":"),
        QStringLiteral("_"),
        QStringLiteral("a"),
        QStringLiteral("nie:title"),
        QStringLiteral("^^xsd:dateTime"),
        QStringLiteral("^^<http://www.w3.org/2001/XMLSchema#dateTime>"),
        QStringLiteral("^"),
        QStringLiteral("2026-11-21T10:00:00+02:00"),
        QStringLiteral("2026-11-21T10:00:00"),
        QStringLiteral("2026-11-21T10:00:00.5-01:30"),
        QStringLiteral("2026-11-21T10:00:00Z"),
        QStringLiteral("9999-12-31T23:59:59-02:00"),
        QStringLiteral("{"),
        QStringLiteral("}"),
        QStringLiteral("."),
        QStringLiteral(";"),
        QStringLiteral("&&"),
        QStringLiteral("<="),
        QStringLiteral("@de"),
        QStringLiteral("INSERT"),
        QStringLiteral("\u00e4"),
        QStringLiteral("\u65e5"),
        QString(QChar(0xd83d)),
        QString(QChar(0)),
        QStringLiteral("\\u0022")};
    std::uniform_int_distribution<int> length(0, 24);
    std::uniform_int_distribution<size_t> piece(0, pieces.size() - 1);
    QString text;
    for (int i = length(random); i > 0; --i)
        text += pieces[piece(random)];
    return text;
}

/// Returns the strings, IRIs and comments of \a text that the translation must not change, joined.
QString protectedText(const QString &text)
{
    QString result;
    SparqlLexer lexer(text);
    for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next()) {
        const bool isDate = token.kind == SparqlToken::String && token.text.contains(u"-");
        const bool isGuarded = token.kind == SparqlToken::String || token.kind == SparqlToken::Iri
            || token.kind == SparqlToken::Comment;
        if (isGuarded && !isDate && token.text != u"<>" && token.text != u"<urn:tidel:empty>")
            result += token.text.toString();
    }
    return result;
}

QString shown(const QString &text)
{
    QString result;
    QDebug(&result) << text;
    return result;
}

template <typename Check> void forEachSoup(Check check)
{
    std::mt19937 random(20261121);
    for (int i = 0; i < soups && !QTest::currentTestFailed(); ++i)
        check(soup(random));
}

} // namespace

void TestTokenSoup::tokensCoverTheText()
{
    forEachSoup([](const QString &text) {
        int end = 0;
        SparqlLexer lexer(text);
        for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next()) {
            QVERIFY2(token.start == end && !token.text.isEmpty(), qPrintable(shown(text)));
            end = token.end();
        }
        QVERIFY2(end == text.size(), qPrintable(shown(text)));
    });
}

void TestTokenSoup::bridgeIsIdempotent()
{
    int changed = 0;
    forEachSoup([&changed](const QString &text) {
        const QString sent = TrackerDialect::toTracker(text);
        QVERIFY2(TrackerDialect::toTracker(sent) == sent, qPrintable(shown(text)));
        QVERIFY2(TrackerDialect::isBlank(sent) == TrackerDialect::isBlank(text), qPrintable(shown(text)));
        changed += sent != text ? 1 : 0;
    });
    // The test would prove nothing if no text needed a translation.
    QVERIFY(changed > soups / 20);
}

void TestTokenSoup::protectedTextStays()
{
    forEachSoup([](const QString &text) {
        QVERIFY2(protectedText(TrackerDialect::toTracker(text)) == protectedText(text),
                 qPrintable(shown(text)));
    });
}

void TestTokenSoup::emptySubjectsGoAtOnce()
{
    int changed = 0;
    forEachSoup([&changed](const QString &text) {
        const QString update = QLatin1String("INSERT {") + text;
        const QString left = TrackerDialect::withoutEmptySubjects(update);
        QVERIFY2(TrackerDialect::withoutEmptySubjects(left) == left, qPrintable(shown(text)));
        changed += left != update ? 1 : 0;
    });
    QVERIFY(changed > soups / 100);
}

void TestTokenSoup::nothingBoundChangesNothing()
{
    MessageLog log;
    size_t placeholders = 0;
    forEachSoup([&](const QString &text) {
        QVERIFY2(QSparqlQuery(text).preparedQueryText() == text, qPrintable(shown(text)));
        SparqlLexer lexer(text);
        for (SparqlToken token = lexer.next(); token.kind != SparqlToken::End; token = lexer.next())
            placeholders += token.kind == SparqlToken::Placeholder ? 1 : 0;
    });
    QVERIFY(placeholders > soups / 20);
    QCOMPARE(log.take().size(), placeholders);
}

QTEST_GUILESS_MAIN(TestTokenSoup)
#include "tst_tokensoup.moc"
