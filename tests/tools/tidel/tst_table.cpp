// SPDX-License-Identifier: LGPL-2.1-or-later
#include <output.h>
#include <table.h>
#include <terminaltext.h>

#include <QtTest>

#include <clocale>

using namespace Tidel;

class TestTable : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void terminalText_data();
    void terminalText();
    void noControlCharacters();
    void width_data();
    void width();
    void columnsAreAligned();
    void longCellsAreNotAligned();
    void rowsOfDifferentLengths();
    void cut_data();
    void cut();
    void elasticColumns();
    void outputIsSafe();
    void outputReportsWriteErrors();
};

void TestTable::initTestCase() { QVERIFY(setlocale(LC_CTYPE, "C.UTF-8")); }

void TestTable::terminalText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << "plain text"
                           << "plain text";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("line breaks") << "a\nb\r\nc\td\ve\ff"
                                 << "a b  c d e f";
    QTest::newRow("other line breaks") << QStringLiteral("a\u0085b\u2028c\u2029d") << "a b c d";
    QTest::newRow("escape sequence") << "\x1b[2J\x1b]0;title\a"
                                     << "[2J]0;title";
    QTest::newRow("8-bit escape sequence") << QStringLiteral("\u009b31m") << "31m";
    QTest::newRow("null") << QString(QChar(0)) + "a"
                          << "a";
    QTest::newRow("delete") << "a\x7f"
                            << "a";
    QTest::newRow("override") << QStringLiteral("\u202etxt.exe\u202c") << "txt.exe";
    QTest::newRow("isolate") << QStringLiteral("\u2067a\u2069") << "a";
    QTest::newRow("marks stay") << QStringLiteral("\u05d0\u200e!\u200f")
                                << QStringLiteral("\u05d0\u200e!\u200f");
    QTest::newRow("joiners stay") << QStringLiteral("\u0915\u094d\u200d")
                                  << QStringLiteral("\u0915\u094d\u200d");
    QTest::newRow("beyond the BMP") << QStringLiteral("\U0001f422") << QStringLiteral("\U0001f422");
    QTest::newRow("lone surrogate") << QString(QChar(0xd83d)) + "a" << QStringLiteral("\ufffda");
    QTest::newRow("byte order mark") << QStringLiteral("\ufeffa") << "a";
}

void TestTable::terminalText()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(Tidel::terminalText(text), expected);
}

void TestTable::noControlCharacters()
{
    for (uint c = 0; c < 0x3000; ++c) {
        const QString safe = Tidel::terminalText(QString(QChar(c)));
        for (QChar shown : safe) {
            QVERIFY2(shown.category() != QChar::Other_Control, qPrintable(QString::number(c, 16)));
            const QChar::Direction direction = shown.direction();
            QVERIFY(direction != QChar::DirLRE && direction != QChar::DirRLE && direction != QChar::DirLRO
                    && direction != QChar::DirRLO && direction != QChar::DirPDF && direction != QChar::DirLRI
                    && direction != QChar::DirRLI && direction != QChar::DirFSI
                    && direction != QChar::DirPDI);
        }
    }
}

void TestTable::width_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("empty") << "" << 0;
    QTest::newRow("latin") << QStringLiteral("caf\u00e9") << 4;
    QTest::newRow("combining") << QStringLiteral("cafe\u0301") << 4;
    QTest::newRow("wide") << QStringLiteral("\u4e80\u306e") << 4;
    QTest::newRow("hebrew") << QStringLiteral("\u05e6\u05d1") << 2;
    QTest::newRow("emoji") << QStringLiteral("\U0001f422") << 2;
}

void TestTable::width()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    QCOMPARE(displayWidth(text), expected);
}

void TestTable::columnsAreAligned()
{
    Table table({1});
    QVERIFY(table.lines().isEmpty());
    table.addRow({"a", "1", "x"});
    table.addRow({QStringLiteral("\u4e80"), "22", ""});
    table.addRow({"two\nlines", "333", "z "});
    const QStringList expected{"a            1  x", QStringLiteral("\u4e80          22"),
                               "two lines  333  z"};
    QCOMPARE(table.lines(), expected);
}

void TestTable::longCellsAreNotAligned()
{
    Table table;
    table.addRow({QString(100, 'a'), "x"});
    table.addRow({"b", "y"});
    QCOMPARE(table.lines().at(0), QString(100, 'a') + "  x");
    QCOMPARE(table.lines().at(1), "b" + QString(61, ' ') + "y");
}

void TestTable::rowsOfDifferentLengths()
{
    Table table;
    table.addRow({"a"});
    table.addRow({"b", "c", "d"});
    table.addRow({});
    const QStringList expected{"a", "b  c  d", ""};
    QCOMPARE(table.lines(), expected);
}

void TestTable::cut_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");

    QTest::newRow("fits") << "abc" << 3 << "abc";
    QTest::newRow("too long") << "abcd" << 3 << QStringLiteral("ab\u2026");
    QTest::newRow("at a blank") << "ab cd" << 4 << QStringLiteral("ab\u2026");
    QTest::newRow("wide") << QStringLiteral("\u4e80\u306e\u4e80") << 4 << QStringLiteral("\u4e80\u2026");
    QTest::newRow("wide, exactly") << QStringLiteral("\u4e80\u306e\u4e80") << 5
                                   << QStringLiteral("\u4e80\u306e\u2026");
    QTest::newRow("beyond the BMP") << QStringLiteral("\U0001f422\U0001f422") << 3
                                    << QStringLiteral("\U0001f422\u2026");
    QTest::newRow("one column") << "abc" << 1 << QStringLiteral("\u2026");
    QTest::newRow("no column") << "abc" << 0 << "";
}

void TestTable::cut()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QFETCH(QString, expected);
    QCOMPARE(Tidel::cut(text, width), expected);
}

// The first elastic column gives way until it is narrow, then the next one.
void TestTable::elasticColumns()
{
    Table table({0});
    table.setElastic({2, 1}, 4);
    table.addRow({"1", "channel", "a long title", "end"});
    table.addRow({"22", "c", "t", "end"});
    QCOMPARE(table.lines(30), table.lines());
    QCOMPARE(
        table.lines(28),
        QStringList({QStringLiteral(" 1  channel  a long ti\u2026  end"), "22  c        t           end"}));
    QCOMPARE(table.lines(19),
             QStringList({QStringLiteral(" 1  cha\u2026  a l\u2026  end"), "22  c     t     end"}));
    // It cannot get narrower.
    QCOMPARE(table.lines(3), table.lines(19));
}

void TestTable::outputIsSafe()
{
    QTemporaryFile results;
    QTemporaryFile errors;
    QVERIFY(results.open() && errors.open());
    FILE *resultStream = fopen(qPrintable(results.fileName()), "w");
    FILE *errorStream = fopen(qPrintable(errors.fileName()), "w");
    {
        Output output(resultStream, errorStream);
        output.line(QStringLiteral("caf\u00e9\x1b[2J\nb"));
        output.note("for your information");
        QVERIFY(output.finish());
        output.error("feed\x1b.xml:\nbroken");
        QVERIFY(!output.finish());
    }
    fclose(resultStream);
    fclose(errorStream);
    QCOMPARE(results.readAll(), QByteArray("caf\xc3\xa9[2J b\n"));
    QCOMPARE(errors.readAll(), QByteArray("for your information\ntidel: feed.xml: broken\n"));
}

void TestTable::outputReportsWriteErrors()
{
    FILE *full = fopen("/dev/full", "w");
    QVERIFY(full);
    FILE *ignored = fopen("/dev/null", "w");
    Output output(full, ignored);
    output.line("lost");
    QVERIFY(!output.finish());
    fclose(full);
    fclose(ignored);
}

QTEST_GUILESS_MAIN(TestTable)
#include "tst_table.moc"
