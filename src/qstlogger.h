// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSTLOGGER_H
#define QSTLOGGER_H

#include "tidelglobal.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>

class QstLoggerPrivate;

/**
 * The one logger of a process: files the messages of Qt's message handler as an INI file says.
 *
 * \code
 * int main(int argc, char **argv)
 * {
 *     QCoreApplication application(argc, argv);
 *     const QstLogger logger("/etc/reader/log-settings.ini");
 *     if (!QstLogger::instance())
 *         qWarning("The log cannot be written"); // Qt's own handler still shows this
 *     ...
 * }
 * \endcode
 *
 * The settings name the log file, the layout of a line, and for each category the levels that are written. A
 * category is the first field of a structured message, see qsttrace.h; those of the store are in "Tracker".
 * Text is UTF-8 everywhere, whatever the locale says.
 *
 * A logger is made and destroyed on one thread while no other writes messages; all else may be called on any
 * thread at any time, also from within the writing of a message. The message handler stays installed for
 * good: what arrives after the logger is gone is dropped.
 */
class TIDEL_EXPORT QstLogger : public QObject
{
    Q_OBJECT

public:
    /// How the last loadSettings() ended.
    enum Status {
        NoError = 0,
        ConfigAccessFailed = 1, ///< there is no settings file
        InvalidSettings = 2 ///< the settings name no log file; every settings file names one so far
    };
    Q_ENUM(Status)

    /// How one field of a line is laid out.
    struct Field
    {
        bool enabled = false; ///< whether the template has it
        bool longFormat = false;
        qint16 width = 0; ///< in characters, at least; negative for left alignment
    };

    /// The levels of one category that are written.
    struct CategorySettings
    {
        QString name; ///< empty for a category that the settings do not name
        bool debug : 1;
        bool warning : 1;
        bool critical : 1;
        bool fatal : 1;
    };

    /// A structured message in its parts.
    struct LogInfo
    {
        QtMsgType type = QtDebugMsg;
        QString category;
        QString file; ///< path of the source file
        QString line; ///< its line, as text
        QString function; ///< signature of the function
        QString functionName; ///< its bare name
        QString message;
    };

    /**
     * Reads the settings file at \a settingsPath, opens the log file for appending, and takes over Qt's
     * message handler. Where the settings name no folder that exists, all messages of the process are dropped
     * instead.
     *
     * Nothing is taken over and instance() stays null when there is no settings file (one line on standard
     * error) or when the log file cannot be opened (a debug message). Beside an earlier logger this one stays
     * without effect, and says so on standard output.
     */
    explicit QstLogger(const QString &settingsPath);
    /// Closes the log file. Neither the message handler nor instance() change.
    ~QstLogger() override;

    /// The logger that has taken over the message handler; null while none has.
    static QstLogger *instance();

    /// NoError before the settings have been read.
    Status status() const;
    /// The settings of the category \a name; an empty name and no level for one that the settings do not
    /// name.
    CategorySettings settingsForName(const QString &name) const;

    /**
     * Writes one record and returns true when a line went to the log file. It does not when the settings do
     * not name the category or have its level off; in the latter case the message goes to standard output
     * where the settings say so. Whether the disk took the line is not checked.
     */
    bool log(QstLogger::LogInfo info);

    /// \name The fields of a line
    /// Laid out as the settings say, and never cut.
    /// @{
    /// The current local time.
    QString timestampField() const;
    /// The last component of the path \a file, or all of it.
    QString fileField(const QString &file) const;
    QString lineField(const QString &line) const;
    /// \a functionName, or \a function in the long form.
    QString functionField(const QString &function, const QString &functionName) const;
    /// "Debug", "Warning", "Critical" or "Fatal"; "Debug" for any other type.
    QString msgTypeField(QtMsgType type) const;
    /// @}

public Q_SLOTS:
    /**
     * Reads the settings file again: categories, layout, and whether suppressed messages are shown. The log
     * file stays the one that was opened first. False when there is no settings file; then nothing changes
     * but status().
     */
    bool loadSettings();

private:
    Q_DISABLE_COPY(QstLogger)

    static std::atomic<QstLogger *> _self;

    const std::unique_ptr<QstLoggerPrivate> d;
};

/**
 * Takes one message, UTF-8 text, for QstLogger::instance(): what a logger with a log file hands to Qt.
 *
 * A structured message with a category is logged. Any other goes to standard output as one line: without its
 * five fields if it has them, else an empty line. After a fatal message the process is aborted.
 */
TIDEL_EXPORT void logMessageFilter(QtMsgType type, const char *text);

/// Drops one message, a fatal one too: what a logger hands to Qt when there is no folder to log to.
TIDEL_EXPORT void noLogsFilter(QtMsgType type, const char *text);

#endif
