// SPDX-License-Identifier: LGPL-2.1-or-later
// Loads any settings file into a logger, and sends it any messages. A null character separates them from each
// other.
#include <fuzzing.h>

#include <qstlogger.h>

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>

#include <memory>

namespace {

/// A logger whose settings file each input replaces.
class Log
{
public:
    Log()
    {
        // Messages without fields go to standard output.
        require(freopen("/dev/null", "w", stdout) != nullptr, "standard output can be closed");
        load(QByteArray("[log-settings]\nfile-name=log\ndir-path=") + m_folder.path().toUtf8() + '\n');
        m_logger = std::make_unique<QstLogger>(settingsPath());
        require(QstLogger::instance() != nullptr, "the logger works");
    }

    void load(const QByteArray &settings)
    {
        QFile file(settingsPath());
        require(file.open(QIODevice::WriteOnly) && file.write(settings) == settings.size(),
                "the settings can be written");
        file.close();
        // QSettings does not read a file again that has the same size and time.
        const timespec times[] = {{++m_seconds, 0}, {m_seconds, 0}};
        utimensat(AT_FDCWD, file.fileName().toUtf8().constData(), times, 0);
        if (m_logger)
            require(m_logger->loadSettings(), "settings are loaded");
    }

    void send(QtMsgType type, const QByteArray &text)
    {
        logMessageFilter(type, text.constData());
        QstLogger::LogInfo record;
        record.type = type;
        record.category = QString::fromUtf8(text.left(text.indexOf('\n')));
        record.file = record.line = record.function = record.message = QString::fromUtf8(text);
        const QstLogger::CategorySettings settings = m_logger->settingsForName(record.category);
        require(settings.name == record.category || settings.name.isEmpty(), "a category has its name");
        m_logger->log(record);
    }

    qint64 size() const { return QFile(m_folder.filePath(QStringLiteral("log"))).size(); }
    void empty() { QFile::resize(m_folder.filePath(QStringLiteral("log")), 0); }

private:
    QString settingsPath() const { return m_folder.filePath(QStringLiteral("settings.ini")); }

    const QTemporaryDir m_folder;
    std::unique_ptr<QstLogger> m_logger;
    time_t m_seconds = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Log log;
    const QList<QByteArray> parts = bytesOf(data, size).split('\0');
    log.load(parts.first());
    const QtMsgType types[] = {QtDebugMsg, QtInfoMsg, QtWarningMsg, QtCriticalMsg};
    for (int i = 1; i < qMin(int(parts.size()), 20); ++i)
        log.send(types[i % 4], parts[i]);
    // A line has at most 16 Mi characters.
    require(log.size() < 2 * 20 * (qint64(16) << 20) * 4, "lines are limited");
    log.empty();
    return 0;
}
