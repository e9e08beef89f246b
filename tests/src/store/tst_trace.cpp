// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagelog.h"

#include <qsttrace.h>

#include <QDateTime>
#include <QLoggingCategory>
#include <QUrl>
#include <QtTest>

#include <thread>

namespace {

void freeFunction() { QST_DEBUG("Test") << "free"; }

template <typename T> void functionTemplate(const T &value) { QST_DEBUG("Test") << value; }

struct Born
{
    Born() { QST_DEBUG("Test") << "constructor"; }
};

struct Mortal
{
    virtual ~Mortal() { QST_DEBUG("Test") << "destructor"; }
};

class Host
{
public:
    static void staticMember() { QST_DEBUG("Test") << "static"; }
    QString constMember(const QString &text) const
    {
        QST_DEBUG("Test") << text;
        return text;
    }
    Host &operator+=(int number)
    {
        QST_DEBUG("Test") << number;
        return *this;
    }
    void withLambda()
    {
        const auto lambda = [] { QST_DEBUG("Test") << "lambda"; };
        lambda();
    }
};

template <typename T> class Holder
{
public:
    void member() { QST_DEBUG("Test") << "member"; }
};

/// Returns the only message that \a write creates.
template <typename Function> LoggedMessage messageOf(const Function &write)
{
    MessageLog log;
    write();
    const std::vector<LoggedMessage> messages = log.take();
    return messages.size() == 1 ? messages.front()
                                : LoggedMessage{QtFatalMsg, QString("%1 messages").arg(messages.size())};
}

/// Returns the message without its fields.
template <typename T> QString itemText(const T &value)
{
    return messageOf([&value] { QST_DEBUG("Test") << value; }).message();
}

} // namespace

class TestTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageHasSixParts();
    void levels_data();
    void levels();
    void hostChoosesTheCategory();
    void lineIsTheLineOfTheTrace();
    void functionsAreNamed_data();
    void functionsAreNamed();
    void lambdaIsNamedByItsOwnFunction();

    void itemsAreFollowedByABlank();
    void messageWithoutItemsIsABlank();
    void blanksOfATextAreKept();
    void valuesAreWrittenAsADebugStreamDoes();
    void textsOutsideAsciiAreKept();
    void lineBreaksBelongToTheMessage();
    void longTextsAreKept();
    void hostMaySwitchSpacingOff();

    void messageIsWrittenWhenTheTraceEnds();
    void originCanBePassedOn();
    void streamIsAlwaysTheSame();
    void contextNamesThePlace();
    void loggingRulesDoNotSuppressTraces_data();
    void loggingRulesDoNotSuppressTraces();
    void tracesOfThreadsStayWhole();
};

void TestTrace::messageHasSixParts()
{
    const LoggedMessage message = messageOf([] { freeFunction(); });
    QStringList parts = message.parts();
    QCOMPARE(parts.size(), 6);
    QVERIFY(parts.at(2).toInt() > 0);
    QCOMPARE(QString::number(parts.at(2).toInt()), parts.at(2));
    parts[2] = "line";
    parts[3].replace("{anonymous}", "HERE");
    QCOMPARE(parts,
             QStringList({"Test", "tests/src/store/tst_trace.cpp", "line", "void HERE::freeFunction()",
                          "freeFunction", " free "}));
}

void TestTrace::levels_data()
{
    QTest::addColumn<int>("expected");
    QTest::newRow("debug") << int(QtDebugMsg);
    QTest::newRow("warning") << int(QtWarningMsg);
    QTest::newRow("critical") << int(QtCriticalMsg);
}

void TestTrace::levels()
{
    QFETCH(int, expected);
    const LoggedMessage message = messageOf([expected] {
        switch (expected) {
        case QtDebugMsg: QST_DEBUG("Test") << "text"; break;
        case QtWarningMsg: QST_WARNING("Test") << "text"; break;
        default: QST_CRITICAL("Test") << "text"; break;
        }
    });
    QCOMPARE(int(message.type), expected);
    QCOMPARE(message.message(), QString("text "));
    QCOMPARE(message.parts().size(), 6);
}

void TestTrace::hostChoosesTheCategory()
{
    QCOMPARE(messageOf([] { QST_CRITICAL("My Reader") << "text"; }).parts().first(), QString("My Reader"));
    QCOMPARE(messageOf([] { QST_CRITICAL("") << "text"; }).parts().first(), QString());
    QCOMPARE(messageOf([] { QST_CRITICAL("L\u00e4ser") << "text"; }).parts().first(),
             QString::fromUtf8("L\u00e4ser"));
}

void TestTrace::lineIsTheLineOfTheTrace()
{
    const int before = __LINE__;
    const LoggedMessage message = messageOf([] { QST_DEBUG("Test") << "text"; });
    QCOMPARE(message.parts().at(2), QString::number(before + 1));
}

using Write = void (*)();
Q_DECLARE_METATYPE(Write)

void TestTrace::functionsAreNamed_data()
{
    QTest::addColumn<Write>("write");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QString>("function");

    const auto row = [](const char *name, Write write, const char *signature, const char *function) {
        QTest::newRow(name) << write << QString(signature) << QString(function);
    };
    row(
        "constructor", [] { Born(); }, "HERE::Born::Born()", "Born");
    row(
        "destructor", [] { Mortal(); }, "virtual HERE::Mortal::~Mortal()", "~Mortal");
    row(
        "static member", [] { Host::staticMember(); }, "static void HERE::Host::staticMember()",
        "staticMember");
    row(
        "const member", [] { Host().constMember("text"); },
        "QString HERE::Host::constMember(const QString&) const", "constMember");
    row(
        "operator", [] { Host() += 1; }, "HERE::Host& HERE::Host::operator+=(int)", "operator+=");
    row(
        "function template", [] { functionTemplate(1); },
        "void HERE::functionTemplate(const T&) [with T = int]", "functionTemplate");
    row(
        "member of a class template", [] { Holder<int>().member(); },
        "void HERE::Holder<T>::member() [with T = int]", "member");
}

void TestTrace::functionsAreNamed()
{
    QFETCH(Write, write);
    const LoggedMessage message = messageOf(write);
    QTEST(message.signature().replace("{anonymous}", "HERE"), "signature");
    QTEST(message.function(), "function");
}

void TestTrace::lambdaIsNamedByItsOwnFunction()
{
    const LoggedMessage message = messageOf([] { Host().withLambda(); });
    QCOMPARE(message.function(), QString("operator()"));
    QVERIFY(message.signature().contains("Host::withLambda()"));
    QCOMPARE(message.message(), QString("lambda "));
}

void TestTrace::itemsAreFollowedByABlank()
{
    const LoggedMessage message =
        messageOf([] { QST_DEBUG("Test") << "text: " << QString("quoted") << 3 << true; });
    QVERIFY(message.text.endsWith("\n text:  \"quoted\" 3 true "));
}

void TestTrace::messageWithoutItemsIsABlank()
{
    QCOMPARE(messageOf([] { QST_DEBUG("Test"); }).parts().last(), QString(" "));
}

void TestTrace::blanksOfATextAreKept()
{
    QCOMPARE(itemText("ends with two blanks  "), QString("ends with two blanks   "));
    QCOMPARE(itemText("  begins with two"), QString("  begins with two "));
    QCOMPARE(itemText(""), QString(" "));
    QCOMPARE(messageOf([] {
                 QST_DEBUG("Test") << ""
                                   << "";
             }).message(),
             QString("  "));
}

void TestTrace::valuesAreWrittenAsADebugStreamDoes()
{
    QCOMPARE(itemText(QString("text")), QString("\"text\" "));
    QCOMPARE(itemText(QString()), QString("\"\" "));
    QCOMPARE(itemText(-3), QString("-3 "));
    QCOMPARE(itemText(4294967295u), QString("4294967295 "));
    QCOMPARE(itemText(qlonglong(-9223372036854775807LL)), QString("-9223372036854775807 "));
    QCOMPARE(itemText(2.5), QString("2.5 "));
    QCOMPARE(itemText(true), QString("true "));
    QCOMPARE(itemText('c'), QString("c "));
    QCOMPARE(itemText(QByteArray("bytes")), QString("\"bytes\" "));
    QCOMPARE(itemText(QLatin1String("latin")), QString("\"latin\" "));
    QCOMPARE(itemText(QUrl("http://example.org/a?b#c")), QString("QUrl(\"http://example.org/a?b#c\") "));
    const QDateTime time(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
    QString expected;
    QDebug(&expected) << time;
    QCOMPARE(itemText(time), expected);
    QVERIFY(expected.contains("2020-01-02"));
}

void TestTrace::textsOutsideAsciiAreKept()
{
    const char text[] = "Gr\u00fc\u00dfe \u4f60\u597d \U0001f4f0";
    QCOMPARE(itemText(text), QString::fromUtf8(text) + ' ');
    QCOMPARE(itemText(QString::fromUtf8(text)), '"' + QString::fromUtf8(text) + "\" ");
}

void TestTrace::lineBreaksBelongToTheMessage()
{
    const LoggedMessage message = messageOf([] { QST_DEBUG("Test") << "one\ntwo"; });
    QCOMPARE(message.parts().size(), 7);
    QCOMPARE(message.message(), QString("one\ntwo "));
}

void TestTrace::longTextsAreKept()
{
    const QByteArray text(1000000, 'x');
    QCOMPARE(itemText(text.constData()).size(), 1000001);
}

void TestTrace::hostMaySwitchSpacingOff()
{
    const LoggedMessage message =
        messageOf([] { QST_DEBUG("Test").nospace().noquote() << QString("a") << "b" << 1; });
    QCOMPARE(message.parts().last(), QString(" ab1"));
}

void TestTrace::messageIsWrittenWhenTheTraceEnds()
{
    MessageLog log;
    {
        QstTrace trace(QtDebugMsg, QST_HERE("Test"));
        trace.stream() << "first";
        QCOMPARE(log.take().size(), size_t(0));
        trace.stream() << "second";
    }
    const std::vector<LoggedMessage> messages = log.take();
    QCOMPARE(messages.size(), size_t(1));
    QCOMPARE(messages.front().message(), QString("first second "));
}

void TestTrace::originCanBePassedOn()
{
    const auto write = [](const QstTraceOrigin &origin) {
        QstTrace(QtCriticalMsg, origin).stream() << "elsewhere";
    };
    const LoggedMessage message = messageOf([&write] {
        write({"Category", "file.cpp", 7, "int Class::function(int)", "function"});
    });
    QCOMPARE(message.text, QString("Category\nfile.cpp\n7\nint Class::function(int)\nfunction\n elsewhere "));
    QCOMPARE(message.type, QtCriticalMsg);
}

void TestTrace::streamIsAlwaysTheSame()
{
    MessageLog log;
    {
        QstTrace trace(QtDebugMsg, QST_HERE("Test"));
        QCOMPARE(&trace.stream(), &trace.stream());
        trace.stream().nospace();
        trace.stream() << "a"
                       << "b";
    }
    QCOMPARE(log.take().front().parts().last(), QString(" ab"));
}

static QByteArray contextFile;
static int contextLine = 0;
static QByteArray contextFunction;
static QByteArray contextCategory;

void TestTrace::contextNamesThePlace()
{
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &) {
            contextFile = context.file;
            contextLine = context.line;
            contextFunction = context.function;
            contextCategory = context.category;
        });
    freeFunction();
    qInstallMessageHandler(previous);
    QCOMPARE(contextFile, QByteArray("tests/src/store/tst_trace.cpp"));
    QCOMPARE(contextLine, messageOf([] { freeFunction(); }).parts().at(2).toInt());
    QVERIFY(contextFunction.contains("freeFunction()"));
    QCOMPARE(contextCategory, QByteArray("Test"));
}

void TestTrace::loggingRulesDoNotSuppressTraces_data()
{
    QTest::addColumn<QByteArray>("category");
    QTest::newRow("a category") << QByteArray("Tracker");
    QTest::newRow("default") << QByteArray("default");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("null") << QByteArray();
}

void TestTrace::loggingRulesDoNotSuppressTraces()
{
    QFETCH(QByteArray, category);
    const char *name = category.isNull() ? nullptr : category.constData();
    QLoggingCategory::setFilterRules("*=false");
    MessageLog log;
    qDebug("suppressed");
    for (const QtMsgType type : {QtDebugMsg, QtWarningMsg, QtCriticalMsg})
        QstTrace(type, {name, "file.cpp", 1, "signature", "function"}).stream() << "text";
    QLoggingCategory::setFilterRules(QString());

    const std::vector<LoggedMessage> messages = log.take();
    QCOMPARE(messages.size(), size_t(3));
    for (const LoggedMessage &message : messages)
        QCOMPARE(message.text, QString(category) + "\nfile.cpp\n1\nsignature\nfunction\n text ");
}

void TestTrace::tracesOfThreadsStayWhole()
{
    constexpr int threadCount = 4;
    constexpr int traceCount = 500;
    MessageLog log;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([i] {
            for (int j = 0; j < traceCount; ++j)
                QST_DEBUG("Test") << i << j << "of a thread";
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    std::vector<int> next(threadCount, 0);
    const std::vector<LoggedMessage> messages = log.take();
    QCOMPARE(messages.size(), size_t(threadCount * traceCount));
    for (const LoggedMessage &message : messages) {
        QCOMPARE(message.parts().size(), 6);
        const int thread = message.message().section(' ', 0, 0).toInt();
        QVERIFY(thread >= 0 && thread < threadCount);
        QCOMPARE(message.message(), QString("%1 %2 of a thread ").arg(thread).arg(next[size_t(thread)]++));
    }
}

QTEST_GUILESS_MAIN(TestTrace)
#include "tst_trace.moc"
