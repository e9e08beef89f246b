// SPDX-License-Identifier: LGPL-2.1-or-later
#include "trackerdialect_p.h"

#include <QTest>

#include <time.h>

class TestDialect : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void statement_data();
    void statement();
    void zoneless_data();
    void zoneless();
    void emptyIriComesBack();
    void emptySubject_data();
    void emptySubject();
    void blankStatement_data();
    void blankStatement();
    void unchangedTextIsNotCopied();
};

namespace {

void setLocalZone(const char *zone)
{
    qputenv("TZ", zone);
    tzset();
}

} // namespace

void TestDialect::init() { setLocalZone("UTC"); }

void TestDialect::statement_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("sent");

    const auto row = [](const char *name, const char *given, const char *sent) {
        QTest::newRow(name) << QString::fromUtf8(given) << QString::fromUtf8(sent);
    };
    const auto unchanged = [&row](const char *name, const char *text) { row(name, text, text); };

    row("variable with an underscore", "SELECT ?_a { ?s nie:title ?_a }", "SELECT $_a { ?s nie:title $_a }");
    row("underscore alone", "?_", "$_");
    row("at the end of a path", "nie:links/nie:title?_a", "nie:links/nie:title$_a");
    row("less than such a variable", "FILTER(?b < ?_a)", "FILTER(?b < $_a)");
    unchanged("underscore later", "?a_ ?a_b $_a _:b");
    unchanged("underscore in a string", "\"?_a\" '?_a' \"\"\"?_a\"\"\" '''?_a'''");
    unchanged("underscore in a string behind an escape", "\"\\\"?_a\" '\\'?_a'");
    unchanged("underscore in an IRI", "<http://example.org/?_a> <?_a>");
    unchanged("underscore in a comment", "# ?_a\n");
    unchanged("underscore in a prefixed name", "nie:a\\?_a nie:?a");
    unchanged("underscore in a placeholder", "?:_a $:_a");

    row("empty IRI", "INSERT { <a> nie:links <> }", "INSERT { <a> nie:links <urn:tidel:empty> }");
    row("empty IRIs side by side", "<><>", "<urn:tidel:empty><urn:tidel:empty>");
    unchanged("empty IRI in a string", "\"<>\" '<>' \"\"\"<>\"\"\"");
    unchanged("empty IRI in a comment", "#<>");
    unchanged("less and greater", "?a < > ?b");
    unchanged("IRI that is not empty", "<a>");

    row("east of UTC", "\"2026-11-21T10:00:00+02:00\"^^xsd:dateTime",
        "\"2026-11-21T08:00:00Z\"^^xsd:dateTime");
    row("west of UTC, over midnight", "'2026-12-31T23:00:00-05:30'^^xsd:dateTime",
        "\"2027-01-01T04:30:00Z\"^^xsd:dateTime");
    row("type as an IRI", "\"2026-11-21T10:00:00+02:00\"^^<http://www.w3.org/2001/XMLSchema#dateTime>",
        "\"2026-11-21T08:00:00Z\"^^<http://www.w3.org/2001/XMLSchema#dateTime>");
    row("no zone", "\"2026-11-21T10:00:00\"^^xsd:dateTime", "\"2026-11-21T10:00:00Z\"^^xsd:dateTime");
    row("long quotes", "\"\"\"2026-11-21T10:00:00+02:00\"\"\"^^xsd:dateTime",
        "\"2026-11-21T08:00:00Z\"^^xsd:dateTime");
    row("long single quotes", "'''2026-11-21T10:00:00+02:00'''^^xsd:dateTime",
        "\"2026-11-21T08:00:00Z\"^^xsd:dateTime");
    row("fraction", "\"2026-11-21T10:00:00.123456+02:00\"^^xsd:dateTime",
        "\"2026-11-21T08:00:00.123456Z\"^^xsd:dateTime");
    row("two of them",
        "\"2026-11-21T10:00:00+02:00\"^^xsd:dateTime, \"2026-11-21T10:00:00-02:00\"^^xsd:dateTime",
        "\"2026-11-21T08:00:00Z\"^^xsd:dateTime, \"2026-11-21T12:00:00Z\"^^xsd:dateTime");
    unchanged("UTC", "\"2026-11-21T10:00:00Z\"^^xsd:dateTime");
    unchanged("UTC with a fraction", "\"2026-11-21T10:00:00.123456Z\"^^xsd:dateTime");
    unchanged("untyped", "\"2026-11-21T10:00:00+02:00\"");
    unchanged("language", "\"2026-11-21T10:00:00+02:00\"@de");
    unchanged("other type", "\"2026-11-21T10:00:00+02:00\"^^xsd:string");
    unchanged("type that begins alike", "\"2026-11-21T10:00:00+02:00\"^^xsd:dateTimeStamp");
    unchanged("other prefix", "\"2026-11-21T10:00:00+02:00\"^^nie:dateTime");
    unchanged("one sign only", "\"2026-11-21T10:00:00+02:00\"^xsd:dateTime");
    unchanged("no date", "\"yesterday\"^^xsd:dateTime");
    unchanged("empty", "\"\"^^xsd:dateTime \"\"\"\"\"\"^^xsd:dateTime");
    unchanged("no such day", "\"2026-02-30T10:00:00+02:00\"^^xsd:dateTime");
    unchanged("beyond the last year", "\"9999-12-31T23:59:59-02:00\"^^xsd:dateTime");
    unchanged("inside a string", "'\"2026-11-21T10:00:00+02:00\"^^xsd:dateTime'");
    unchanged("inside a comment", "# \"2026-11-21T10:00:00+02:00\"^^xsd:dateTime");

    unchanged("limit", "SELECT ?a { ?a ?b ?c } LIMIT -1");
    unchanged("relative IRI", "</tmp/a.mp3>");
    unchanged("forbidden in an IRI", "<a b> <a\"> <a{> <a}> <a|> <a\\b> <a^> <a`>");
    unchanged("no separator", "INSERT { <a> a <b> } DELETE { <a> a <b> }");
    unchanged("escapes", "\"\\t\\n\\r\\b\\f\\\"\\'\\\\\"");
    unchanged("outside ASCII", "\"\u00e4\u65e5\U0001f4fb\" <http://example.org/\u00e4>");
    row("many in one", "?_a <> \"?_a\" # <>\n<> ?_b",
        "$_a <urn:tidel:empty> \"?_a\" # <>\n<urn:tidel:empty> $_b");
}

void TestDialect::statement()
{
    QFETCH(QString, given);
    QFETCH(QString, sent);
    QCOMPARE(TrackerDialect::toTracker(given), sent);
    QCOMPARE(TrackerDialect::toTracker(sent), sent);
}

void TestDialect::zoneless_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("sent");
    QTest::newRow("winter") << QByteArray("America/New_York") << QStringLiteral("2026-11-21T10:00:00")
                            << QStringLiteral("2026-11-21T15:00:00Z");
    QTest::newRow("summer") << QByteArray("America/New_York") << QStringLiteral("2026-07-01T10:00:00")
                            << QStringLiteral("2026-07-01T14:00:00Z");
    QTest::newRow("a zone of its own wins")
        << QByteArray("America/New_York") << QStringLiteral("2026-07-01T10:00:00+01:00")
        << QStringLiteral("2026-07-01T09:00:00Z");
}

void TestDialect::zoneless()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, given);
    QFETCH(QString, sent);
    setLocalZone(zone.constData());
    const QString frame = QStringLiteral("\"%1\"^^xsd:dateTime");
    QCOMPARE(TrackerDialect::toTracker(frame.arg(given)), frame.arg(sent));
}

void TestDialect::emptyIriComesBack()
{
    const QString sent = TrackerDialect::toTracker(QStringLiteral("<>"));
    QVERIFY(TrackerDialect::iriFromTracker(sent.mid(1, sent.size() - 2)).isEmpty());
    QCOMPARE(TrackerDialect::iriFromTracker(QStringLiteral("urn:a")), QStringLiteral("urn:a"));
}

void TestDialect::emptySubject_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("left");

    const auto row = [](const char *name, const char *given, const char *left) {
        QTest::newRow(name) << QString::fromUtf8(given) << QString::fromUtf8(left);
    };
    const auto unchanged = [&row](const char *name, const char *text) { row(name, text, text); };

    row("insertion", "INSERT { <> a <b> }", "INSERT { }");
    row("deletion", "DELETE {<> nie:title ?t} WHERE {<> nie:title ?t}", "DELETE {} WHERE {<> nie:title ?t}");
    row("data", "INSERT DATA { <> a <b> } ; DELETE DATA { <> a <b> }", "INSERT DATA { } ; DELETE DATA { }");
    row("any case", "insert { <> a <b> } Delete data { <> a <b> }", "insert { } Delete data { }");
    row("graph behind the keyword", "INSERT INTO <g> { <> a <b> }", "INSERT INTO <g> { }");
    row("graph in the template", "INSERT { GRAPH <g> { <> a <b> . <c> a <b> } <> a <b> }",
        "INSERT { GRAPH <g> {  <c> a <b> } }");
    row("both templates of one operation",
        "WITH <g> DELETE { <> a <b> } INSERT { <> a <c> } WHERE { <> a <b> }",
        "WITH <g> DELETE { } INSERT { } WHERE { <> a <b> }");
    row("several operations", "DELETE { <> a ?t } WHERE { <> a ?t } INSERT { <c> a <b> } INSERT { <> a <b> }",
        "DELETE { } WHERE { <> a ?t } INSERT { <c> a <b> } INSERT { }");
    row("comments and line breaks", "INSERT # <\n{ # {\n<> # .\n a <b> # }\n}", "INSERT # <\n{ # {\n}");
    row("braces and points in literals", "INSERT { <> nie:title \"} . <c> a <b>\" , '''}.''' . <c> a <b> }",
        "INSERT {  <c> a <b> }");
    row("points in an IRI", "INSERT { <> a <http://example.org/a.b> . <c> a <b> }", "INSERT {  <c> a <b> }");

    row("first block", "INSERT { <> a <b> ; a <d> , <e> . <c> a <b> }", "INSERT {  <c> a <b> }");
    row("last block", "INSERT { <c> a <b> . <> a <b> . }", "INSERT { <c> a <b> .  }");
    row("block between others", "INSERT { <c> a <b> . <> a <b> .<d> a <b> }",
        "INSERT { <c> a <b> . <d> a <b> }");
    row("no white space", "INSERT{<>a<b>.<c>a<b>.<>a<b>}", "INSERT{<c>a<b>.}");
    row("decimals", "INSERT { <> nie:a 1.5 , .5 , -1.5e3, 1.e3 . <c> a <b> }", "INSERT {  <c> a <b> }");
    row("point behind an integer", "INSERT { <> nie:a 1. <c> a <b> }", "INSERT {  <c> a <b> }");
    row("variable behind an integer", "INSERT { <> nie:a 1.?c a <b> }", "INSERT { ?c a <b> }");
    row("name behind an integer", "INSERT { <> nie:a 1.nie:c a <b> }", "INSERT { nie:c a <b> }");
    row("points in a name", "INSERT { <> nie:a.b..\u00e4-c _:d.e . <c> a <b> }", "INSERT {  <c> a <b> }");
    row("escapes in a name", "INSERT { <> nie:a\\..b%20.c nie:d.\\,e . <c> a <b> }", "INSERT {  <c> a <b> }");
    row("point behind a name", "INSERT { <> a nie:b.<c> a <b> }", "INSERT { <c> a <b> }");
    row("name behind a variable", "INSERT { <> a ?b.nie:c a <b> }", "INSERT { nie:c a <b> }");
    row("name behind a literal", "INSERT { <> a 'b'.nie:c a <b> }", "INSERT { nie:c a <b> }");
    row("name behind a language", "INSERT { <> a 'b'@en-GB.nie:c a <b> }", "INSERT { nie:c a <b> }");
    row("name behind an IRI", "INSERT { <> a <b>.nie:c a <b> }", "INSERT { nie:c a <b> }");
    row("blank nodes", "INSERT { <> nie:a [ nie:b <> ; nie:c 1.5 ] . <c> a <b> }", "INSERT {  <c> a <b> }");
    row("literal that never ends", "INSERT { <> nie:title '}", "INSERT { ");
    row("template that never ends", "INSERT { <> nie:title 'a' ; a", "INSERT { ");

    unchanged("object", "INSERT { <c> nie:links <> } INSERT { <c> nie:links <d> , <> . }");
    unchanged("object behind a decimal", "INSERT { <c> nie:a 1.5 , <> ; nie:b.c <> }");
    unchanged("pattern", "DELETE { ?s a ?t } WHERE { <> a ?t . <> nie:links ?s }");
    unchanged("pattern that is the template", "DELETE WHERE { <> a ?t }");
    unchanged("pattern in a pattern", "INSERT { <c> a <b> } WHERE { { <> a ?t } UNION { <> a ?t } }");
    unchanged("query", "SELECT ?t { <> a ?t } # INSERT");
    unchanged("keyword in a pattern", "ASK { ?insert nie:delete 'INSERT' . <> a ?t }");
    unchanged("keyword in another word", "INSERTED { <> a <b> }");
    unchanged("keyword in a comment", "# INSERT\n{ <> a <b> }");
    unchanged("graph", "WITH <> INSERT { <c> a <b> } WHERE { }");
    unchanged("literal and comment", "INSERT { # <> a <b>\n <c> nie:title '. <> a <b> .' }");
    unchanged("IRI that is not empty", "INSERT { <a> a <b> }");
    unchanged("bracket at the end", "INSERT { <a> a <b> } <");
    unchanged("empty", "");
}

void TestDialect::emptySubject()
{
    QFETCH(QString, given);
    QFETCH(QString, left);
    QCOMPARE(TrackerDialect::withoutEmptySubjects(given), left);
    QCOMPARE(TrackerDialect::withoutEmptySubjects(left), left);
}

void TestDialect::blankStatement_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("blank");
    const auto row = [](const char *statement, bool blank) {
        QTest::addRow("%s", statement) << QString::fromLatin1(statement) << blank;
    };
    row("", true);
    row(" \t\r\n ", true);
    row("# nothing", true);
    row(" # one\n # two\r\n\t", true);
    row("# one\nINSERT {}", false);
    row(";", false);
    row("\"#\"", false);
    row("<#>", false);
}

void TestDialect::blankStatement()
{
    QFETCH(QString, statement);
    QFETCH(bool, blank);
    QCOMPARE(TrackerDialect::isBlank(statement), blank);
}

void TestDialect::unchangedTextIsNotCopied()
{
    const QString statement = QStringLiteral("SELECT ?a { ?a nie:title \"x\" }");
    const QString large = statement.repeated(3);
    QCOMPARE(TrackerDialect::toTracker(large).constData(), large.constData());
    QCOMPARE(TrackerDialect::withoutEmptySubjects(large).constData(), large.constData());
}

QTEST_GUILESS_MAIN(TestDialect)
#include "tst_trackerdialect.moc"
