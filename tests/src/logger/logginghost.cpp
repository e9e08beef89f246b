// SPDX-License-Identifier: LGPL-2.1-or-later
// A host that executes its arguments one after the other. Each is "action" or "action:details". The first
// argument names the file for reports, so that only the logger writes to standard output and standard error.
#include <qstlogger.h>

#include <feedtrackersparql.h>
#include <qsttrace.h>

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QHash>
#include <QStringList>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

#include <dlfcn.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace {

FILE *reportFile = nullptr;
std::vector<std::unique_ptr<QstLogger>> loggers;
std::function<void()> duringNextWrite;
int refusedWrites = 0;
// Has no lock, because the logger must write one line at a time.
int writes = 0;

void report(const QString &line)
{
    fprintf(reportFile, "%s\n", line.toUtf8().constData());
    fflush(reportFile);
}

QtMsgType typeOf(const QString &name)
{
    static const QHash<QString, QtMsgType> types{{"debug", QtDebugMsg},     {"info", QtInfoMsg},
                                                 {"warning", QtWarningMsg}, {"critical", QtCriticalMsg},
                                                 {"fatal", QtFatalMsg},     {"unheard", QtMsgType(7)}};
    return types.value(name);
}

/// Splits the details of an action. The last part may contain commas.
QStringList split(const QString &details, int count)
{
    QStringList parts = details.split(',');
    return parts.mid(0, count - 1) + QStringList(parts.mid(count - 1).join(','));
}

void reportState(const QString &number)
{
    const QstLogger *logger = loggers.at(size_t(number.toInt())).get();
    const QString instance = !QstLogger::instance() ? "null"
        : QstLogger::instance() == logger           ? "this"
                                                    : "another";
    report(QString("status %1, instance %2").arg(logger->status()).arg(instance));
}

void reportSettings(const QString &category)
{
    const QstLogger::CategorySettings settings = loggers.front()->settingsForName(category);
    QStringList levels;
    for (const auto &[isOn, level] :
         {std::pair(bool(settings.debug), "debug"), std::pair(bool(settings.warning), "warning"),
          std::pair(bool(settings.critical), "critical"), std::pair(bool(settings.fatal), "fatal")}) {
        if (isOn)
            levels.append(level);
    }
    report(QString("\"%1\": %2").arg(settings.name, levels.join(' ')));
}

void reportFields(const QString &details)
{
    const QStringList texts = split(details, 4);
    const QstLogger &logger = *loggers.front();
    report(logger.fileField(texts.at(0)) + '|' + logger.lineField(texts.at(1)) + '|'
           + logger.functionField(texts.at(2), texts.at(3)) + '|' + logger.msgTypeField(QtWarningMsg) + '|');
}

void reportTimestamp() { report(loggers.front()->timestampField() + '|'); }

void reload(const QString &number)
{
    bool result = false;
    const bool called = QMetaObject::invokeMethod(loggers.at(size_t(number.toInt())).get(), "loadSettings",
                                                  Qt::DirectConnection, Q_RETURN_ARG(bool, result));
    report(QString(called ? "loaded %1" : "no such slot").arg(result));
}

void logRecord(const QString &details)
{
    const QStringList parts = split(details, 7);
    const bool isWritten = loggers.front()->log(
        {typeOf(parts.at(0)), parts.at(1), parts.at(2), parts.at(3), parts.at(4), parts.at(5), parts.at(6)});
    report(isWritten ? "written" : "not written");
}

/// Sends a message to Qt's message handler.
void send(QtMsgType type, const QString &text)
{
    const QMessageLogger logger("host.cpp", 1, "send()");
    const QByteArray utf8 = text.toUtf8();
    switch (type) {
    case QtInfoMsg: return logger.info("%s", utf8.constData());
    case QtWarningMsg: return logger.warning("%s", utf8.constData());
    case QtCriticalMsg: return logger.critical("%s", utf8.constData());
    case QtFatalMsg: logger.fatal("%s", utf8.constData());
    default: return logger.debug("%s", utf8.constData());
    }
}

void replaceFile(const QString &details)
{
    const QStringList paths = split(details, 2);
    QFile::remove(paths.at(1));
    report(QFile::copy(paths.at(0), paths.at(1)) ? "replaced" : "not replaced");
}

/// Each thread writes traces with its number and theirs. Another thread reads the settings again and again.
void writeFromThreads(const QString &details)
{
    const QStringList numbers = split(details, 2);
    const int traces = numbers.at(1).toInt();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < numbers.at(0).toInt(); ++thread) {
        threads.emplace_back([thread, traces] {
            for (int i = 0; i < traces; ++i) {
                QST_DEBUG("Test") << thread << i << "filed";
                QST_DEBUG("Quiet") << thread << i << "shown";
            }
        });
    }
    threads.emplace_back([traces] {
        for (int i = 0; i < traces / 10; ++i) {
            loggers.front()->loadSettings();
            loggers.front()->settingsForName("Test");
            loggers.front()->lineField("1");
            loggers.front()->status();
        }
    });
    for (std::thread &thread : threads)
        thread.join();
    report(QString("%1 writes").arg(writes));
}

/// Uses the real store like a feed reader. \a title is the title of a channel and of its message.
void useStore(const QString &title)
{
    static int argc = 1;
    static char name[] = "host";
    static char *argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    FeedMessage message;
    message.setTitle(title);
    message.setLink("https://example.org/message");
    FeedChannel channel;
    channel.setTitle(title);
    channel.setLink("https://example.org/feed");
    FeedTrackerSparql *store = FeedTrackerSparql::instance();
    const QString uri = store->addChannel(channel);
    report(uri);
    report(store->channelForUri(uri).title());
    report(store->addMessages({message}, uri) ? "added" : "not added");
    message.setLink("https://example.org/other");
    report(store->addMessages({message}, "no > uri") ? "added" : "not added");
    FeedTrackerSparql::releaseInstance();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Sets another encoding, which works without an installed locale. Qt 6 supports only UTF-8.
void useLatin1()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
#endif
}

void act(const QString &action)
{
    const QString name = action.section(':', 0, 0);
    const QString details = action.section(':', 1);
    const QStringList twoParts = split(details, 2);
    const QHash<QString, std::function<void()>> actions{
        {"construct", [&] { loggers.push_back(std::make_unique<QstLogger>(details)); }},
        {"destroy", [&] { loggers.at(size_t(details.toInt())).reset(); }},
        {"state", [&] { reportState(details); }},
        {"instance", [&] { report(QstLogger::instance() ? "instance" : "no instance"); }},
        {"settings", [&] { reportSettings(details); }},
        {"fields", [&] { reportFields(details); }},
        {"timestamp", reportTimestamp},
        {"reload", [&] { reload(details); }},
        {"log", [&] { logRecord(details); }},
        {"send", [&] { send(typeOf(twoParts.at(0)), twoParts.at(1)); }},
        {"filter", [&] { logMessageFilter(typeOf(twoParts.at(0)), twoParts.at(1).toUtf8().constData()); }},
        {"filternull", [&] { logMessageFilter(QtDebugMsg, nullptr); }},
        {"drop", [&] { noLogsFilter(typeOf(twoParts.at(0)), twoParts.at(1).toUtf8().constData()); }},
        {"trace", [&] { QST_DEBUG("Test") << details; }},
        {"fataltrace", [&] { QstTrace(QtFatalMsg, QST_HERE("Test")).stream() << details; }},
        {"tracenull", [&] { QST_DEBUG("Test").noquote() << QString(QChar::Null) + details; }},
        {"latin1", useLatin1},
        {"say", [&] { fputs(qPrintable(details), stdout); }},
        {"replace", [&] { replaceFile(details); }},
        {"remove", [&] { report(QFile::remove(details) ? "removed" : "not removed"); }},
        {"rmdir", [&] { report(rmdir(qPrintable(details)) == 0 ? "removed" : "not removed"); }},
        {"duringwrite", [&] { duringNextWrite = [details] { act(details); }; }},
        {"refusewrites", [&] { refusedWrites = details.toInt(); }},
        {"threads", [&] { writeFromThreads(details); }},
        {"store", [&] { useStore(details); }},
    };
    const auto found = actions.constFind(name);
    if (found == actions.constEnd())
        qFatal("No such action: %s", qPrintable(name));
    found.value()();
}

} // namespace

// Replaces write() of the C library, which writes every line to the file.
extern "C" ssize_t write(int descriptor, const void *data, size_t size)
{
    using Write = ssize_t (*)(int, const void *, size_t);
    static const Write realWrite = reinterpret_cast<Write>(dlsym(RTLD_NEXT, "write"));
    if (duringNextWrite)
        std::exchange(duringNextWrite, nullptr)();
    if (refusedWrites > 0) {
        --refusedWrites;
        errno = ENOSPC;
        return -1;
    }
    ++writes;
    return realWrite(descriptor, data, size);
}

int main(int argc, char **argv)
{
    // A host with an application object has the locale of its user.
    setlocale(LC_ALL, "");
    const rlimit noCoreDump{0, 0};
    setrlimit(RLIMIT_CORE, &noCoreDump);
    if (argc < 2 || !(reportFile = fopen(argv[1], "w")))
        return 2;
    for (int i = 2; i < argc; ++i)
        act(QString::fromUtf8(argv[i]));
    report("end");
    return 0;
}
