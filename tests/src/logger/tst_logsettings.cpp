// SPDX-License-Identifier: LGPL-2.1-or-later
#include <qstlogger.h>

#include "loggertest.h"

#include <QDir>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QTest>

#include <csignal>
#include <limits>
#include <type_traits>

static_assert(std::is_base_of_v<QObject, QstLogger> && std::has_virtual_destructor_v<QstLogger>);
static_assert(std::is_constructible_v<QstLogger, const QString &>);
static_assert(!std::is_copy_constructible_v<QstLogger> && !std::is_default_constructible_v<QstLogger>);
static_assert(std::is_aggregate_v<QstLogger::Field> && std::is_aggregate_v<QstLogger::CategorySettings>);
static_assert(std::is_same_v<decltype(QstLogger::Field::width), qint16>);
static_assert(sizeof(QstLogger::CategorySettings) <= sizeof(QString) + alignof(QString));
static_assert(std::is_same_v<decltype(&logMessageFilter), void (*)(QtMsgType, const char *)>);
static_assert(std::is_same_v<decltype(&noLogsFilter), void (*)(QtMsgType, const char *)>);

class TestLogSettings : public LoggerTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void recordsStartEmpty();
    void noInstanceWithoutLogger();

    void missingFile();
    void silent_data();
    void silent();
    void silencedFatalMessage();
    void fileThatDoesNotOpen_data();
    void fileThatDoesNotOpen();
    void logging();
    void fileIsAppendedTo();
    void secondLogger();
    void secondLoggerBesideASilentOne();
    void loggerAfterAFailedOne();
    void destroyedLogger();
    void destroyedDuplicate();

    void categories_data();
    void categories();
    void layout_data();
    void layout();
    void showUnlogged_data();
    void showUnlogged();
    void orderOfGroupsDoesNotMatter();
    void textsOutsideAscii();

    void reloading();
    void reloadingWithoutGroups();
    void reloadingKeepsFileAndHandler();
    void reloadingMissingFile();
    void reloadingAFailedLogger();
    void silentLoggerStaysSilent();

    void example();
};

namespace {

const QByteArray duplicateError =
    "QstLogger Error: logger object already created, ensure its created only once in an application";
const QByteArray missingFileError = "QstLogger: Unable to open settings file\n";

/// Returns a message of each kind, for tests in which no message must be written.
QStringList messagesOfAllKinds()
{
    QStringList actions;
    for (const char *type : {"debug", "info", "warning", "critical"}) {
        for (const QString &text :
             {QString("plain"), structured("known"), structured("unknown", "Nobody"), structured("none", "")})
            actions.append(QString("send:%1,%2").arg(type, text));
    }
    return actions;
}

} // namespace

void TestLogSettings::metaObject()
{
    const QMetaObject &meta = QstLogger::staticMetaObject;
    QCOMPARE(meta.className(), "QstLogger");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod slot = meta.method(meta.methodOffset());
    QCOMPARE(slot.methodSignature(), QByteArray("loadSettings()"));
    QCOMPARE(QByteArray(slot.typeName()), QByteArray("bool"));
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);

    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 1);
    const QMetaEnum status = meta.enumerator(meta.indexOfEnumerator("Status"));
    QCOMPARE(status.keyCount(), 3);
    const QstLogger::Status values[] = {QstLogger::NoError, QstLogger::ConfigAccessFailed,
                                        QstLogger::InvalidSettings};
    const char *const names[] = {"NoError", "ConfigAccessFailed", "InvalidSettings"};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(status.key(i), names[i]);
        QCOMPARE(status.value(i), i);
        QCOMPARE(int(values[i]), i);
    }
}

void TestLogSettings::recordsStartEmpty()
{
    const QstLogger::Field field;
    QVERIFY(!field.enabled && !field.longFormat);
    QCOMPARE(field.width, qint16(0));
    const QstLogger::LogInfo info;
    QCOMPARE(info.type, QtDebugMsg);
    const QString texts = info.category + info.file + info.line + info.function + info.functionName;
    QCOMPARE(texts + info.message, QString());
    const QstLogger::CategorySettings settings{"Name", true, false, true, false};
    QVERIFY(settings.debug && !settings.warning && settings.critical && !settings.fatal);
}

void TestLogSettings::noInstanceWithoutLogger()
{
    const HostRun before = run({"instance", "filter:critical," + structured("nobody to log it")});
    VERIFY_QUIET(before);
    QCOMPARE(before.report, QStringList({"no instance", "end"}));
}

void TestLogSettings::missingFile()
{
    const HostRun missing = runLogger({"state:0", "settings:Test", "send:warning,Qt's own"});
    QCOMPARE(missing.err, missingFileError + "Qt's own\n");
    QCOMPARE(missing.out, QByteArray());
    QCOMPARE(missing.report, QStringList({"status 1, instance null", "\"\": ", "end"}));
}

void TestLogSettings::silent_data()
{
    QTest::addColumn<QByteArray>("settings");
    const QByteArray category = "[Test]\ndebug=true\nwarning=true\n";
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("no log-settings") << category + "[log-format]\nformat=<message>\n";
    QTest::newRow("no dir-path") << category + "[log-settings]\nfile-name=log.txt\n";
    QTest::newRow("empty dir-path") << category + "[log-settings]\ndir-path=\nfile-name=log.txt\n";
    QTest::newRow("no such folder") << category + logSettings("/nonexistent/folder");
    QTest::newRow("a file") << category + logSettings("settings.ini");
    QTest::newRow("a list") << category + logSettings(".,.");
    QTest::newRow("suppressed shown") << category + logSettings("/nonexistent") + "show-unlogged=true\n";
    QTest::newRow("no settings at all") << QByteArray("\x00\xff[[]\n=\n%%%\n]", 13);
}

void TestLogSettings::silent()
{
    QFETCH(QByteArray, settings);
    write("settings.ini", settings);
    const QString record = "log:critical,Test,file,1,signature,name,text";
    const HostRun silent =
        runLogger(QStringList{"state:0", record, "drop:debug,dropped", "drop:fatal,dropped", "drop:fatal,"}
                  + messagesOfAllKinds());
    VERIFY_QUIET(silent);
    QCOMPARE(silent.report, QStringList({"status 0, instance this", "not written", "end"}));
    QCOMPARE(log(), QByteArray("(none)"));
}

// The handler drops the message, but Qt itself aborts the process.
void TestLogSettings::silencedFatalMessage()
{
    write("settings.ini", QByteArray());
    const HostRun fatal = runLogger({"send:fatal," + structured("last words")});
    QCOMPARE(fatal.out + fatal.err, QByteArray());
    QCOMPARE(fatal.signal, SIGABRT);
}

void TestLogSettings::fileThatDoesNotOpen_data()
{
    QTest::addColumn<QByteArray>("fileName");
    QTest::newRow("no file name") << QByteArray();
    QTest::newRow("empty file name") << QByteArray("file-name=\n");
    QTest::newRow("the folder itself") << QByteArray("file-name=.\n");
    QTest::newRow("in a missing folder") << QByteArray("file-name=missing/log.txt\n");
    QTest::newRow("below a file") << QByteArray("file-name=settings.ini/log.txt\n");
}

void TestLogSettings::fileThatDoesNotOpen()
{
    QFETCH(QByteArray, fileName);
    write("settings.ini", "[log-settings]\ndir-path=.\n" + fileName + "[Test]\ndebug=true\n");
    const HostRun fileless =
        runLogger({"state:0", "settings:Test", "log:critical,Test,file,1,signature,name,text",
                   "send:warning,Qt's own", "send:debug," + structured("Qt's own")});
    const QByteArray name = fileName.mid(10).trimmed();
    QCOMPARE(fileless.err,
             "Log file :  \"./" + name + "\"  failed to open  \n\nQt's own\n"
                 + structured("Qt's own").toUtf8() + "\n");
    QCOMPARE(fileless.out, QByteArray());
    QCOMPARE(
        fileless.report,
        QStringList({"status 0, instance null", "\"Test\": debug critical fatal", "not written", "end"}));
}

void TestLogSettings::logging()
{
    writeSettings("<message>");
    const HostRun run = runLogger({"state:0", "send:debug," + structured("text")});
    VERIFY_QUIET(run);
    QCOMPARE(run.report, QStringList({"status 0, instance this", "end"}));
    QCOMPARE(log(), QByteArray("text\n"));
}

void TestLogSettings::fileIsAppendedTo()
{
    writeSettings("<message>");
    write("log.txt", "first\r\n");
    VERIFY_QUIET(runLogger({"send:debug," + structured("second")}));
    VERIFY_QUIET(runLogger({"send:debug," + structured("third")}));
    QCOMPARE(log(), QByteArray("first\r\nsecond\nthird\n"));
}

void TestLogSettings::secondLogger()
{
    writeSettings("<message>");
    write("other.ini", logSettings(path(QString())).replace("log.txt", "other.txt") + "[Other]\n");
    const QString critical = "send:critical,";
    const HostRun run =
        runLogger({"construct:" + path("other.ini"), "state:0", "state:1", "reload:1", "state:1",
                   critical + structured("first's"), critical + structured("nobody's", "Other")});
    QCOMPARE(duplicateError.size(), 94);
    QCOMPARE(run.out, duplicateError);
    QCOMPARE(run.err, missingFileError);
    QCOMPARE(run.report,
             QStringList({"status 0, instance this", "status 0, instance another", "loaded 0",
                          "status 1, instance another", "end"}));
    QCOMPARE(log(), QByteArray("first's\n"));
    QCOMPARE(content("other.txt"), QByteArray("(none)"));
}

void TestLogSettings::secondLoggerBesideASilentOne()
{
    write("silent.ini", QByteArray());
    writeSettings("<message>");
    const HostRun run =
        this->run({"construct:" + path("silent.ini"), construct(), "send:critical," + structured("text")});
    QCOMPARE(run.out, duplicateError);
    QCOMPARE(log(), QByteArray("(none)"));
}

void TestLogSettings::loggerAfterAFailedOne()
{
    writeSettings("<message>");
    write("fileless.ini", "[log-settings]\ndir-path=.\n");
    const HostRun run = this->run({"construct:missing.ini", "construct:fileless.ini", construct(), "state:0",
                                   "state:2", "send:critical," + structured("text")});
    QCOMPARE(run.out, QByteArray());
    QCOMPARE(run.report, QStringList({"status 1, instance another", "status 0, instance this", "end"}));
    QCOMPARE(log(), QByteArray("text\n"));
}

void TestLogSettings::destroyedLogger()
{
    writeSettings("<message>");
    const HostRun run = runLogger(QStringList{"send:debug," + structured("before"), "destroy:0", "instance",
                                              "send:debug," + structured("after"), construct()});
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(run.out, duplicateError);
    QCOMPARE(run.report, QStringList({"instance", "end"}));
    QCOMPARE(log(), QByteArray("before\n"));
    // The message handler is still installed.
    const HostRun later = runLogger({"destroy:0", "send:warning,plain", "send:fatal," + structured("end")});
    QCOMPARE(later.out, QByteArray("\n"));
    QCOMPARE(later.signal, SIGABRT);
}

void TestLogSettings::destroyedDuplicate()
{
    writeSettings("<message>");
    const HostRun run = runLogger({construct(), "destroy:1", "state:0", "send:debug," + structured("text")});
    QCOMPARE(run.report, QStringList({"status 0, instance this", "end"}));
    QCOMPARE(log(), QByteArray("text\n"));
}

void TestLogSettings::categories_data()
{
    QTest::addColumn<QByteArray>("group");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("no keys") << QByteArray("[Test]\nsomething=else\n") << "Test"
                             << "\"Test\": critical fatal";
    QTest::newRow("empty group") << QByteArray("[Other]\ndebug=true\n [ My Test ] \n\n[Last]") << "My Test"
                                 << "\"My Test\": critical fatal";
    QTest::newRow("empty last group") << QByteArray("[Test]") << "Test"
                                      << "\"Test\": critical fatal";
    QTest::newRow("no group") << QByteArray("[Test]x\n;[Test]\n") << "Test"
                              << "\"\": ";
    QTest::newRow("empty general group") << QByteArray("[general]\n[GENERAL]\n") << "GENERAL"
                                         << "\"\": ";
    QTest::newRow("none") << QByteArray() << "Test"
                          << "\"\": ";
    QTest::newRow("another") << QByteArray("[Test]\ndebug=true\n") << "test"
                             << "\"\": ";
    QTest::newRow("no name") << QByteArray("[Test]\ndebug=true\n") << ""
                             << "\"\": ";
    QTest::newRow("debug") << QByteArray("[A]\ndebug=true\n") << "A"
                           << "\"A\": debug critical fatal";
    QTest::newRow("warning") << QByteArray("[A]\nwarning=true\n") << "A"
                             << "\"A\": warning critical fatal";
    QTest::newRow("critical") << QByteArray("[A]\ncritical=false\n") << "A"
                              << "\"A\": fatal";
    QTest::newRow("fatal") << QByteArray("[A]\nfatal=false\n") << "A"
                           << "\"A\": critical";
    QTest::newRow("all") << QByteArray("[A]\ndebug=1\nwarning=1\ncritical=1\nfatal=1\n") << "A"
                         << "\"A\": debug warning critical fatal";
    QTest::newRow("off") << QByteArray("[A]\ndebug=0\nwarning=0\ncritical=0\nfatal=0\n") << "A"
                         << "\"A\": ";
    QTest::newRow("words") << QByteArray("[A]\ndebug=nonsense\nwarning=\ncritical=FALSE\nfatal=2\n") << "A"
                           << "\"A\": debug fatal";
    QTest::newRow("other case") << QByteArray("[A]\nDebug=true\nFATAL=false\n") << "A"
                                << "\"A\": critical fatal";
    QTest::newRow("group twice") << QByteArray("[A]\ndebug=true\n[B]\n[A]\nfatal=false\n") << "A"
                                 << "\"A\": debug critical";
    QTest::newRow("blank in the name") << QByteArray("[My%20Reader]\ndebug=true\n") << "My Reader"
                                       << "\"My Reader\": debug critical fatal";
    QTest::newRow("outside ASCII") << QByteArray("[L%E4ser]\ndebug=true\n") << QStringLiteral("L\u00e4ser")
                                   << QStringLiteral("\"L\u00e4ser\": debug critical fatal");
    QTest::newRow("General") << QByteArray("[%General]\ndebug=true\n") << "General"
                             << "\"General\": debug critical fatal";
    QTest::newRow("reserved") << QByteArray("debug=true\n") << "log-settings"
                              << "\"\": ";
    QTest::newRow("reserved in other case") << QByteArray("[Log-Format]\ndebug=true\n") << "Log-Format"
                                            << "\"Log-Format\": debug critical fatal";
}

void TestLogSettings::categories()
{
    QFETCH(QByteArray, group);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    write("settings.ini", logSettings(path(QString())) + group);
    const HostRun run = runLogger({"settings:" + name});
    VERIFY_QUIET(run);
    QCOMPARE(run.report.first(), expected);
}

void TestLogSettings::layout_data()
{
    // The fields of the file "a/b.c", the line 7, the function "f" with the signature "int f()", and a
    // warning.
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("expected");
    const auto blanks = [](const QString &text, int width) { return text.leftJustified(width) + '|'; };
    const QString defaults = blanks("b.c", 20) + blanks("7", 20) + blanks("f", 20) + blanks("Warning", 20);
    const QString notInFormat = "b.c|7|f|Warning|";
    const QByteArray all = "format=<file><line><function><msgtype>\n";

    QTest::newRow("no keys") << QByteArray("something=else\n") << defaults;
    QTest::newRow("empty group") << QByteArray() << defaults;
    QTest::newRow("format alone") << all << defaults;
    QTest::newRow("empty format") << QByteArray("format=\n") << notInFormat;
    QTest::newRow("other placeholders")
        << QByteArray("format=<message><FILE>< line>function>\n") << notInFormat;
    QTest::newRow("disabled fields have no layout")
        << QByteArray("format=<message>\nfile-format=long\nline-length=3\nfunction-format=long\n")
        << notInFormat;
    QTest::newRow("one") << QByteArray("format=<msgtype>\n") << "b.c|7|f|" + blanks("Warning", 20);
    QTest::newRow("long") << all
            + "file-format=long\nline-format=long\nfunction-format=long\nmsgtype-format=long\n"
                          << blanks("a/b.c", 20) + blanks("7", 20) + blanks("int f()", 20)
            + blanks("Warning", 20);
    QTest::newRow("other forms are short")
        << all + "file-format=Long\nline-format=short\nfunction-format=1\nmsgtype-format=\n"
        << defaults;
    QTest::newRow("lengths") << all + "file-length=5\nline-length=2\nfunction-length=1\nmsgtype-length=9\n"
                             << "b.c  |7 |f|Warning  |";
    QTest::newRow("never cut") << all + "file-length=2\nline-length=0\nfunction-length=0\nmsgtype-length=6\n"
                               << notInFormat;
    QTest::newRow("alignments") << all
            + "file-length=5\nline-length=5\nfunction-length=5\nmsgtype-length=9\n"
              "file-alignment=left\nline-alignment=right\nfunction-alignment=center\nmsgtype-alignment=\n"
                                << "b.c  |    7|    f|  Warning|";
    QTest::newRow("alignment in other case")
        << all + "file-length=5\nfile-alignment=Left\n"
        << "  b.c|" + blanks("7", 20) + blanks("f", 20) + blanks("Warning", 20);
    QTest::newRow("right by default length")
        << all + "line-alignment=right\n"
        << blanks("b.c", 20) + "                   7|" + blanks("f", 20) + blanks("Warning", 20);
    QTest::newRow("negative length") << all
            + "file-length=-5\nline-length=-5\nline-alignment=right\nfunction-length=0\nmsgtype-length=0\n"
                                     << "b.c  |    7|f|Warning|";
    QTest::newRow("no numbers") << all
            + "file-length=abc\nline-length=\nfunction-length=1.5\nmsgtype-length=1,2\n"
                                << notInFormat;

    const int widest = std::numeric_limits<qint16>::max();
    QTest::newRow("far too long") << all
            + "file-length=99999999\nline-length=-99999999\nfunction-length=32768\nmsgtype-length=99999999999\n"
                                  << blanks("b.c", widest) + blanks("7", widest) + blanks("f", widest)
            + blanks("Warning", widest);
    QTest::newRow("limits of int") << all
            + "file-length=2147483647\nline-length=-2147483648\nfunction-length=32767\nmsgtype-length=32766\n"
                                   << blanks("b.c", widest) + blanks("7", widest) + blanks("f", widest)
            + blanks("Warning", widest - 1);
}

void TestLogSettings::layout()
{
    QFETCH(QByteArray, keys);
    QFETCH(QString, expected);
    write("settings.ini", logSettings(path(QString())) + "[log-format]\n" + keys);
    const HostRun run = runLogger({"fields:a/b.c,7,int f(),f"});
    VERIFY_QUIET(run);
    QCOMPARE(run.report.first(), expected);
}

void TestLogSettings::showUnlogged_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("default") << QByteArray() << false;
    QTest::newRow("false") << QByteArray("show-unlogged=false\n") << false;
    QTest::newRow("0") << QByteArray("show-unlogged=0\n") << false;
    QTest::newRow("empty") << QByteArray("show-unlogged=\n") << false;
    QTest::newRow("true") << QByteArray("show-unlogged=true\n") << true;
    QTest::newRow("1") << QByteArray("show-unlogged=1\n") << true;
    QTest::newRow("nonsense") << QByteArray("show-unlogged=nonsense\n") << true;
}

void TestLogSettings::showUnlogged()
{
    QFETCH(QByteArray, key);
    QFETCH(bool, isShown);
    write("settings.ini", logSettings(path(QString())) + key + "[Test]\n");
    const HostRun run = runLogger({"send:debug," + structured("suppressed")});
    VERIFY_ENDED(run);
    QCOMPARE(run.out, isShown ? QByteArray("suppressed\n") : QByteArray());
    QCOMPARE(log(), QByteArray());
}

void TestLogSettings::orderOfGroupsDoesNotMatter()
{
    const QByteArray groups[] = {logSettings(path(QString())), "[A]\n", "[log-format]\nformat=<message>\n",
                                 "[zebra]\n"};
    for (int first = 0; first < 4; ++first) {
        QByteArray settings;
        for (int i = 0; i < 4; ++i)
            settings += groups[(first + i) % 4];
        write("settings.ini", settings);
        VERIFY_QUIET(runLogger(
            {"send:critical," + structured("one", "A"), "send:critical," + structured("two", "zebra")}));
    }
    QCOMPARE(log(), QByteArray("one\ntwo\n").repeated(4));
}

void TestLogSettings::textsOutsideAscii()
{
    QVERIFY(QDir(path(QString())).mkdir(QStringLiteral("Tageb\u00fccher")));
    write("settings.ini",
          "[log-settings]\ndir-path=\"" + path(QString()).toUtf8()
              + "/Tageb\u00fccher\"\nfile-name=\"\u65e5\u8a18.txt\"\n"
                "[log-format]\nformat=\"\u2014 <message> \U0001f4f0\"\n[A]\n");
    VERIFY_QUIET(runLogger({"send:critical," + structured("text", "A")}));
    QCOMPARE(content(QStringLiteral("Tageb\u00fccher/\u65e5\u8a18.txt")),
             QByteArray("\u2014 text \U0001f4f0\n"));
}

void TestLogSettings::reloading()
{
    const QByteArray settings = logSettings(path(QString()));
    write("settings.ini", settings + "[Old]\n[Both]\n[log-format]\nformat=<line>|<message>\nline-length=4\n");
    write("new.ini",
          settings + "show-unlogged=true\n[New]\n[Both]\ncritical=false\n[log-format]\nformat=<message>!\n");
    QStringList criticals;
    for (const char *category : {"Old", "Both", "New"})
        criticals.append("send:critical," + structured(category, category));
    const HostRun run = runLogger(criticals
                                  + QStringList{"replace:" + path("new.ini") + ',' + path("settings.ini"),
                                                "reload:0", "state:0", "settings:Old", "settings:Both",
                                                "settings:New", "fields:a/b.c,7,int f(),f"}
                                  + criticals);
    VERIFY_ENDED(run);
    QCOMPARE(run.err, QByteArray());
    QCOMPARE(run.out, QByteArray("Both\n"));
    QCOMPARE(run.report,
             QStringList({"replaced", "loaded 1", "status 0, instance this", "\"\": ", "\"Both\": fatal",
                          "\"New\": critical fatal", "b.c|7|f|Warning|", "end"}));
    QCOMPARE(log(), QByteArray("46  |Old\n46  |Both\nNew!\n"));
}

// Settings whose group is missing in the new file do not change, except categories.
void TestLogSettings::reloadingWithoutGroups()
{
    writeSettings("<message>!", "[log-settings]\nshow-unlogged=true\n");
    write("new.ini", "[New]\n");
    const HostRun run =
        runLogger({"replace:" + path("new.ini") + ',' + path("settings.ini"), "reload:0",
                   "send:critical," + structured("unknown"), "send:critical," + structured("known", "New"),
                   "send:debug," + structured("shown", "New")});
    VERIFY_ENDED(run);
    QCOMPARE(run.out, QByteArray("shown\n"));
    QCOMPARE(log(), QByteArray("known!\n"));
}

void TestLogSettings::reloadingKeepsFileAndHandler()
{
    writeSettings("<message>");
    write("elsewhere.ini", "[log-settings]\ndir-path=.\nfile-name=other.txt\n[Test]\n");
    write("nowhere.ini", logSettings("/nonexistent") + "[Test]\n");
    const QString critical = "send:critical,";
    const HostRun run = runLogger({"replace:" + path("elsewhere.ini") + ',' + path("settings.ini"),
                                   "reload:0", critical + structured("one"),
                                   "replace:" + path("nowhere.ini") + ',' + path("settings.ini"), "reload:0",
                                   critical + structured("two"), "send:warning,plain"});
    VERIFY_ENDED(run);
    QCOMPARE(run.out, QByteArray("\n"));
    QCOMPARE(log(), QByteArray("one\ntwo\n"));
    QCOMPARE(content("other.txt"), QByteArray("(none)"));
}

void TestLogSettings::reloadingMissingFile()
{
    writeSettings("<message>");
    const HostRun run = runLogger({"remove:" + path("settings.ini"), "reload:0", "state:0", "settings:Test",
                                   "send:debug," + structured("text")});
    VERIFY_ENDED(run);
    QCOMPARE(run.err, missingFileError);
    QCOMPARE(run.report,
             QStringList({"removed", "loaded 0", "status 1, instance this",
                          "\"Test\": debug warning critical fatal", "end"}));
    QCOMPARE(log(), QByteArray("text\n"));
}

void TestLogSettings::reloadingAFailedLogger()
{
    writeSettings("<message>");
    const HostRun run = this->run({"construct:late.ini", "state:0",
                                   "replace:" + path("settings.ini") + ',' + path("late.ini"), "reload:0",
                                   "state:0", "settings:Test", "send:warning,Qt's own"});
    QCOMPARE(run.err, missingFileError + "Qt's own\n");
    QCOMPARE(run.report,
             QStringList({"status 1, instance null", "replaced", "loaded 1", "status 0, instance null",
                          "\"Test\": debug warning critical fatal", "end"}));
    QCOMPARE(log(), QByteArray("(none)"));
}

void TestLogSettings::silentLoggerStaysSilent()
{
    writeSettings("<message>");
    write("late.ini", QByteArray());
    const HostRun run =
        this->run(QStringList{"construct:late.ini",
                              "replace:" + path("settings.ini") + ',' + path("late.ini"), "reload:0"}
                  + messagesOfAllKinds());
    VERIFY_QUIET(run);
    QCOMPARE(log(), QByteArray("(none)"));
}

void TestLogSettings::example()
{
    const HostRun run = this->run({"construct:" TIDEL_DOCS "/log-settings.ini", "state:0", "settings:Tracker",
                                   "send:critical," + structured("text", "Tracker")});
    VERIFY_QUIET(run);
    QCOMPARE(run.report,
             QStringList({"status 0, instance this", "\"Tracker\": debug warning critical fatal", "end"}));
    const QString line = QString::fromUtf8(content("tidel.log"));
    const QRegularExpression pattern("^\\d\\d:\\d\\d:\\d\\d  Critical  file\\.cpp +46  function +text\n$");
    QVERIFY2(pattern.match(line).hasMatch(), qPrintable(line));
}

QTEST_GUILESS_MAIN(TestLogSettings)
#include "tst_logsettings.moc"
