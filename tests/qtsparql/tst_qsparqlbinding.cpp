// SPDX-License-Identifier: LGPL-2.1-or-later
#include <QSparqlBinding>

#include <QDateTime>
#include <QDebug>
#include <QTest>

#include <limits>

#include <time.h>

class TestBinding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isEmptyAtFirst();
    void termOfAValue_data();
    void termOfAValue();
    void numbersWithoutABareFormAreQuoted();
    void localTime_data();
    void localTime();
    void offsetWithSeconds();
    void urlCannotEndItsPlaceEarly();
    void stringCannotEndItsPlaceEarly();
    void languageTag();
    void datatype();
    void resource_data();
    void resource();
    void blankNode();
    void valueReplacesAll();
    void clearKeepsTheName();
    void equality();
    void equalityOfTerms();
    void debugText();
};

namespace {

const QString xsd = QStringLiteral("http://www.w3.org/2001/XMLSchema#");

QString text(const char16_t *characters) { return QString::fromUtf16(characters); }

void setLocalZone(const char *zone)
{
    qputenv("TZ", zone);
    tzset();
}

QDateTime at(const QTime &time, int offset)
{
    return QDateTime(QDate(2026, 11, 21), time, Qt::OffsetFromUTC, offset);
}

} // namespace

void TestBinding::init() { setLocalZone("UTC"); }

void TestBinding::isEmptyAtFirst()
{
    const QSparqlBinding binding;
    QVERIFY(binding.name().isEmpty());
    QVERIFY(!binding.value().isValid());
    QVERIFY(!binding.isValid());
    QVERIFY(!binding.isUri());
    QVERIFY(!binding.isLiteral());
    QVERIFY(!binding.isBlank());
    QVERIFY(binding.dataTypeUri().isEmpty());
    QVERIFY(binding.languageTag().isEmpty());
    QVERIFY(binding.toString().isEmpty());
}

void TestBinding::termOfAValue_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("term");
    // The local name in XML Schema. It is empty for a resource.
    QTest::addColumn<QString>("type");

    const auto url = [](const char *name, const QUrl &value, const QString &term) {
        QTest::newRow(name) << QVariant(value) << term << QString();
    };
    url("url", QUrl(QStringLiteral("http://example.org/feed?a=1&b=2#c")),
        QStringLiteral("<http://example.org/feed?a=1&b=2#c>"));
    url("url with a blank", QUrl(QStringLiteral("http://example.org/a b")),
        QStringLiteral("<http://example.org/a%20b>"));
    url("url outside ASCII", QUrl(text(u"http://example.org/\u00e4?q=\u65e5")),
        QStringLiteral("<http://example.org/%C3%A4?q=%E6%97%A5>"));
    url("urn", QUrl(QStringLiteral("urn:uuid:1")), QStringLiteral("<urn:uuid:1>"));
    url("path", QUrl(QStringLiteral("/tmp/a.mp3")), QStringLiteral("</tmp/a.mp3>"));
    url("empty url", QUrl(), QStringLiteral("<>"));

    const auto string = [](const char *name, const QString &value, const QString &term) {
        QTest::newRow(name) << QVariant(value) << term << QStringLiteral("string");
    };
    string("string", QStringLiteral("News"), QStringLiteral("\"News\""));
    string("empty string", QString(), QStringLiteral("\"\""));
    string("tab", QStringLiteral("a\tb"), QStringLiteral("\"a\\tb\""));
    string("newline", QStringLiteral("a\nb"), QStringLiteral("\"a\\nb\""));
    string("carriage return", QStringLiteral("a\rb"), QStringLiteral("\"a\\rb\""));
    string("backspace", QStringLiteral("a\bb"), QStringLiteral("\"a\\bb\""));
    string("form feed", QStringLiteral("a\fb"), QStringLiteral("\"a\\fb\""));
    string("double quote", QStringLiteral("say \"hi\""), QStringLiteral("\"say \\\"hi\\\"\""));
    string("single quote", QStringLiteral("it's"), QStringLiteral("\"it\\'s\""));
    string("backslash", QStringLiteral("C:\\temp"), QStringLiteral("\"C:\\\\temp\""));
    string("a text that looks like an escape", QStringLiteral("\\u0022"), QStringLiteral("\"\\\\u0022\""));
    string("the other control characters are raw", QStringLiteral("a\x01\x0b\x1b\x7f b"),
           QStringLiteral("\"a\x01\x0b\x1b\x7f b\""));
    string("outside ASCII", text(u"\u00e4\u05e9\u65e5\U0001f4fb"),
           QLatin1Char('"') + text(u"\u00e4\u05e9\u65e5\U0001f4fb") + QLatin1Char('"'));
    string("what means something elsewhere", QStringLiteral("<a> {b} ?c $d #e %5 &amp;"),
           QStringLiteral("\"<a> {b} ?c $d #e %5 &amp;\""));

    const auto integer = [](const char *name, const QVariant &value, const char *term) {
        QTest::newRow(name) << value << QString::fromLatin1(term) << QStringLiteral("integer");
    };
    integer("signed char", QVariant::fromValue<signed char>(-128), "-128");
    integer("unsigned char", QVariant::fromValue<unsigned char>(255), "255");
    integer("short", QVariant::fromValue<short>(-32768), "-32768");
    integer("unsigned short", QVariant::fromValue<unsigned short>(65535), "65535");
    integer("int", std::numeric_limits<int>::min(), "-2147483648");
    integer("unsigned int", std::numeric_limits<unsigned>::max(), "4294967295");
    integer("long", QVariant::fromValue<long>(-77), "-77");
    integer("unsigned long", QVariant::fromValue<unsigned long>(77), "77");
    integer("long long", std::numeric_limits<qlonglong>::min(), "-9223372036854775808");
    integer("unsigned long long", std::numeric_limits<qulonglong>::max(), "18446744073709551615");
    integer("zero", 0, "0");

    QTest::newRow("true") << QVariant(true) << QStringLiteral("true") << QStringLiteral("boolean");
    QTest::newRow("false") << QVariant(false) << QStringLiteral("false") << QStringLiteral("boolean");

    const auto real = [](const char *name, const QVariant &value, const char *term) {
        QTest::newRow(name) << value << QString::fromLatin1(term) << QStringLiteral("double");
    };
    real("double", 0.1, "0.1");
    real("all digits of a double", 0.1 + 0.2, "0.30000000000000004");
    real("whole double", 3.0, "3.0");
    real("negative double", -2.5, "-2.5");
    real("large double", 1e300, "1.0e+300");
    real("small double", 2.5e-7, "2.5e-07");
    real("float", 0.5F, "0.5");

    const auto time = [](const char *name, const QDateTime &value, const char *term) {
        QTest::newRow(name) << QVariant(value) << QString::fromLatin1(term) << QStringLiteral("dateTime");
    };
    time("UTC", QDateTime(QDate(2026, 11, 21), QTime(9, 5, 3), Qt::UTC),
         "\"2026-11-21T09:05:03Z\"^^xsd:dateTime");
    time("east", at(QTime(9, 5, 3), 5 * 3600 + 30 * 60), "\"2026-11-21T09:05:03+05:30\"^^xsd:dateTime");
    time("west", at(QTime(9, 5, 3), -3 * 3600), "\"2026-11-21T09:05:03-03:00\"^^xsd:dateTime");
    time("no offset", at(QTime(9, 5, 3), 0), "\"2026-11-21T09:05:03Z\"^^xsd:dateTime");
    time("largest offset", at(QTime(9, 5, 3), 14 * 3600), "\"2026-11-21T09:05:03+14:00\"^^xsd:dateTime");
    time("too large an offset", at(QTime(20, 5, 3), 15 * 3600), "\"2026-11-21T05:05:03Z\"^^xsd:dateTime");
    time("too small an offset", at(QTime(9, 5, 3), -14 * 3600 - 60),
         "\"2026-11-21T23:06:03Z\"^^xsd:dateTime");
    time("milliseconds are left out", QDateTime(QDate(2026, 11, 21), QTime(9, 5, 3, 999), Qt::UTC),
         "\"2026-11-21T09:05:03Z\"^^xsd:dateTime");

    QTest::newRow("date") << QVariant(QDate(2026, 1, 2)) << QStringLiteral("\"2026-01-02\"^^xsd:date")
                          << QStringLiteral("date");
}

void TestBinding::termOfAValue()
{
    QFETCH(QVariant, value);
    QFETCH(QString, term);
    QFETCH(QString, type);

    const QSparqlBinding binding(QStringLiteral("v"), value);
    QCOMPARE(binding.toString(), term);
    QCOMPARE(binding.value(), value);
    QVERIFY(binding.isValid());
    QCOMPARE(binding.isUri(), type.isEmpty());
    QCOMPARE(binding.isLiteral(), !type.isEmpty());
    QVERIFY(!binding.isBlank());
    QCOMPARE(binding.dataTypeUri(), type.isEmpty() ? QUrl() : QUrl(xsd + type));
}

void TestBinding::numbersWithoutABareFormAreQuoted()
{
    const QString name = QStringLiteral("v");
    QCOMPARE(QSparqlBinding(name, qQNaN()).toString(), QStringLiteral("\"nan\""));
    QCOMPARE(QSparqlBinding(name, qInf()).toString(), QStringLiteral("\"inf\""));
    QCOMPARE(QSparqlBinding(name, -qInf()).toString(), QStringLiteral("\"-inf\""));
}

void TestBinding::localTime_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("term");

    const auto row = [](const char *zone, const QDate &date, const char *term) {
        QTest::addRow("%s, %s", zone, qPrintable(date.toString(Qt::ISODate)))
            << QByteArray(zone) << date << QString::fromLatin1(term);
    };
    row("UTC", QDate(2026, 11, 21), "\"2026-11-21T12:00:00Z\"^^xsd:dateTime");
    row("America/New_York", QDate(2026, 11, 21), "\"2026-11-21T12:00:00-05:00\"^^xsd:dateTime");
    row("America/New_York", QDate(2026, 7, 1), "\"2026-07-01T12:00:00-04:00\"^^xsd:dateTime");
    row("Asia/Kathmandu", QDate(2026, 11, 21), "\"2026-11-21T12:00:00+05:45\"^^xsd:dateTime");
}

void TestBinding::localTime()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDate, date);
    QFETCH(QString, term);

    setLocalZone(zone.constData());
    const QDateTime noon(date, QTime(12, 0));
    QCOMPARE(QSparqlBinding(QStringLiteral("t"), noon).toString(), term);
}

void TestBinding::offsetWithSeconds()
{

    // The text cannot express the seconds. It has another offset and the same instant.
    const QDateTime old = at(QTime(12, 0, 32), 19 * 60 + 32);
    QCOMPARE(QSparqlBinding(QStringLiteral("t"), old).toString(),
             QStringLiteral("\"2026-11-21T12:00:00+00:19\"^^xsd:dateTime"));
}

void TestBinding::urlCannotEndItsPlaceEarly()
{
    const QUrl hostile(QStringLiteral("http://example.org/> . } DELETE {?s ?p \"{}|\\^`\n\t<"));
    const QString term = QSparqlBinding(QStringLiteral("u"), hostile).toString();
    QVERIFY(term.startsWith(QLatin1Char('<')) && term.endsWith(QLatin1Char('>')));
    for (const QChar character : term.mid(1, term.size() - 2))
        QVERIFY2(!QStringLiteral("<>\"{}|\\^` \n\t").contains(character), qPrintable(term));
}

void TestBinding::stringCannotEndItsPlaceEarly()
{
    const QString hostile = QStringLiteral("\" . } DELETE {?s ?p ?o} \\\" \\\\\" ''' \"\"\" \n");
    QCOMPARE(
        QSparqlBinding(QStringLiteral("s"), hostile).toString(),
        QStringLiteral("\"\\\" . } DELETE {?s ?p ?o} \\\\\\\" \\\\\\\\\\\" \\'\\'\\' \\\"\\\"\\\" \\n\""));
}

void TestBinding::languageTag()
{
    QSparqlBinding binding(QStringLiteral("t"), QStringLiteral("Gr\u00fc\u00dfe \"hier\""));
    binding.setLanguageTag(QStringLiteral("de-CH"));
    QCOMPARE(binding.languageTag(), QStringLiteral("de-CH"));
    QCOMPARE(binding.toString(), QStringLiteral("\"Gr\u00fc\u00dfe \\\"hier\\\"\"@de-CH"));
    QVERIFY(binding.isLiteral());
    binding.setDataTypeUri(QUrl(QStringLiteral("urn:type")));
    QCOMPARE(binding.toString(), QStringLiteral("\"Gr\u00fc\u00dfe \\\"hier\\\"\"@de-CH"));
    binding.setDataTypeUri(QUrl());
    binding.setLanguageTag(QString());
    QCOMPARE(binding.toString(), QStringLiteral("\"Gr\u00fc\u00dfe \\\"hier\\\"\""));
}

void TestBinding::datatype()
{
    QSparqlBinding binding(QStringLiteral("t"));
    binding.setValue(QStringLiteral("12"), QUrl(xsd + QStringLiteral("integer")));
    QCOMPARE(binding.dataTypeUri(), QUrl(xsd + QStringLiteral("integer")));
    QCOMPARE(binding.toString(), QStringLiteral("\"12\"^^<http://www.w3.org/2001/XMLSchema#integer>"));
    QVERIFY(binding.isLiteral());

    binding.setDataTypeUri(QUrl(QStringLiteral("http://example.org/a b")));
    QCOMPARE(binding.toString(), QStringLiteral("\"12\"^^<http://example.org/a%20b>"));

    binding.setValue(QVariant(at(QTime(9, 5, 3), 3600)));
    binding.setDataTypeUri(QUrl(xsd + QStringLiteral("dateTime")));
    QCOMPARE(binding.toString(),
             QStringLiteral("\"2026-11-21T09:05:03+01:00\"^^<http://www.w3.org/2001/XMLSchema#dateTime>"));
}

void TestBinding::resource_data()
{
    QTest::addColumn<QString>("iri");
    QTest::addColumn<QString>("term");

    // QUrl would change most of these or reject them.
    const char *const unchanged[] = {
        "http://example.org/a%20b", "HTTP://Example.ORG/%7euser", "urn:uuid:1", "/tmp/a.mp3", "",
        "http://[broken",           "http://example.org:port/%zz"};
    for (const char *iri : unchanged) {
        QTest::newRow(iri) << QString::fromLatin1(iri)
                           << QLatin1Char('<') + QString::fromLatin1(iri) + QLatin1Char('>');
    }
    QTest::newRow("outside ASCII") << QStringLiteral("http://example.org/\u00e4\u65e5")
                                   << QStringLiteral("<http://example.org/\u00e4\u65e5>");
    QTest::newRow("forbidden") << QStringLiteral("urn:a b\t<>\"{}|\\^`\x1f")
                               << QStringLiteral("<urn:a%20b%09%3C%3E%22%7B%7D%7C%5C%5E%60%1F>");
}

void TestBinding::resource()
{
    QFETCH(QString, iri);
    QFETCH(QString, term);

    QSparqlBinding binding(QStringLiteral("r"));
    binding.setResource(iri);
    QVERIFY(binding.isValid());
    QVERIFY(binding.isUri());
    QVERIFY(!binding.isLiteral());
    QVERIFY(!binding.isBlank());
    QCOMPARE(binding.value().userType(), int(QMetaType::QString));
    QCOMPARE(binding.value().toString(), iri);
    QVERIFY(binding.dataTypeUri().isEmpty());
    QCOMPARE(binding.toString(), term);
}

void TestBinding::blankNode()
{
    QSparqlBinding binding(QStringLiteral("b"));
    binding.setBlankNodeLabel(QStringLiteral("n1"));
    QVERIFY(binding.isValid());
    QVERIFY(binding.isBlank());
    QVERIFY(!binding.isUri());
    QVERIFY(!binding.isLiteral());
    QCOMPARE(binding.value().toString(), QStringLiteral("n1"));
    QVERIFY(binding.dataTypeUri().isEmpty());
    QCOMPARE(binding.toString(), QStringLiteral("_:n1"));
}

void TestBinding::valueReplacesAll()
{
    QSparqlBinding binding(QStringLiteral("v"));
    binding.setValue(QStringLiteral("a"), QUrl(QStringLiteral("urn:type")));
    binding.setLanguageTag(QStringLiteral("de"));
    binding.setValue(7);
    QVERIFY(binding.languageTag().isEmpty());
    QCOMPARE(binding.dataTypeUri(), QUrl(xsd + QStringLiteral("integer")));
    QCOMPARE(binding.toString(), QStringLiteral("7"));

    binding.setResource(QStringLiteral("urn:a"));
    binding.setValue(QStringLiteral("urn:a"));
    QVERIFY(binding.isLiteral());
    QCOMPARE(binding.toString(), QStringLiteral("\"urn:a\""));

    binding.setBlankNodeLabel(QStringLiteral("n"));
    binding.setResource(QStringLiteral("urn:a"));
    QVERIFY(binding.isUri());
    QVERIFY(!binding.isBlank());
}

void TestBinding::clearKeepsTheName()
{
    QSparqlBinding binding(QStringLiteral("v"), 7);
    binding.setDataTypeUri(QUrl(QStringLiteral("urn:type")));
    binding.clear();
    QVERIFY(binding == QSparqlBinding(QStringLiteral("v")));
    binding.setName(QStringLiteral("w"));
    QCOMPARE(binding.name(), QStringLiteral("w"));

    binding.setResource(QStringLiteral("urn:a"));
    binding.clear();
    QVERIFY(!binding.isUri());
    QVERIFY(!binding.isValid());
}

void TestBinding::equality()
{
    const QSparqlBinding original(QStringLiteral("v"), QStringLiteral("a"));
    QVERIFY(original == QSparqlBinding(QStringLiteral("v"), QStringLiteral("a")));
    QVERIFY(!(original != QSparqlBinding(QStringLiteral("v"), QStringLiteral("a"))));

    QSparqlBinding other = original;
    other.setName(QStringLiteral("w"));
    QVERIFY(other != original);

    other = original;
    other.setValue(QStringLiteral("b"));
    QVERIFY(other != original);

    other = original;
    other.setLanguageTag(QStringLiteral("de"));
    QVERIFY(other != original);

    other = original;
    other.setDataTypeUri(QUrl(QStringLiteral("urn:type")));
    QVERIFY(other != original);

    other = original;
    other.setResource(QStringLiteral("a"));
    QVERIFY(other != original);

    other = original;
    other.setBlankNodeLabel(QStringLiteral("a"));
    QVERIFY(other != original);

    other = original;
    other.clear();
    QVERIFY(other != original);
}

void TestBinding::equalityOfTerms()
{
    const QString name = QStringLiteral("v");
    QVERIFY(QSparqlBinding(name, 1) == QSparqlBinding(name, 1LL));
    QVERIFY(QSparqlBinding(name, 1) != QSparqlBinding(name, QStringLiteral("1")));
    QVERIFY(QSparqlBinding(name, true) != QSparqlBinding(name, QStringLiteral("true")));
    QVERIFY(QSparqlBinding(name, 1) != QSparqlBinding(name, true));
    QVERIFY(QSparqlBinding(name, QUrl(QStringLiteral("urn:a")))
            != QSparqlBinding(name, QStringLiteral("urn:a")));

    QSparqlBinding blank(name);
    blank.setBlankNodeLabel(QStringLiteral("a"));
    QSparqlBinding resource(name);
    resource.setResource(QStringLiteral("a"));
    QVERIFY(blank != resource);

    QSparqlBinding typed(name);
    typed.setValue(QStringLiteral("a"), QUrl(xsd + QStringLiteral("string")));
    QVERIFY(typed == QSparqlBinding(name, QStringLiteral("a")));
}

void TestBinding::debugText()
{
    const auto printed = [](const QSparqlBinding &binding) {
        QString line;
        QDebug(&line) << binding << 1;
        return line;
    };
    QCOMPARE(printed(QSparqlBinding(QStringLiteral("t"), QStringLiteral("say \"hi\""))),
             QStringLiteral("QSparqlBinding(t, \"say \\\"hi\\\"\") 1 "));
    QCOMPARE(printed(QSparqlBinding(QStringLiteral("u"), QUrl(QStringLiteral("urn:a")))),
             QStringLiteral("QSparqlBinding(u, <urn:a>) 1 "));
    QCOMPARE(printed(QSparqlBinding(QStringLiteral("e"))), QStringLiteral("QSparqlBinding(e, ) 1 "));
}

QTEST_GUILESS_MAIN(TestBinding)
#include "tst_qsparqlbinding.moc"
