// SPDX-License-Identifier: LGPL-2.1-or-later
#include <commandhelp.h>
#include <commandtable.h>

#include "capture.h"

#include <QtTest>

using namespace Tidel;

/// Tests what is made of the table of commands.
class TestCommandTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void examples();
    void helpFitsTheTerminal();
    void similarWords_data();
    void similarWords();
    void styles();
};

void TestCommandTable::examples()
{
    const auto commands = allCommands();
    for (const Command *command : qAsConst(commands)) {
        QVERIFY2(!command->examples.empty(), command->name);
        for (const char *example : command->examples)
            QVERIFY2(QString(example).startsWith(QString("tidel %1").arg(command->name)), example);
    }
}

void TestCommandTable::helpFitsTheTerminal()
{
    const auto commands = allCommands();
    for (const int width : {70, 80, 300}) {
        QStringList lines = programHelp(width).split('\n');
        for (const Command *command : qAsConst(commands))
            lines += commandHelp(*command, width).split('\n');
        for (const QString &line : qAsConst(lines))
            QVERIFY2(line.startsWith("  tidel ") || line.size() <= qMin(width, 100), qPrintable(line));
    }
}

void TestCommandTable::similarWords_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("similar");

    QTest::newRow("two letters exchanged") << "serach"
                                           << "search";
    QTest::newRow("letter missing") << "subscibe"
                                    << "subscribe";
    QTest::newRow("beginning") << "sub"
                               << "subscribe";
    QTest::newRow("letter too many") << "showw"
                                     << "show";
    QTest::newRow("the nearer one") << "unsubscrib"
                                    << "unsubscribe";
    QTest::newRow("another word") << "frobnicate"
                                  << "";
    QTest::newRow("one letter") << "x"
                                << "";
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("long") << QString(100000, 'a') << "";
}

void TestCommandTable::similarWords()
{
    QFETCH(QString, word);
    QTEST(similarWord(word, commandNames()), "similar");
}

void TestCommandTable::styles()
{
    const auto written = [](Output::Style style, bool isQuiet) {
        Capture capture;
        Output output = capture.output();
        output.setStyle(style, isQuiet);
        output.line("line");
        output.object({{"key", "value\x1b"}});
        output.report("did", {{"key", "did"}});
        output.note("note");
        output.error("error", {{"uri", "urn:x"}});
        output.finish();
        return QStringList{capture.out(), capture.err()};
    };
    const QString objects =
        "{\"key\":\"value\\u001b\"}\n{\"key\":\"did\"}\n{\"error\":\"error\",\"uri\":\"urn:x\"}\n";
    QCOMPARE(written(Output::Text, false), QStringList({"line\ndid\n", "note\ntidel: error\n"}));
    QCOMPARE(written(Output::Text, true), QStringList({"line\n", "tidel: error\n"}));
    QCOMPARE(written(Output::Json, false), QStringList({objects, "note\n"}));
    QCOMPARE(written(Output::Json, true), QStringList({objects, QString()}));
}

QTEST_GUILESS_MAIN(TestCommandTable)
#include "tst_commandtable.moc"
