// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qstlogger.h"

#include "logsettings_p.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <mutex>

class QstLoggerPrivate
{
public:
    std::shared_ptr<const LogSettings> settings() const;
    void setSettings(const LogSettings &settings);

    bool openLogFile();
    bool writeLine(const QString &line);

    QString settingsPath;
    std::atomic<QstLogger::Status> status{QstLogger::NoError};

private:
    // The settings are replaced as a whole, so that no lock is held while a line is laid out.
    mutable std::mutex m_settingsMutex;
    std::shared_ptr<const LogSettings> m_settings = std::make_shared<const LogSettings>();

    // Recursive, because writing a line may cause another message.
    std::recursive_mutex m_fileMutex;
    QFile m_logFile;
};

std::shared_ptr<const LogSettings> QstLoggerPrivate::settings() const
{
    const std::lock_guard<std::mutex> lock(m_settingsMutex);
    return m_settings;
}

void QstLoggerPrivate::setSettings(const LogSettings &settings)
{
    auto next = std::make_shared<const LogSettings>(settings);
    const std::lock_guard<std::mutex> lock(m_settingsMutex);
    m_settings.swap(next);
}

bool QstLoggerPrivate::openLogFile()
{
    m_logFile.setFileName(settings()->logFilePath);
    // Without a buffer, each line is one write to the file, and lines that a full disk refuses are not kept.
    return m_logFile.open(QIODevice::Append | QIODevice::Text | QIODevice::Unbuffered);
}

bool QstLoggerPrivate::writeLine(const QString &line)
{
    const QByteArray text = line.toUtf8() + '\n';
    const std::lock_guard<std::recursive_mutex> lock(m_fileMutex);
    if (!m_logFile.isOpen())
        return false;
    m_logFile.write(text);
    return true;
}

namespace {

/// The logger that receives messages; null when it is destroyed, unlike QstLogger::instance().
std::atomic<QstLogger *> receiver{nullptr};

void print(FILE *stream, const QByteArray &text)
{
    fwrite(text.constData(), 1, size_t(text.size()), stream);
    fflush(stream);
}

void printLine(const QString &text) { print(stdout, text.toUtf8() + '\n'); }

bool isWritten(const QstLogger::CategorySettings &category, QtMsgType type)
{
    switch (type) {
    case QtWarningMsg: return category.warning;
    case QtCriticalMsg: return category.critical;
    case QtFatalMsg: return category.fatal;
    default: return category.debug; // contract: QtInfoMsg too. Settings files have no other switch for it.
    }
}

/// Returns the fields of \a text; an empty record if \a text has fewer than five line feeds.
// contract: the character behind the fifth line feed is the filler blank of a trace, and is dropped unread.
QstLogger::LogInfo recordOf(const QString &text)
{
    std::array<QString, 5> fields;
    QString::size_type begin = 0;
    for (QString &field : fields) {
        const auto end = text.indexOf(QLatin1Char('\n'), begin);
        if (end < 0)
            return {};
        field = text.mid(begin, end - begin);
        begin = end + 1;
    }
    return {QtDebugMsg, fields[0], fields[1], fields[2], fields[3], fields[4], text.mid(begin + 1)};
}

/// A message handler that calls \a filter. Replaces null characters, which would end the text of the filter.
template <void (*filter)(QtMsgType, const char *)>
void handler(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    filter(type, text.toUtf8().replace('\0', "\xef\xbf\xbd").constData());
}

} // namespace

std::atomic<QstLogger *> QstLogger::_self{nullptr};

QstLogger::QstLogger(const QString &settingsPath) : d(new QstLoggerPrivate)
{
    if (_self) {
        // contract: without a line feed. Other programs look for this text.
        print(
            stdout,
            "QstLogger Error: logger object already created, ensure its created only once in an application");
        return;
    }
    d->settingsPath = settingsPath;
    if (!loadSettings())
        return;
    const bool isSilent = !d->settings()->hasLogFolder;
    if (!isSilent && !d->openLogFile()) {
        // contract: the text, its blanks and its line feed. Log readers look for it.
        qDebug() << "Log file : " << d->settings()->logFilePath << " failed to open " << Qt::endl;
        return;
    }
    _self = this;
    receiver = this;
    qInstallMessageHandler(isSilent ? handler<noLogsFilter> : handler<logMessageFilter>);
}

// contract: the message handler and instance() stay. Hosts destroy the logger last.
QstLogger::~QstLogger()
{
    QstLogger *self = this;
    receiver.compare_exchange_strong(self, nullptr);
}

QstLogger *QstLogger::instance() { return _self; }

QstLogger::Status QstLogger::status() const { return d->status; }

bool QstLogger::loadSettings()
{
    if (!QFileInfo::exists(d->settingsPath)) {
        print(stderr, "QstLogger: Unable to open settings file\n");
        d->status = ConfigAccessFailed;
        return false;
    }
    d->setSettings(readLogSettings(d->settingsPath, *d->settings()));
    d->status = NoError;
    return true;
}

QstLogger::CategorySettings QstLogger::settingsForName(const QString &name) const
{
    return d->settings()->categories.value(name, CategorySettings{QString(), false, false, false, false});
}

bool QstLogger::log(QstLogger::LogInfo info) // NOLINT(performance-unnecessary-value-param): the interface
{
    const std::shared_ptr<const LogSettings> settings = d->settings();
    const auto category = settings->categories.constFind(info.category);
    // contract: an unknown category is dropped, whatever showUnlogged is. Settings files rely on it.
    if (category == settings->categories.constEnd())
        return false;
    if (isWritten(*category, info.type))
        return d->writeLine(settings->layout.filled(info));
    if (settings->showUnlogged)
        printLine(info.message);
    return false;
}

QString QstLogger::timestampField() const { return d->settings()->layout.timestampText(); }

QString QstLogger::fileField(const QString &file) const { return d->settings()->layout.fileText(file); }

QString QstLogger::lineField(const QString &line) const { return d->settings()->layout.lineText(line); }

QString QstLogger::functionField(const QString &function, const QString &functionName) const
{
    return d->settings()->layout.functionText(function, functionName);
}

QString QstLogger::msgTypeField(QtMsgType type) const { return d->settings()->layout.msgTypeText(type); }

void logMessageFilter(QtMsgType type, const char *text)
{
    QstLogger::LogInfo record = recordOf(QString::fromUtf8(text));
    record.type = type;
    // contract: a text without the five fields becomes an empty line. Other programs know this form.
    if (record.category.isEmpty())
        printLine(record.message);
    else if (QstLogger *logger = receiver)
        logger->log(record);
    if (type == QtFatalMsg)
        std::abort();
}

// contract: does not abort after a fatal message. Hosts rely on the silence.
void noLogsFilter(QtMsgType, const char *) { }
