// SPDX-License-Identifier: LGPL-2.1-or-later
#include <xmltext.h>

#include <QtTest>

using namespace Tidel;

class TestXmlText : public QObject
{
    Q_OBJECT

private slots:
    void unchanged_data();
    void unchanged();
    void repaired_data();
    void repaired();
    void refused_data();
    void refused();
};

void TestXmlText::unchanged_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no declaration") << QByteArray("<a/>");
    QTest::newRow("blank space alone") << QByteArray("\n <a/>");
    QTest::newRow("UTF-8") << QByteArray(
        "<?xml version='1.0' encoding='UTF-8'?><a>\xc3\xa9\xe4\xba\x80\xf0\x9f\x90\xa2</a>");
    QTest::newRow("UTF-8, undeclared") << QByteArray("<a>\xc3\xa9</a>");
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf<a/>");
    QTest::newRow("Latin-1") << QByteArray("<?xml version='1.0' encoding=\"ISO-8859-1\"?><a>\xe9</a>");
    QTest::newRow("Windows") << QByteArray("<?xml version='1.0' encoding='windows-1252'?><a>\x80</a>");
}

void TestXmlText::unchanged()
{
    QFETCH(QByteArray, document);
    QString error;
    const auto readable = readableXml(document, &error);
    QVERIFY2(readable, qPrintable(error));
    QCOMPARE(*readable, document);
}

void TestXmlText::repaired_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("declaration after line breaks")
        << QByteArray("\n\n <?xml version='1.0'?><a/>") << QByteArray("<?xml version='1.0'?>\n\n <a/>");
    QTest::newRow("byte order mark and line break")
        << QByteArray("\xef\xbb\xbf\n<?xml version='1.0'?><a/>") << QByteArray("<?xml version='1.0'?>\n<a/>");
    QTest::newRow("undeclared Latin-1")
        << QByteArray("<a>\xe9</a>")
        << QByteArray("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xe9</a>");
    QTest::newRow("UTF-16 in name only")
        << QByteArray("<?xml version='1.0' encoding='utf-16'?>\n<a>\xc3\xa9</a>")
        << QByteArray("\n<a>\xc3\xa9</a>");
    QTest::newRow("UTF-16, little end first")
        << QByteArray("\xff\xfe<\0?\0x\0m\0l\0?\0>\0<\0\xe9\0/\0>\0", 24) << QByteArray("<\xc3\xa9/>");
    QTest::newRow("UTF-16, big end first") << QByteArray("\xfe\xff\0<\0a\0/\0>", 10) << QByteArray("<a/>");
    QTest::newRow("UTF-16 without mark") << QByteArray("<\0a\0/\0>\0", 8) << QByteArray("<a/>");
    QTest::newRow("UTF-16, big end first, without mark")
        << QByteArray("\0<\0a\0/\0>", 8) << QByteArray("<a/>");
}

void TestXmlText::repaired()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, expected);
    QString error;
    const auto readable = readableXml(document, &error);
    QVERIFY2(readable, qPrintable(error));
    QCOMPARE(*readable, expected);
}

void TestXmlText::refused_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("expected");

    const QByteArray declaration("<?xml version='1.0' encoding='utf-8'?>\n");
    const auto notUtf8 = [&](const char *name, const char *text) {
        QTest::newRow(name) << declaration + text
                            << "the document is not well-formed XML (line 2, column 4: ";
    };
    notUtf8("Latin-1 declared as UTF-8", "<a>\xe9</a>");
    notUtf8("continuation alone", "<a>\x80</a>");
    notUtf8("overlong", "<a>\xc0\xaf</a>");
    notUtf8("too high", "<a>\xf5\x80\x80\x80</a>");
    notUtf8("cut short", "<a>\xe4\xba");
    QTest::newRow("unknown encoding") << QByteArray("<?xml version='1.0' encoding='klingon'?><a/>")
                                      << "the document has the encoding \"klingon\", which is not supported";
    QTest::newRow("declaration without end") << QByteArray("<?xml version='1.0' encoding='\xe9") << "";
}

void TestXmlText::refused()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, expected);
    QString error;
    const auto readable = readableXml(document, &error);
    if (expected.isEmpty()) // Any result is valid.
        return;
    QVERIFY(!readable);
    QVERIFY2(error.startsWith(expected), qPrintable(error));
}

QTEST_GUILESS_MAIN(TestXmlText)
#include "tst_xmltext.moc"
