// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/documenturl.h>
#include <TidelReader/link.h>

#include <QtTest>

using namespace Tidel;

class TestDocumentUrl : public QObject
{
    Q_OBJECT

private slots:
    void addresses_data();
    void addresses();
    void oneFileHasOneAddress();
};

void TestDocumentUrl::addresses_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("expected");

    QTest::newRow("path") << "/feeds/a.xml"
                          << "file:///feeds/a.xml";
    QTest::newRow("null character") << QString("feeds/a%1.xml").arg(QChar(0)) << QString();
    QTest::newRow("null character in a URL") << "file:a%00.xml" << QString();
    QTest::newRow("path with dots") << "/feeds/./x/../a.xml"
                                    << "file:///feeds/a.xml";
    QTest::newRow("file URL") << "file:///feeds/a.xml"
                              << "file:///feeds/a.xml";
    QTest::newRow("file URL, one slash") << "file:/feeds/a.xml"
                                         << "file:///feeds/a.xml";
    QTest::newRow("file URL with host") << "FILE://localhost/feeds/a.xml"
                                        << "file:///feeds/a.xml";
    QTest::newRow("encoded file URL") << "file:///feeds/a%20b%23.xml"
                                      << "file:///feeds/a%20b%23.xml";
    QTest::newRow("web") << "https://example.org/a.xml"
                         << "https://example.org/a.xml";
}

void TestDocumentUrl::addresses()
{
    QFETCH(QString, argument);
    QFETCH(QString, expected);
    QCOMPARE(Link::encoded(documentUrl(argument)), expected);
}

void TestDocumentUrl::oneFileHasOneAddress()
{
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(QDir::setCurrent(dir.path()));
    const QString path = dir.filePath("one.xml");
    const QUrl url = documentUrl(path);
    QCOMPARE(documentUrl("one.xml"), url);
    QCOMPARE(documentUrl("./one.xml"), url);
    QCOMPARE(documentUrl(":one.xml"), QUrl::fromLocalFile(dir.path() + "/:one.xml"));
    QCOMPARE(documentUrl("file:one.xml"), url);
    QCOMPARE(documentUrl(QUrl::fromLocalFile(path).toString()), url);
}

QTEST_GUILESS_MAIN(TestDocumentUrl)
#include "tst_documenturl.moc"
