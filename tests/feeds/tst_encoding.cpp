// SPDX-License-Identifier: LGPL-2.1-or-later
#include <encoding.h>

#include <QtTest>

using namespace Tidel;

namespace {

const QByteArray eAcute("\xc3\xa9");
const QByteArray replacement("\xef\xbf\xbd");

QByteArray declared(const QByteArray &encoding, const QByteArray &text)
{
    return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>" + text;
}

/// ASCII text \a text in an encoding in which each character has \a before zeros, itself, and \a after zeros.
QByteArray wide(const QByteArray &text, int before, int after)
{
    QByteArray result;
    for (const char c : text)
        result += QByteArray(before, '\0') + c + QByteArray(after, '\0');
    return result;
}

} // namespace

class TestEncoding : public QObject
{
    Q_OBJECT

private slots:
    void decode_data();
    void decode();
    void invalidUtf8_data();
    void invalidUtf8();
    void notes_data();
    void notes();
    void validDocumentIsNotCopied();
    void guess_data();
    void guess();
    void resultIsBounded();
    void anyBytesAreAccepted();
};

void TestEncoding::decode_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("charset");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, const QByteArray &document, const QByteArray &charset,
                        const QByteArray &expected) {
        QTest::newRow(name) << document << charset << expected;
    };
    row("nothing", "", "", "");
    row("only a mark", "\xef\xbb\xbf", "", "");
    row("UTF-8", "<a>" + eAcute, "", "<a>" + eAcute);
    row("mark of UTF-8", "\xef\xbb\xbf<a>" + eAcute, "iso-8859-1", "<a>" + eAcute);
    row("two marks", "\xef\xbb\xbf\xef\xbb\xbf<a>", "", "<a>");
    row("mark of UTF-16LE", "\xff\xfe" + wide("<a>\xe9", 0, 1), "utf-8", "<a>" + eAcute);
    row("mark of UTF-16BE", "\xfe\xff" + wide("<a>\xe9", 1, 0), "", "<a>" + eAcute);
    row("mark of UTF-32LE", QByteArray("\xff\xfe\0\0", 4) + wide("<a>\xe9", 0, 3), "", "<a>" + eAcute);
    row("mark of UTF-32BE", QByteArray("\0\0\xfe\xff", 4) + wide("<a>\xe9", 3, 0), "", "<a>" + eAcute);
    row("UTF-16LE", wide("<a>\xe9", 0, 1), "utf-16", "<a>" + eAcute);
    row("UTF-16BE", wide("<a>\xe9", 1, 0), "", "<a>" + eAcute);
    row("UTF-32LE", wide("<a>\xe9", 0, 3), "", "<a>" + eAcute);
    row("UTF-32BE", wide("<a>\xe9", 3, 0), "", "<a>" + eAcute);
    row("half a character", wide("<a>", 0, 1) + "b", "", "<a>" + replacement);

    const QByteArray cyrillic("<a>\xcf\xf0");
    const QByteArray cyrillicText = QString::fromUtf8("<a>\u041f\u0440").toUtf8();
    row("server", cyrillic, "windows-1251", cyrillicText);
    row("server, quoted", cyrillic, " \"Windows-1251\" ", cyrillicText);
    row("declaration", declared("windows-1251", cyrillic), "", declared("windows-1251", cyrillicText));
    row("other quotes", "<?xml encoding = 'CP1251' ?>" + cyrillic, "",
        "<?xml encoding = 'CP1251' ?>" + cyrillicText);
    row("late declaration", " \n junk " + declared("windows-1251", cyrillic), "",
        " \n junk " + declared("windows-1251", cyrillicText));
    row("server before declaration", declared("iso-8859-1", cyrillic), "windows-1251",
        declared("iso-8859-1", cyrillicText));
    row("several bytes", declared("Shift_JIS", "\x93\xfa"), "", declared("Shift_JIS", "\xe6\x97\xa5"));
    row("escape sequences", declared("iso-2022-jp", "\x1b$BF|\x1b(B"), "",
        declared("iso-2022-jp", "\xe6\x97\xa5"));

    const QByteArray quotes("<a>\x93"
                            "caf\xe9\x94");
    const QByteArray quotesText = QString::fromUtf8("<a>\u201ccaf\u00e9\u201d").toUtf8();
    for (const char *name : {"iso-8859-1", "latin1", "ISO_8859-1", "us-ascii", "windows-1252"})
        row(name, quotes, name, quotesText);
    row("iso-8859-9", "<a>\x80\xfe", "iso-8859-9", "<a>\xe2\x82\xac\xc5\x9f");
    row("gb2312", "<a>\x98\x44", "gb2312", "<a>\xe6\xa5\xa7");

    row("UTF-16 declared in vain", declared("utf-16", eAcute), "", declared("utf-16", eAcute));
    row("UTF-16 named in vain", declared("windows-1251", cyrillic), "utf-16",
        declared("windows-1251", cyrillicText));
    row("EBCDIC declared in vain", declared("ibm-037", eAcute), "", declared("ibm-037", eAcute));
    row("unknown name", declared("x-unknown", eAcute), "", declared("x-unknown", eAcute));
    row("unknown name, stray byte", declared("x-unknown", "\xe9"), "", declared("x-unknown", replacement));
    row("name of a file", eAcute, "../../etc/passwd", eAcute);

    row("server says UTF-8 in vain", declared("windows-1251", cyrillic), "utf-8",
        declared("windows-1251", cyrillicText));
    row("server says UTF-8", declared("windows-1251", eAcute), "utf-8", declared("windows-1251", eAcute));
    row("declaration says UTF-8", declared("utf-8", eAcute), "iso-8859-1", declared("utf-8", eAcute));
    row("declaration says UTF-8 in vain", declared("utf-8", cyrillic), "windows-1251",
        declared("utf-8", cyrillicText));
    row("ASCII in vain", eAcute, "us-ascii", eAcute);
    row("no UTF-8 named", eAcute, "iso-8859-1", "\xc3\x83\xc2\xa9");

    row("JSON", "{\"a\":\"\xe9 caf\xe9 na\xefve\"}", "",
        "{\"a\":\"" + replacement + " caf" + replacement + " na" + replacement + "ve\"}");
    row("JSON, server is right", "\n{\"a\":\"\xe9\"}", "iso-8859-1", "\n{\"a\":\"" + eAcute + "\"}");
    row("JSON, server is wrong", "\n{\"a\":\"" + eAcute + "\"}", "iso-8859-1",
        "\n{\"a\":\"" + eAcute + "\"}");
    row("JSON in UTF-16", wide("{}", 0, 1), "", "{}");
}

void TestEncoding::decode()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, charset);
    QFETCH(QByteArray, expected);
    QCOMPARE(toUtf8(document, charset).utf8, expected);
}

// "_" stands for U+FFFD. Each maximal beginning of a character becomes one.
void TestEncoding::invalidUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, const QByteArray &bytes, const char *expected) {
        QTest::newRow(name) << bytes << QByteArray(expected).replace('_', replacement);
    };
    row("single byte",
        "a\xe9"
        "b",
        "a_b");
    row("two bytes", "\x80\xff", "__");
    row("cut character",
        "a\xe2\x82"
        "b",
        "a_b");
    row("cut at the end", "a\xf0\x9f\x98", "a_");
    row("too long", "\xc0\xaf", "__");
    row("surrogate", "\xed\xa0\x80", "___");
    row("above the last", "\xf4\x90\x80\x80", "____");
    row("zero", QByteArray("a\0b", 3), "a_b");
    row("far behind", QByteArray(100, 'a') + eAcute + '\xe9',
        (QByteArray(100, 'a') + eAcute + '_').constData());
}

void TestEncoding::invalidUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);
    // At each place of a group of eight bytes.
    for (int i = 0; i < 8; ++i) {
        const QByteArray before(i, '.');
        QCOMPARE(toUtf8(before + bytes, "utf-8").utf8, before + expected);
        QCOMPARE(toUtf8(before + bytes + "........", "utf-8").utf8, before + expected + "........");
    }
}

void TestEncoding::notes_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("charset");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("valid") << QByteArray("<a>" + eAcute) << QByteArray() << QStringList();
    QTest::newRow("converted") << QByteArray("<a>\xe9") << QByteArray("iso-8859-1") << QStringList();
    QTest::newRow("stray byte") << QByteArray("<a>\n\n\xe9\n\xe9") << QByteArray("utf-8")
                                << QStringList("had bytes that are not UTF-8: line 3");
    QTest::newRow("zero") << QByteArray("a\nb\0c", 5) << QByteArray("utf-8")
                          << QStringList("had bytes that are not UTF-8: line 2");
    QTest::newRow("other encoding") << QByteArray("<a>\n\xff") << QByteArray("euc-jp")
                                    << QStringList("had bytes that are not EUC-JP: line 2");
    QTest::newRow("guess") << QByteArray("<a>caf\xe9</a>") << QByteArray()
                           << QStringList("does not name its encoding: read as windows-1252");
}

void TestEncoding::notes()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, charset);
    QFETCH(QStringList, expected);
    QCOMPARE(toUtf8(document, charset).notes, expected);
}

void TestEncoding::validDocumentIsNotCopied()
{
    const QByteArray document = declared("utf-8", eAcute);
    QCOMPARE(toUtf8(document, "utf-8").utf8.constData(), document.constData());
}

void TestEncoding::guess_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("expected");

    QTest::newRow("French") << QByteArray(
        "<a>L'\xe9t\xe9 dernier, les \xe9l\xe8ves ont d\xe9j\xe0 pr\xe9par\xe9 la f\xeate du village</a>")
                            << QString::fromUtf8(
                                   "<a>L'\u00e9t\u00e9 dernier, les \u00e9l\u00e8ves ont d\u00e9j\u00e0 "
                                   "pr\u00e9par\u00e9 la f\u00eate du village</a>");
    QTest::newRow("Russian")
        << QByteArray("<a>\xcd\xee\xe2\xee\xf1\xf2\xe8 \xed\xe0\xf8\xe5\xe3\xee \xe3\xee\xf0\xee\xe4\xe0 "
                      "\xe8 \xef\xee\xe3\xee\xe4\xe0 \xed\xe0 \xe7\xe0\xe2\xf2\xf0\xe0</a>")
        << QString::fromUtf8(
               "<a>\u041d\u043e\u0432\u043e\u0441\u0442\u0438 \u043d\u0430\u0448\u0435\u0433\u043e "
               "\u0433\u043e\u0440\u043e\u0434\u0430 \u0438 \u043f\u043e\u0433\u043e\u0434\u0430 "
               "\u043d\u0430 \u0437\u0430\u0432\u0442\u0440\u0430</a>");
}

void TestEncoding::guess()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, expected);
    QCOMPARE(QString::fromUtf8(toUtf8(document, QByteArray()).utf8), expected);
}

void TestEncoding::resultIsBounded()
{
    for (const char *name : {"utf-8", "iso-8859-1", "big5-hkscs", "gb18030", "iso-2022-kr", "utf-7", "hz"}) {
        for (const char byte : {'\0', '\x81', '\xa4', '\xff'}) {
            const QByteArray document(1000000, byte);
            QVERIFY(toUtf8(document, name).utf8.size() <= 3 * document.size());
        }
    }
}

// No bytes may crash the program, and the result is valid.
void TestEncoding::anyBytesAreAccepted()
{
    const QByteArrayList names{"",      "utf-8",   "iso-8859-1", "shift_jis", "iso-2022-jp",
                               "utf-7", "gb18030", "x"};
    QRandomGenerator random(1);
    for (int round = 0; round < 20000; ++round) {
        QByteArray document;
        for (int length = random.bounded(40); length > 0; --length)
            document += char(random.bounded(256));
        const QByteArray utf8 = toUtf8(document, names.at(round % names.size())).utf8;
        QCOMPARE(QString::fromUtf8(utf8).toUtf8(), utf8);
        QVERIFY(!utf8.contains('\0'));
    }
}

QTEST_GUILESS_MAIN(TestEncoding)
#include "tst_encoding.moc"
