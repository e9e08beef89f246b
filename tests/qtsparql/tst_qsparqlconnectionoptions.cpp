// SPDX-License-Identifier: LGPL-2.1-or-later
#include <QSparqlConnectionOptions>

#include <QTest>

class TestConnectionOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsSetAtFirst();
    void keepsOptions();
    void databaseName();
    void equality();
};

void TestConnectionOptions::nothingIsSetAtFirst()
{
    const QSparqlConnectionOptions options;
    QVERIFY(options.databaseName().isEmpty());
    QVERIFY(!options.option(QStringLiteral("anything")).isValid());
}

void TestConnectionOptions::keepsOptions()
{
    QSparqlConnectionOptions options;
    options.setOption(QStringLiteral("one"), 1);
    options.setOption(QStringLiteral("two"), QStringLiteral("b"));
    QCOMPARE(options.option(QStringLiteral("one")), QVariant(1));
    QCOMPARE(options.option(QStringLiteral("two")), QVariant(QStringLiteral("b")));

    options.setOption(QStringLiteral("one"), 3);
    QCOMPARE(options.option(QStringLiteral("one")), QVariant(3));
    options.setOption(QStringLiteral("one"), QVariant());
    QVERIFY(!options.option(QStringLiteral("one")).isValid());
}

void TestConnectionOptions::databaseName()
{
    QSparqlConnectionOptions options;
    options.setDatabaseName(QStringLiteral("/a/folder"));
    QCOMPARE(options.databaseName(), QStringLiteral("/a/folder"));
    options.setDatabaseName(QString());
    QVERIFY(options.databaseName().isEmpty());
}

void TestConnectionOptions::equality()
{
    QSparqlConnectionOptions one;
    QSparqlConnectionOptions two;
    QVERIFY(one == two);
    one.setDatabaseName(QStringLiteral("/a"));
    QVERIFY(one != two);
    two.setDatabaseName(QStringLiteral("/a"));
    QVERIFY(one == two);
    QVERIFY(!(one != two));
    two.setDatabaseName(QStringLiteral("/b"));
    QVERIFY(one != two);
    two.setDatabaseName(QStringLiteral("/a"));
    two.setOption(QStringLiteral("more"), true);
    QVERIFY(one != two);
    two.setOption(QStringLiteral("more"), QVariant());
    QVERIFY(one == two);
}

QTEST_GUILESS_MAIN(TestConnectionOptions)
#include "tst_qsparqlconnectionoptions.moc"
