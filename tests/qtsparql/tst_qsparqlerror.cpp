// SPDX-License-Identifier: LGPL-2.1-or-later
#include <QSparqlError>

#include <QDebug>
#include <QTest>

class TestError : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysNothingAtFirst();
    void keepsWhatItIsGiven();
    void setters();
    void isValidByItsTypeAlone();
    void debugText();
};

void TestError::saysNothingAtFirst()
{
    const QSparqlError error;
    QCOMPARE(error.type(), QSparqlError::NoError);
    QCOMPARE(error.number(), -1);
    QVERIFY(error.message().isEmpty());
    QVERIFY(!error.isValid());
}

void TestError::keepsWhatItIsGiven()
{
    const QSparqlError error(QStringLiteral("no"), QSparqlError::BackendError, 7);
    QCOMPARE(error.message(), QStringLiteral("no"));
    QCOMPARE(error.type(), QSparqlError::BackendError);
    QCOMPARE(error.number(), 7);
    QVERIFY(error.isValid());
}

void TestError::setters()
{
    QSparqlError error;
    error.setMessage(QStringLiteral("no"));
    error.setType(QSparqlError::StatementError);
    error.setNumber(0);
    QCOMPARE(error.message(), QStringLiteral("no"));
    QCOMPARE(error.type(), QSparqlError::StatementError);
    QCOMPARE(error.number(), 0);
}

void TestError::isValidByItsTypeAlone()
{
    QVERIFY(!QSparqlError(QStringLiteral("text without a type")).isValid());
    for (int type = QSparqlError::ConnectionError; type <= QSparqlError::UnknownError; ++type)
        QVERIFY(QSparqlError(QString(), QSparqlError::ErrorType(type)).isValid());
}

void TestError::debugText()
{
    QString line;
    QDebug(&line) << QSparqlError(QStringLiteral("no \"x\""), QSparqlError::TransactionError, 12) << 1;
    QCOMPARE(line, QStringLiteral("QSparqlError(3, 12, \"no \\\"x\\\"\") 1 "));
}

QTEST_GUILESS_MAIN(TestError)
#include "tst_qsparqlerror.moc"
