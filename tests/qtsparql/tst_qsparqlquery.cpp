// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagelog.h"

#include <QSparqlQuery>

#include <QDateTime>
#include <QDebug>
#include <QTest>

class TestQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAnEmptySelectAtFirst();
    void keepsTextAndType();
    void placeholder_data();
    void placeholder();
    void everyTypeOfValue();
    void valueIsNeverSearchedAgain();
    void unboundIsWarnedOf();
    void boundIsNotWarnedOf();
    void boundValues();
    void bindingKeepsItsTerm();
    void bindRow();
    void bindingAgainReplaces();
    void invalidValueUnbinds();
    void setQueryKeepsTheValues();
    void longStatement();
    void debugText();
};

namespace {

QSparqlQuery query(const QString &text)
{
    QSparqlQuery query(text);
    query.bindValue(QStringLiteral("a"), 1);
    query.bindValue(QStringLiteral("b2_c"), QStringLiteral("x"));
    return query;
}

QString prepared(const char *text) { return query(QString::fromUtf8(text)).preparedQueryText(); }

} // namespace

void TestQuery::isAnEmptySelectAtFirst()
{
    const QSparqlQuery query;
    QVERIFY(query.query().isEmpty());
    QVERIFY(query.preparedQueryText().isEmpty());
    QVERIFY(query.boundValues().isEmpty());
    QCOMPARE(query.type(), QSparqlQuery::SelectStatement);
}

void TestQuery::keepsTextAndType()
{
    QSparqlQuery query(QStringLiteral("ASK {}"), QSparqlQuery::AskStatement);
    QCOMPARE(query.query(), QStringLiteral("ASK {}"));
    QCOMPARE(query.type(), QSparqlQuery::AskStatement);
    query.setType(QSparqlQuery::DeleteStatement);
    QCOMPARE(query.type(), QSparqlQuery::DeleteStatement);
    query.setQuery(QStringLiteral("DELETE {}"));
    QCOMPARE(query.query(), QStringLiteral("DELETE {}"));
}

void TestQuery::placeholder_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *statement, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(statement) << QString::fromUtf8(expected);
    };
    const auto unchanged = [&row](const char *name, const char *text) { row(name, text, text); };

    row("question mark", "SELECT ?s { ?s ?p ?:a }", "SELECT ?s { ?s ?p 1 }");
    row("dollar", "SELECT $s { $s $p $:a }", "SELECT $s { $s $p 1 }");
    row("long name", "{ ?s ?p ?:b2_c }", "{ ?s ?p \"x\" }");
    row("twice", "?:a ?:a", "1 1");
    row("alone", "?:a", "1");
    row("side by side", "?:a$:a", "11");
    row("before a bracket", "FILTER(?x=?:a)", "FILTER(?x=1)");
    row("before a point", "?s ?p ?:a.", "?s ?p 1.");
    row("the whole name counts", "?:a ?x", "1 ?x");

    unchanged("variable of that name", "?a $a");
    unchanged("nothing behind the colon", "?: $:");
    unchanged("colon alone", ":a");

    unchanged("short string", "\"?:a $:a\"");
    unchanged("single quotes", "'?:a $:a'");
    unchanged("escaped quote", "\"\\\" ?:a\"");
    unchanged("escaped single quote", "'\\' ?:a'");
    row("escaped backslash", "\"\\\\\" ?:a", "\"\\\\\" 1");
    unchanged("other quote inside", "\"' ?:a\"");
    row("behind a string", "\"x\"?:a", "\"x\"1");
    row("behind an empty string", "\"\" ?:a", "\"\" 1");
    unchanged("long string", "\"\"\"one \" two \"\" ?:a\n$:a\"\"\"");
    unchanged("long string, single quotes", "'''one ' two '' ?:a\n$:a'''");
    unchanged("escape in a long string", "\"\"\"\\\"\"\" ?:a\"\"\"");
    row("behind a long string", "\"\"\" \" \"\"\" ?:a", "\"\"\" \" \"\"\" 1");
    unchanged("unterminated string", "\"?:a");
    unchanged("unterminated long string", "\"\"\" ?:a \"\"");

    unchanged("IRI", "<http://example.org/?:a>");
    unchanged("IRI that begins like a placeholder",
              "INSERT { <urn:m> nie:links <?:a> ; nie:title <$:a&&b> }");
    unchanged("IRI with a number sign", "<http://example.org/#x?:a>");
    row("behind an IRI with a number sign", "<http://example.org/#x> ?:a", "<http://example.org/#x> 1");
    row("less than", "FILTER(?x < ?:a && ?y > 3)", "FILTER(?x < 1 && ?y > 3)");
    row("less than without blanks", "FILTER(?x<?:a&&?y>?:a)", "FILTER(?x<1&&?y>1)");
    row("less than, with dollars", "FILTER(?x<$:a&&?y>$:a)", "FILTER(?x<1&&?y>1)");
    row("less or equal", "FILTER(?x<=?:a && ?y>=?:a)", "FILTER(?x<=1 && ?y>=1)");

    unchanged("comment", "# ?:a $:a");
    row("behind a comment", "# ?:a ' \" <\n?:a", "# ?:a ' \" <\n1");
    row("behind a comment and a carriage return", "# ?:a\r?:a", "# ?:a\r1");
    row("number sign in a string", "\"#\" ?:a", "\"#\" 1");
    row("quote in a prefixed name", "nie:o\\'x ?:a nie:o\\\"x", "nie:o\\'x 1 nie:o\\\"x");
    row("outside ASCII", "\"\u00e4\U0001f4fb\" ?:a", "\"\u00e4\U0001f4fb\" 1");
}

void TestQuery::placeholder()
{
    QFETCH(QString, statement);
    QFETCH(QString, expected);
    const QSparqlQuery filled = query(statement);
    QCOMPARE(filled.preparedQueryText(), expected);
    QCOMPARE(filled.query(), statement);
}

void TestQuery::everyTypeOfValue()
{
    QSparqlQuery query(QStringLiteral("?:url ?:text ?:number ?:truth ?:real ?:time"));
    query.bindValue(QStringLiteral("url"), QUrl(QStringLiteral("http://example.org/a b")));
    query.bindValue(QStringLiteral("text"), QStringLiteral("say \"hi\"\n"));
    query.bindValue(QStringLiteral("number"), 42);
    query.bindValue(QStringLiteral("truth"), false);
    query.bindValue(QStringLiteral("real"), 0.5);
    query.bindValue(QStringLiteral("time"), QDateTime(QDate(2026, 11, 21), QTime(10, 0), Qt::UTC));
    QCOMPARE(query.preparedQueryText(),
             QStringLiteral("<http://example.org/a%20b> \"say \\\"hi\\\"\\n\" 42 false 0.5 "
                            "\"2026-11-21T10:00:00Z\"^^xsd:dateTime"));
}

void TestQuery::valueIsNeverSearchedAgain()
{
    QSparqlQuery query(QStringLiteral("?:one ?:two"));
    query.bindValue(QStringLiteral("one"), QStringLiteral("?:two $:two"));
    query.bindValue(QStringLiteral("two"), QUrl(QStringLiteral("urn:?:one")));
    QCOMPARE(query.preparedQueryText(), QStringLiteral("\"?:two $:two\" <urn:?:one>"));
}

void TestQuery::unboundIsWarnedOf()
{
    MessageLog log;
    const QSparqlQuery half = query(QStringLiteral("?:a ?:missing $:also \"?:in_a_string\""));
    QCOMPARE(half.preparedQueryText(), QStringLiteral("1 ?:missing $:also \"?:in_a_string\""));

    const std::vector<LoggedMessage> messages = log.take();
    QCOMPARE(messages.size(), size_t(2));
    QCOMPARE(messages[0].type, QtWarningMsg);
    QVERIFY(messages[0].text.contains(QStringLiteral("missing")));
    QCOMPARE(messages[1].type, QtWarningMsg);
    QVERIFY(messages[1].text.contains(QStringLiteral("also")));
}

void TestQuery::boundIsNotWarnedOf()
{
    MessageLog log;
    QCOMPARE(prepared("SELECT ?x { ?x ?p ?:a }"), QStringLiteral("SELECT ?x { ?x ?p 1 }"));
    QVERIFY(log.take().empty());
}

void TestQuery::boundValues()
{
    QSparqlQuery bound = query(QStringLiteral("?:a"));
    QCOMPARE(bound.boundValue(QStringLiteral("a")), QVariant(1));
    QCOMPARE(bound.boundValue(QStringLiteral("b2_c")), QVariant(QStringLiteral("x")));
    QVERIFY(!bound.boundValue(QStringLiteral("none")).isValid());
    QCOMPARE(bound.boundValues().keys(), QStringList({QStringLiteral("a"), QStringLiteral("b2_c")}));

    bound.unbindValues();
    QVERIFY(!bound.boundValue(QStringLiteral("a")).isValid());
    QVERIFY(bound.boundValues().isEmpty());
    MessageLog log;
    QCOMPARE(bound.preparedQueryText(), QStringLiteral("?:a"));
    QCOMPARE(log.take().size(), size_t(1));
}

void TestQuery::bindingKeepsItsTerm()
{
    QSparqlBinding binding(QStringLiteral("t"), QStringLiteral("Gras"));
    binding.setLanguageTag(QStringLiteral("de"));
    QSparqlQuery query(QStringLiteral("?:t ?:r"));
    query.bindValue(binding);
    QSparqlBinding resource(QStringLiteral("r"));
    resource.setResource(QStringLiteral("HTTP://Example.org/%7e"));
    query.bindValue(resource);
    QCOMPARE(query.preparedQueryText(), QStringLiteral("\"Gras\"@de <HTTP://Example.org/%7e>"));
}

void TestQuery::bindRow()
{
    QSparqlResultRow row;
    row.append(QSparqlBinding(QStringLiteral("one"), 1));
    row.append(QSparqlBinding(QStringLiteral("two"), QStringLiteral("b")));
    QSparqlQuery query(QStringLiteral("?:one ?:two"));
    query.bindValues(row);
    QCOMPARE(query.preparedQueryText(), QStringLiteral("1 \"b\""));
}

void TestQuery::bindingAgainReplaces()
{
    QSparqlQuery bound = query(QStringLiteral("?:a"));
    bound.bindValue(QStringLiteral("a"), QStringLiteral("new"));
    QCOMPARE(bound.preparedQueryText(), QStringLiteral("\"new\""));
}

void TestQuery::invalidValueUnbinds()
{
    QSparqlQuery bound = query(QStringLiteral("?:a"));
    bound.bindValue(QStringLiteral("a"), QVariant());
    QVERIFY(!bound.boundValues().contains(QStringLiteral("a")));
    // A null string is an empty literal. It is not an invalid value.
    bound.bindValue(QStringLiteral("a"), QString());
    QCOMPARE(bound.preparedQueryText(), QStringLiteral("\"\""));
}

void TestQuery::setQueryKeepsTheValues()
{
    QSparqlQuery bound = query(QStringLiteral("?:a"));
    bound.setQuery(QStringLiteral("[?:a]"));
    QCOMPARE(bound.preparedQueryText(), QStringLiteral("[1]"));
}

void TestQuery::longStatement()
{
    const int count = 100000;
    QSparqlQuery bound = query(QStringLiteral("?:a \"?:a\" ").repeated(count));
    QCOMPARE(bound.preparedQueryText(), QStringLiteral("1 \"?:a\" ").repeated(count));
}

void TestQuery::debugText()
{
    QSparqlQuery bound(QStringLiteral("SELECT \"x\" ?:a"));
    bound.bindValue(QStringLiteral("a"), 1);
    bound.bindValue(QStringLiteral("b"), QUrl(QStringLiteral("urn:b")));
    QString text;
    QDebug(&text) << bound;
    QCOMPARE(text,
             QStringLiteral("QSparqlQuery(3, \"SELECT \\\"x\\\" ?:a\")\n QSparqlBinding(a, 1)\n "
                            "QSparqlBinding(b, <urn:b>) "));
}

QTEST_GUILESS_MAIN(TestQuery)
#include "tst_qsparqlquery.moc"
