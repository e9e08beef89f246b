// SPDX-License-Identifier: LGPL-2.1-or-later
#include "loggertest.h"

#include <QDateTime>
#include <QTest>

#include <csignal>
#include <ctime>

class TestLogOutput : public LoggerTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void storeMessage();
    void split_data();
    void split();
    void unstructured_data();
    void unstructured();
    void noText();
    void emptyCategory_data();
    void emptyCategory();

    void levels_data();
    void levels();
    void unknownCategory();
    void recordsOfTheHost();

    void fatal_data();
    void fatal();
    void fatalTrace();
    void fatalIsWrittenAfterEarlierMessages();

    void defaultTemplate();
    void emptyTemplate();
    void timestamp_data();
    void timestamp();
    void levelWords();
    void fileNames_data();
    void fileNames();
    void placeholders_data();
    void placeholders();
    void placeholdersCannotExplode();

    void textsOutsideAscii_data();
    void textsOutsideAscii();
    void nullCharacters();
    void lineBreaks();
    void longTexts();
};

namespace {

const QString allFields = "<file>|<line>|<function>|<msgtype>|<message>|";
const QByteArray noPadding =
    "timestamp-length=0\nfile-length=0\nline-length=0\nfunction-length=0\nmsgtype-length=0\n";

} // namespace

void TestLogOutput::storeMessage()
{
    writeSettings(allFields.toUtf8(), noPadding + "[Tracker]\ndebug=true\n");
    const QString text = "Tracker\nsrc/feedtrackersparql.cpp\n46\nstatic FeedTrackerSparql* "
                         "FeedTrackerSparql::instance()\ninstance\n object init ";
    VERIFY_QUIET(runLogger({"filter:debug," + text}));
    QCOMPARE(log(), QByteArray("feedtrackersparql.cpp|46|instance|Debug|object init |\n"));
}

void TestLogOutput::split_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("five fields and a message") << "Test\nfile\n1\nf()\nf\n text"
                                               << "file|1|f()|f|text|";
    QTest::newRow("message begins after one character") << "Test\nfile\n1\nf()\nf\n  text "
                                                        << "file|1|f()|f| text |";
    QTest::newRow("whatever that is") << "Test\nfile\n1\nf()\nf\nxtext"
                                      << "file|1|f()|f|text|";
    QTest::newRow("also a line break") << "Test\nfile\n1\nf()\nf\n\ntext"
                                       << "file|1|f()|f|text|";
    QTest::newRow("no message") << "Test\nfile\n1\nf()\nf\n "
                                << "file|1|f()|f||";
    QTest::newRow("no filler") << "Test\nfile\n1\nf()\nf\n"
                               << "file|1|f()|f||";
    QTest::newRow("empty fields") << "Test\n\n\n\n\n text"
                                  << "||||text|";
    QTest::newRow("blanks are part of fields") << "Test\n file \n 1\nf( )\nf \n text"
                                               << " file | 1|f( )|f |text|";
    QTest::newRow("more lines") << "Test\nfile\n1\nf()\nf\n one\ntwo\n\n"
                                << "file|1|f()|f|one\ntwo\n\n|";
}

void TestLogOutput::split()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const QByteArray longForms = "file-format=long\nfunction-format=";
    writeSettings("<file>|<line>|<function>|", noPadding + longForms + "long\n");
    VERIFY_QUIET(runLogger({"filter:debug," + text}));
    const QString signatureLine = QString::fromUtf8(log()).chopped(1);
    writeSettings("<function>|<message>|", noPadding);
    VERIFY_QUIET(runLogger({"filter:debug," + text}));
    const QString nameLine = QString::fromUtf8(log()).mid(signatureLine.size() + 1).chopped(1);
    QCOMPARE(signatureLine + nameLine, expected);
}

void TestLogOutput::unstructured_data()
{
    QTest::addColumn<QString>("text");
    for (int breaks = 0; breaks < 5; ++breaks) {
        QTest::addRow("%d line breaks", breaks) << "Test" + QString("\nTest").repeated(breaks);
        QTest::addRow("nothing but %d line breaks", breaks) << QString(breaks, '\n');
    }
}

void TestLogOutput::unstructured()
{
    QFETCH(QString, text);
    writeSettings("<message>", "[log-settings]\nshow-unlogged=true\n");
    QStringList messages;
    for (const char *type : {"debug", "info", "warning", "critical", "unheard"})
        messages.append(QString("filter:%1,%2").arg(type, text));
    const HostRun run = runLogger(messages);
    VERIFY_ENDED(run);
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(run.out, QByteArray(5, '\n'));
    QCOMPARE(log(), QByteArray());
}

void TestLogOutput::noText()
{
    writeSettings("<message>");
    const HostRun run = runLogger({"filternull"});
    VERIFY_ENDED(run);
    QCOMPARE(run.out, QByteArray("\n"));
}

void TestLogOutput::emptyCategory_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("message") << "\nfile\n1\nf()\nf\n text " << QByteArray("text \n");
    QTest::newRow("empty message") << "\nfile\n1\nf()\nf\n" << QByteArray("\n");
    QTest::newRow("lines") << "\nfile\n1\nf()\nf\n one\ntwo" << QByteArray("one\ntwo\n");
    QTest::newRow("nothing but line breaks") << "\n\n\n\n\n\n\n" << QByteArray("\n\n");
}

void TestLogOutput::emptyCategory()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, expected);
    writeSettings("<message>");
    const HostRun run = runLogger({"send:debug," + text, "send:critical," + text});
    VERIFY_ENDED(run);
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(run.out, expected + expected);
    QCOMPARE(log(), QByteArray());
}

void TestLogOutput::levels_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("level");
    QTest::addColumn<bool>("isShown");
    for (const bool isShown : {false, true}) {
        const char *shown = isShown ? "shown" : "not shown";
        QTest::addRow("debug, %s", shown) << "debug" << QByteArray("debug") << isShown;
        QTest::addRow("warning, %s", shown) << "warning" << QByteArray("warning") << isShown;
        QTest::addRow("critical, %s", shown) << "critical" << QByteArray("critical") << isShown;
        QTest::addRow("info counts as debug, %s", shown) << "info" << QByteArray("debug") << isShown;
        QTest::addRow("others count as debug, %s", shown) << "unheard" << QByteArray("debug") << isShown;
    }
}

// Each level depends only on its own switch.
void TestLogOutput::levels()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, level);
    QFETCH(bool, isShown);
    QByteArray only = "[log-settings]\nshow-unlogged=" + QByteArray(isShown ? "true" : "false")
        + "\n[Only]\ndebug=false\nwarning=false\ncritical=false\nfatal=false\n" + level + "=true\n";
    only += "[AllBut]\ndebug=true\nwarning=true\ncritical=true\nfatal=true\n" + level + "=false\n";
    writeSettings("<message>", only);
    const HostRun run = runLogger({"filter:" + type + ',' + structured("written", "Only"),
                                   "filter:" + type + ',' + structured("suppressed", "AllBut"),
                                   "log:" + type + ",Only,f,1,f(),f,written too",
                                   "log:" + type + ",AllBut,f,1,f(),f,suppressed too"});
    VERIFY_ENDED(run);
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(run.out, isShown ? QByteArray("suppressed\nsuppressed too\n") : QByteArray());
    QCOMPARE(run.report, QStringList({"written", "not written", "end"}));
    QCOMPARE(log(), QByteArray("written\nwritten too\n"));
}

void TestLogOutput::unknownCategory()
{
    writeSettings("<message>", "[log-settings]\nshow-unlogged=true\n");
    const HostRun run = runLogger(
        {"send:critical," + structured("text", "Nobody"), "send:critical," + structured("text", "test"),
         "send:critical," + structured("text", "Test "),
         "send:critical," + structured("text", "log-settings"), "log:critical,Nobody,file,1,f(),f,text",
         "log:critical,,file,1,f(),f,text"});
    VERIFY_QUIET(run);
    QCOMPARE(run.report, QStringList({"not written", "not written", "end"}));
    QCOMPARE(log(), QByteArray());
}

void TestLogOutput::recordsOfTheHost()
{
    writeSettings(allFields.toUtf8(), noPadding);
    const HostRun run = runLogger({"log:warning,Test,a/b.c,7,int f(int, int),f,text", "log:fatal,Test,,,,,"});
    VERIFY_QUIET(run);
    QCOMPARE(run.report.first(), QString("written"));
    QCOMPARE(log(), QByteArray("b.c|7| int)|Warning|f,text|\n|||Fatal||\n"));
}

void TestLogOutput::fatal_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QByteArray>("expectedLog");
    QTest::addColumn<QByteArray>("expectedOut");
    QTest::newRow("written") << "Test" << QByteArray("Fatal: last words\n") << QByteArray();
    QTest::newRow("suppressed") << "Calm" << QByteArray() << QByteArray("last words\n");
    QTest::newRow("unknown category") << "Nobody" << QByteArray() << QByteArray();
    QTest::newRow("no category") << "" << QByteArray() << QByteArray("last words\n");
}

void TestLogOutput::fatal()
{
    QFETCH(QString, category);
    QFETCH(QByteArray, expectedLog);
    QFETCH(QByteArray, expectedOut);
    writeSettings("<msgtype>: <message>",
                  noPadding + "[log-settings]\nshow-unlogged=true\n[Calm]\nfatal=false\n");
    for (const char *way : {"send", "filter"}) {
        QFile::remove(path("log.txt"));
        const HostRun run = runLogger({QString("%1:fatal,%2").arg(way, structured("last words", category)),
                                       "send:critical," + structured("never said")});
        QCOMPARE(run.signal, SIGABRT);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.out, expectedOut);
        QCOMPARE(run.report, QStringList());
        QCOMPARE(log(), expectedLog);
    }
}

void TestLogOutput::fatalTrace()
{
    writeSettings("<msgtype>: <message>", noPadding);
    QCOMPARE(runLogger({"fataltrace:last words"}).signal, SIGABRT);
    QCOMPARE(log(), QByteArray("Fatal: \"last words\" \n"));
}

void TestLogOutput::fatalIsWrittenAfterEarlierMessages()
{
    writeSettings("<message>");
    const HostRun run = runLogger({"say:said, ", "send:debug," + structured("first"), "send:fatal,plain"});
    QCOMPARE(run.signal, SIGABRT);
    QCOMPARE(run.out, QByteArray("said, \n"));
    QCOMPARE(log(), QByteArray("first\n"));
}

void TestLogOutput::defaultTemplate()
{
    write("settings.ini", logSettings(path(QString())) + "[log-format]\nx=y\n[Test]\ndebug=true\n");
    VERIFY_QUIET(runLogger({"send:debug," + structured("text ")}));
    const QByteArray line = log();
    QCOMPARE(line.mid(8),
             QByteArray("            file.cpp            46                  Debug               "
                        "function            text \n"));
    QVERIFY(QTime::fromString(QString::fromUtf8(line.left(8)), "hh:mm:ss").isValid());
}

void TestLogOutput::emptyTemplate()
{
    write("settings.ini", logSettings(path(QString())) + "[Test]\n");
    VERIFY_QUIET(runLogger({"send:critical," + structured("one"), "send:critical," + structured("two")}));
    QCOMPARE(log(), QByteArray("\n\n"));
}

void TestLogOutput::timestamp_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<bool>("isLong");
    QTest::addColumn<int>("width");
    QTest::newRow("default") << QByteArray() << false << 20;
    QTest::newRow("short") << QByteArray("timestamp-format=short\ntimestamp-length=0\n") << false << 0;
    QTest::newRow("long") << QByteArray("timestamp-format=long\n") << true << 20;
    QTest::newRow("right") << QByteArray("timestamp-alignment=right\ntimestamp-length=30\n") << false << -30;
    QTest::newRow("long and right") << QByteArray(
        "timestamp-format=long\ntimestamp-alignment=right\ntimestamp-length=40\n")
                                    << true << -40;
}

void TestLogOutput::timestamp()
{
    QFETCH(QByteArray, keys);
    QFETCH(bool, isLong);
    QFETCH(int, width);
    // The local time differs from UTC by a half hour. The rule needs no time zone database.
    qputenv("TZ", "XST-5:30");
    tzset();
    environment.insert("TZ", "XST-5:30");
    writeSettings("<timestamp>|", keys);
    const auto text = [&](const QDateTime &time) {
        const QString digits = isLong ? time.toString(Qt::TextDate) : time.toString("hh:mm:ss");
        return (width < 0 ? digits.rightJustified(-width) : digits.leftJustified(width)) + '|';
    };
    QDateTime time = QDateTime::currentDateTime();
    const HostRun run = runLogger({"timestamp", "send:debug," + structured("text")});
    const QDateTime after = QDateTime::currentDateTime().addSecs(1);
    VERIFY_QUIET(run);
    QStringList possible;
    for (; time <= after; time = time.addSecs(1))
        possible.append(text(time));
    QVERIFY2(possible.contains(run.report.first()), qPrintable(run.report.first()));
    QVERIFY2(possible.contains(QString::fromUtf8(log()).chopped(1)), log().constData());
}

void TestLogOutput::levelWords()
{
    writeSettings("<msgtype>", noPadding);
    QStringList messages;
    for (const char *type : {"debug", "info", "warning", "critical", "unheard"})
        messages.append(QString("filter:%1,%2").arg(type, structured("text")));
    VERIFY_QUIET(runLogger(messages));
    QCOMPARE(log(), QByteArray("Debug\nDebug\nWarning\nCritical\nDebug\n"));
}

void TestLogOutput::fileNames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("relative") << "src/file.cpp"
                              << "file.cpp";
    QTest::newRow("absolute") << "/usr/src/a/file.tar.gz"
                              << "file.tar.gz";
    QTest::newRow("bare") << "file.cpp"
                          << "file.cpp";
    QTest::newRow("folder") << "src/"
                            << "";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("up") << "../.."
                        << "..";
}

void TestLogOutput::fileNames()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    writeSettings("<file>|", noPadding);
    const QString record = "log:debug,Test," + path + ",1,f(),f,text";
    VERIFY_QUIET(runLogger({record}));
    writeSettings("<file>|", noPadding + "file-format=long\n");
    VERIFY_QUIET(runLogger({record}));
    QCOMPARE(QString::fromUtf8(log()), expected + "|\n" + path + "|\n");
}

void TestLogOutput::placeholders_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QByteArray>("expected");
    const QString plain = "a.c,7,f(),f,text";
    const QByteArray once = "a.c 7 f Debug text";
    QTest::newRow("order is the template's") << QByteArray("<message> <msgtype> <function> <line> <file>")
                                             << plain << QByteArray("text Debug f 7 a.c");
    QTest::newRow("each several times")
        << QByteArray("<file> <line> <function> <msgtype> <message>").append(' ').repeated(2) << plain
        << once + ' ' + once + ' ';
    QTest::newRow("no message") << QByteArray("<line>: ") << plain << QByteArray("7: ");
    QTest::newRow("no placeholder") << QByteArray("%1 line") << plain << QByteArray("%1 line");
    QTest::newRow("case") << QByteArray("<Line><LINE><Message><line>") << plain
                          << QByteArray("<Line><LINE><Message>7");
    QTest::newRow("unknown") << QByteArray("<category><type>") << plain << QByteArray("<category><type>");
    QTest::newRow("percent signs in texts")
        << QByteArray("<file><line><function><message>") << "%1,%2,f(),%L3,%1%%" << QByteArray("%1%2%L3%1%%");

    // The placeholders are replaced in the order file, function, type, line, message.
    const QByteArray all = "<message>|<line>|<function>|<file>";
    QTest::newRow("file with later ones")
        << all << "<function><line><message>,7,f(),f,text" << QByteArray("text|7|f|f7text");
    QTest::newRow("function with earlier and later ones")
        << all << "a.c,7,f(),<file><line><message>,text" << QByteArray("text|7|<file>7text|a.c");
    QTest::newRow("line with earlier and later ones")
        << all << "a.c,<file><function><message>,f(),f,text" << QByteArray("text|<file><function>text|f|a.c");
    QTest::newRow("message with any") << all << "a.c,7,f(),f,<file><function><line><message>"
                                      << QByteArray("<file><function><line><message>|7|f|a.c");
    QTest::newRow("type and timestamp")
        << QByteArray("<timestamp><msgtype><function>") << "a.c,7,f(),<timestamp><msgtype>,text"
        << QByteArray("TIMEDebug<timestamp>Debug");
    QTest::newRow("fields not in the template are not filled")
        << QByteArray("<file>") << "<line><function><msgtype><timestamp>,7,f(),f,text"
        << QByteArray("<line><function><msgtype><timestamp>");
    QTest::newRow("but the message is")
        << QByteArray("<file>") << "<message>,7,f(),f,text" << QByteArray("text");
}

void TestLogOutput::placeholders()
{
    QFETCH(QByteArray, format);
    QFETCH(QString, record);
    QFETCH(QByteArray, expected);
    writeSettings(format, noPadding);
    VERIFY_QUIET(runLogger({"log:debug,Test," + record}));
    QByteArray line = log();
    if (expected.startsWith("TIME"))
        line.replace(0, 8, "TIME");
    QCOMPARE(line, expected + '\n');
}

// Replacing all placeholders would give a million placeholders for nine thousand characters each.
void TestLogOutput::placeholdersCannotExplode()
{
    writeSettings("<file>|<function>|<line>|<message>|<message>", noPadding + "file-format=long\n");
    const auto thousand = [](const char *placeholder) { return QString(placeholder).repeated(1000); };
    const QStringList fields{"Test", thousand("<function>"), thousand("<message>"),
                             "f()",  thousand("<line>"),     " text"};
    VERIFY_QUIET(runLogger({"filter:debug," + fields.join('\n'), "filter:debug," + structured("next")}));
    QCOMPARE(log(),
             thousand("<line>").repeated(1000).toUtf8() + '|' + thousand("<line>").toUtf8()
                 + "|<line>|text|text\nsrc/file.cpp|function|46|next|next\n");
}

void TestLogOutput::textsOutsideAscii_data()
{
    QTest::addColumn<QString>("locale");
    for (const char *locale : {"C", "POSIX", "C.UTF-8"})
        QTest::newRow(locale) << locale;
}

void TestLogOutput::textsOutsideAscii()
{
    QFETCH(QString, locale);
    environment.insert("LC_ALL", locale);
    writeSettings("<file>|<function>|<message>", noPadding + "[log-settings]\nshow-unlogged=true\n[Calm]\n");
    const QString text = QStringLiteral("Gr\u00fc\u00dfe \u4f60\u597d \U0001f4f0 \u0645\u0631");
    const HostRun run = runLogger({"latin1", "trace:" + text, "send:debug," + structured(text, "Calm"),
                                   "send:debug," + structured(text, ""),
                                   "send:debug,Test\na/" + text + "\n1\nf\n" + text + "\n "});
    VERIFY_ENDED(run);
    QCOMPARE(run.err, QByteArray());
    const QByteArray utf8 = text.toUtf8();
    QCOMPARE(run.out, utf8 + '\n' + utf8 + '\n');
    QCOMPARE(log(), "logginghost.cpp|operator()|\"" + utf8 + "\" \n" + utf8 + '|' + utf8 + "|\n");
}

void TestLogOutput::nullCharacters()
{
    writeSettings("<message>|");
    VERIFY_QUIET(runLogger({"tracenull:text"}));
    QCOMPARE(log(), QByteArray("\ufffdtext |\n"));
}

void TestLogOutput::lineBreaks()
{
    writeSettings("<line>: <message>", noPadding);
    VERIFY_QUIET(runLogger({"send:debug," + structured("one\ntwo\n\n46: three"),
                            "send:debug," + structured("text\r\n"), "trace:quoted\ntext"}));
    const QByteArray lines = log();
    const QByteArray expected = "46: one\ntwo\n\n46: three\n46: text\r\n\n";
    QCOMPARE(lines.left(expected.size()), expected);
    QVERIFY2(lines.endsWith(": \"quoted\\ntext\" \n"), lines.constData());
}

void TestLogOutput::longTexts()
{
    writeSettings("<message>|");
    // The length of a process argument is limited.
    const QString text(40000, QChar(0x4e00));
    VERIFY_QUIET(runLogger({"send:debug," + structured(text)}));
    QCOMPARE(log(), text.toUtf8() + "|\n");
}

QTEST_GUILESS_MAIN(TestLogOutput)
#include "tst_logoutput.moc"
