// SPDX-License-Identifier: LGPL-2.1-or-later
#include <mimetype.h>

#include <QtTest>

using namespace Tidel;

class TestMimeType : public QObject
{
    Q_OBJECT

private slots:
    void types_data();
    void types();
    void charsets_data();
    void charsets();
};

void TestMimeType::types_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << "audio/mpeg"
                           << "audio/mpeg";
    QTest::newRow("parameter") << " Audio/MPEG; codecs=mp3"
                               << "audio/mpeg";
    QTest::newRow("marks") << "application/vnd.a-b_c+d.1"
                           << "application/vnd.a-b_c+d.1";
    QTest::newRow("no subtype") << "audio/"
                                << "";
    QTest::newRow("no type") << "/mpeg"
                             << "";
    QTest::newRow("no slash") << "mp3"
                              << "";
    QTest::newRow("markup") << "audio/<mpeg>"
                            << "";
    QTest::newRow("too long") << "audio/" + QString(250, 'x') << "";
}

void TestMimeType::types()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(cleanMimeType(text), expected);
}

void TestMimeType::charsets_data()
{
    QTest::addColumn<QString>("header");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("plain") << "text/xml; charset=utf-8" << QByteArray("utf-8");
    QTest::newRow("quoted") << "text/xml;CHARSET = \"ISO-8859-1\"; q=1" << QByteArray("ISO-8859-1");
    QTest::newRow("second parameter") << "text/xml; version=2; charset='koi8-r'" << QByteArray("koi8-r");
    QTest::newRow("none") << "text/xml" << QByteArray();
    QTest::newRow("empty") << "text/xml; charset=" << QByteArray();
    QTest::newRow("other parameter") << "text/xml; xcharset=utf-8" << QByteArray();
}

void TestMimeType::charsets()
{
    QFETCH(QString, header);
    QFETCH(QByteArray, expected);
    QCOMPARE(charsetOf(header), expected);
}

QTEST_APPLESS_MAIN(TestMimeType)
#include "tst_mimetype.moc"
