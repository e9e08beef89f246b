// SPDX-License-Identifier: LGPL-2.1-or-later
#include <QSparqlBinding>
#include <QSparqlResultRow>

#include <QDebug>
#include <QTest>

class TestResultRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst();
    void keepsTheOrder();
    void byName();
    void outOfRange();
    void firstOfTwoNames();
    void clear();
    void equality();
    void debugText();
};

namespace {

QSparqlBinding binding(const char *name, const QVariant &value)
{
    return QSparqlBinding(QString::fromLatin1(name), value);
}

QSparqlResultRow row()
{
    QSparqlResultRow row;
    row.append(binding("one", 1));
    row.append(binding("two", QStringLiteral("b")));
    row.append(binding("three", QVariant()));
    return row;
}

} // namespace

void TestResultRow::isEmptyAtFirst()
{
    const QSparqlResultRow row;
    QVERIFY(row.isEmpty());
    QCOMPARE(row.count(), 0);
    QVERIFY(!row.contains(QString()));
}

void TestResultRow::keepsTheOrder()
{
    const QSparqlResultRow three = row();
    QVERIFY(!three.isEmpty());
    QCOMPARE(three.count(), 3);
    QVERIFY(three.binding(0) == binding("one", 1));
    QVERIFY(three.binding(1) == binding("two", QStringLiteral("b")));
    QCOMPARE(three.value(0), QVariant(1));
    QCOMPARE(three.value(1), QVariant(QStringLiteral("b")));
    QCOMPARE(three.variableName(2), QStringLiteral("three"));
    QVERIFY(!three.value(2).isValid());
}

void TestResultRow::byName()
{
    const QSparqlResultRow three = row();
    QCOMPARE(three.indexOf(QStringLiteral("two")), 1);
    QVERIFY(three.contains(QStringLiteral("two")));
    QVERIFY(three.binding(QStringLiteral("two")) == three.binding(1));
    QCOMPARE(three.value(QStringLiteral("two")), QVariant(QStringLiteral("b")));

    QCOMPARE(three.indexOf(QStringLiteral("four")), -1);
    QVERIFY(!three.contains(QStringLiteral("Two")));
    QVERIFY(three.binding(QStringLiteral("four")) == QSparqlBinding());
    QVERIFY(!three.value(QStringLiteral("four")).isValid());
}

void TestResultRow::outOfRange()
{
    const QSparqlResultRow three = row();
    for (const int index : {-1, 3, 1000}) {
        QVERIFY(three.binding(index) == QSparqlBinding());
        QVERIFY(!three.value(index).isValid());
        QVERIFY(three.variableName(index).isEmpty());
    }
}

void TestResultRow::firstOfTwoNames()
{
    QSparqlResultRow twice;
    twice.append(binding("a", 1));
    twice.append(binding("a", 2));
    QCOMPARE(twice.indexOf(QStringLiteral("a")), 0);
    QCOMPARE(twice.value(QStringLiteral("a")), QVariant(1));
}

void TestResultRow::clear()
{
    QSparqlResultRow three = row();
    three.clear();
    QVERIFY(three.isEmpty());
    QVERIFY(three == QSparqlResultRow());
}

void TestResultRow::equality()
{
    QVERIFY(row() == row());
    QVERIFY(!(row() != row()));
    QSparqlResultRow longer = row();
    longer.append(binding("four", 4));
    QVERIFY(longer != row());

    QSparqlResultRow turned;
    turned.append(binding("two", QStringLiteral("b")));
    turned.append(binding("one", 1));
    turned.append(binding("three", QVariant()));
    QVERIFY(turned != row());
}

void TestResultRow::debugText()
{
    QString text;
    QDebug(&text) << row();
    QCOMPARE(text,
             QStringLiteral("QSparqlResultRow(3)\n QSparqlBinding(one, 1)\n QSparqlBinding(two, \"b\")\n"
                            " QSparqlBinding(three, ) "));
}

QTEST_GUILESS_MAIN(TestResultRow)
#include "tst_qsparqlresultrow.moc"
