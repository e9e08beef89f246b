// SPDX-License-Identifier: LGPL-2.1-or-later
#include <tagscanner.h>
#include <xmlguard.h>

#include <QtTest>

using namespace Tidel;

namespace {

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

QString obstacle(const QByteArray &document)
{
    XmlExtent extent;
    return xmlObstacle(document, &extent);
}

XmlExtent scanned(const QByteArray &document)
{
    TagScanner scanner(document);
    scanner.scan();
    return scanner.extent();
}

} // namespace

class TestXmlGuard : public QObject
{
    Q_OBJECT

private slots:
    void depth_data();
    void depth();
    void attributes_data();
    void attributes();
    void truncatedDocuments();
    void goodDocumentsPass_data();
    void goodDocumentsPass();
    void obstacles_data();
    void obstacles();
    void errorsHavePosition();
};

void TestXmlGuard::depth_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("expected");

    QTest::newRow("nothing") << QByteArray() << 0;
    QTest::newRow("text") << QByteArray("text") << 0;
    QTest::newRow("one") << QByteArray("<a>") << 1;
    QTest::newRow("closed") << QByteArray("<a></a><a></a>") << 1;
    QTest::newRow("empty elements") << QByteArray("<a><b/><b /><b c='1'/></a>") << 2;
    QTest::newRow("declaration") << QByteArray("<?xml version='1.0'?><!DOCTYPE a><a/>") << 1;
    QTest::newRow("instruction") << QByteArray("<?x <a><a><a> ?><a/>") << 1;
    QTest::newRow("comment") << QByteArray("<!-- <a><a></a></a></a></a> --><a><b/></a>") << 2;
    QTest::newRow("section") << QByteArray("<a><![CDATA[ <b><b></a></a></a> ]]><c><d/></c></a>") << 3;
    QTest::newRow("end tag in a value") << QByteArray("<a b='</a>'><a b=\"</a>\"><a b='\"</a>'/>") << 3;
    QTest::newRow("bracket in a value") << QByteArray("<a b='/>'><a/></a>") << 2;
    QTest::newRow("too many end tags") << QByteArray("</a></a></a><a><b>") << 2;
    QTest::newRow("many") << nested(1000) << 1000;
}

void TestXmlGuard::depth()
{
    QFETCH(QByteArray, document);
    QFETCH(int, expected);
    QCOMPARE(scanned(document).depth, expected);
}

void TestXmlGuard::attributes_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("expected");

    QTest::newRow("none") << QByteArray("<a></a>") << 0;
    QTest::newRow("some") << QByteArray("<a b='1' c=\"2\"/>") << 2;
    QTest::newRow("around") << QByteArray("<a b='1'><a b='1' c='2'><a d='1'/></a></a>") << 4;
    QTest::newRow("beside") << QByteArray("<a b='1'><a b='1'></a><a c='1'/><a/></a><a b=''/>") << 2;
}

void TestXmlGuard::attributes()
{
    QFETCH(QByteArray, document);
    QFETCH(int, expected);
    QCOMPARE(scanned(document).attributes, expected);
}

void TestXmlGuard::truncatedDocuments()
{
    const QByteArray document("<?xml version='1.0'?><!DOCTYPE a><a b='c'><!-- d --><![CDATA[e]]></a>");
    for (int length = 0; length <= document.size(); ++length) {
        QVERIFY(scanned(document.left(length)).depth <= 1);
        const QString found = obstacle(document.left(length));
        QVERIFY2(found.isEmpty() || found.startsWith("the document is not well-formed XML"),
                 qPrintable(found));
    }
}

void TestXmlGuard::goodDocumentsPass_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("small") << QByteArray("<a/>");
    QTest::newRow("deep") << nested(maximumXmlExtent.depth);
    QTest::newRow("wide") << QByteArray("<a>") + QByteArray("<b>c</b>").repeated(100000) + "</a>";
    QTest::newRow("tags in sections") << "<a>" + QByteArray("<![CDATA[<p><p><p>]]>").repeated(10000) + "</a>";
    QTest::newRow("entities") << QByteArray("<!DOCTYPE a [<!ENTITY e 'text'>]><a>&e;</a>");
}

void TestXmlGuard::goodDocumentsPass()
{
    QFETCH(QByteArray, document);
    QCOMPARE(obstacle(document), QString());
}

void TestXmlGuard::obstacles_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("expected");

    const QString deep = "nested more than 500 deep";
    QTest::newRow("deep") << nested(maximumXmlExtent.depth + 1) << deep;
    QTest::newRow("very deep") << QByteArray("<a>").repeated(200000) << deep;
    QTest::newRow("deep and hidden by values")
        << QByteArray("<a b='</a></a></a>'>").repeated(1000) + QByteArray("</a>").repeated(1000) << deep;
    QTest::newRow("deep and hidden by sections")
        << QByteArray("<a><![CDATA[</a></a>]]><!--</a></a>-->").repeated(1000) << deep;
    QTest::newRow("deep by entities")
        << QByteArray("<!DOCTYPE a [<!ENTITY e '") + nested(maximumXmlExtent.depth + 1) + "'>]><a>&e;</a>"
        << deep;
    QTest::newRow("many elements") << QByteArray("<a>")
            + QByteArray("<b/>").repeated(int(maximumXmlExtent.nodes)) + "</a>"
                                   << "elements";
    QTest::newRow("many attributes") << QByteArray("<a ") + QByteArray("b='' ").repeated(100000) + "/>"
                                     << "attributes";
    QTest::newRow("many entities") << QByteArray("<!DOCTYPE a [<!ENTITY e '") + QByteArray(4000, 'e')
            + "'>]><a>" + QByteArray("&e;").repeated(50000) + "</a>"
                                   << "entities";
    QTest::newRow("large with entities")
        << QByteArray("<!DOCTYPE a [<!ENTITY e 'e'>]><a>") + QByteArray(300000, ' ') + "</a>"
        << "entities";
    QTest::newRow("tags that are never closed")
        << QByteArray("<html><body>") + QByteArray("<br>").repeated(600) + "</body></html>" << deep;
    QTest::newRow("error in a document with entities")
        << QByteArray("<!DOCTYPE a [<!ENTITY e 'e'>]>\n<a></b>")
        << "the document is not well-formed XML (line 2, ";
}

void TestXmlGuard::obstacles()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, expected);
    const QString found = obstacle(document);
    QVERIFY2(found.contains(expected), qPrintable(found));
}

void TestXmlGuard::errorsHavePosition()
{
    QCOMPARE(xmlError("<a>\n<b/></a>"), QString());
    const QString error = xmlError("<a>\n  <b></c></a>");
    QVERIFY2(error.startsWith("the document is not well-formed XML (line 2, column "), qPrintable(error));
    QVERIFY(!xmlError("").isEmpty());
    QVERIFY(!xmlError("text").isEmpty());
}

QTEST_GUILESS_MAIN(TestXmlGuard)
#include "tst_xmlguard.moc"
