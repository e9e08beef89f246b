// SPDX-License-Identifier: LGPL-2.1-or-later
#include <enclosurename.h>

#include <QtTest>

using Tidel::EnclosureName;

/// Tests the names for addresses that cannot be downloaded in a test. tst_enclosuredownloads tests the
/// others.
class TestEnclosureName : public QObject
{
    Q_OBJECT

private slots:
    void oddAddresses_data();
    void oddAddresses();
    void numbers();
};

void TestEnclosureName::oddAddresses_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty") << QByteArray() << "enclosure";
    QTest::newRow("host alone") << QByteArray("https://example.org") << "enclosure";
    QTest::newRow("dot") << QByteArray("https://example.org/.") << "enclosure";
    QTest::newRow("two dots") << QByteArray("https://example.org/a/..") << "enclosure";
    QTest::newRow("encoded dots") << QByteArray("https://example.org/%2E%2E") << "enclosure";
    QTest::newRow("NUL") << QByteArray("https://example.org/a%00.mp3") << "a.mp3";
    QTest::newRow("suffix alone") << QByteArray("https://example.org/.mp3") << "mp3";
    QTest::newRow("option") << QByteArray("https://example.org/-rf") << "rf";
    QTest::newRow("hidden options") << QByteArray("https://example.org/.--%20-a.mp3") << "a.mp3";
    QTest::newRow("dash alone") << QByteArray("https://example.org/-") << "enclosure";
    QTest::newRow("dot at the end") << QByteArray("https://example.org/a.") << "a.";
    QTest::newRow("line separators") << QByteArray("https://example.org/a%E2%80%A8b%C2%85c") << "abc";
    QTest::newRow("fragment") << QByteArray("https://example.org/a.mp3#../b") << "a.mp3";
    QTest::newRow("no hierarchy") << QByteArray("mailto:a@b") << "a@b";
}

void TestEnclosureName::oddAddresses()
{
    QFETCH(QByteArray, address);
    QFETCH(QString, expected);
    QCOMPARE(EnclosureName(QUrl::fromEncoded(address)).attempt(1), expected);
}

void TestEnclosureName::numbers()
{
    const EnclosureName name(QUrl("https://example.org/a.tar.gz"));
    QCOMPARE(name.attempt(1), QString("a.tar.gz"));
    QCOMPARE(name.attempt(2), QString("a.tar-2.gz"));
    QCOMPARE(EnclosureName(QUrl("https://example.org/a")).attempt(10), QString("a-10"));
    const EnclosureName longest(QUrl("https://example.org/" + QString(500, 'a') + '.' + QString(19, 'b')));
    QVERIFY(longest.attempt(10000).toUtf8().size() <= 255);
    const EnclosureName wide(
        QUrl("https://example.org/" + QString(500, QChar(0x4e00)) + '.' + QString(19, QChar(0x4e00))));
    QVERIFY(wide.attempt(10000).toUtf8().size() <= 255);
}

QTEST_GUILESS_MAIN(TestEnclosureName)
#include "tst_enclosurename.moc"
