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
 * The logger of a process. It takes over Qt's message handler and writes messages to a log file, as an INI
 * file configures it. A process has one logger.
 *
 * \code
 * int main(int argc, char **argv)
 * {
 *     QCoreApplication application(argc, argv);
 *     const QstLogger logger("/etc/reader/log-settings.ini");
 *     if (!QstLogger::instance())
 *         qWarning("The log cannot be written"); // goes to Qt's own handler
 *     ...
 * }
 * \endcode
 *
 * The settings contain the path of the log file, the layout of a line, and the levels that are written for
 * each category. A category is the first field of a structured message, see qsttrace.h. The category of the
 * store is "Tracker". All text is UTF-8 in every locale.
 *
 * Create and destroy the logger while no other thread writes messages. All other functions are thread-safe
 * and may be called while a message is being written. The message handler stays installed: messages that
 * arrive after the logger has been destroyed are dropped.
 */
class TIDEL_EXPORT QstLogger : public QObject
{
    Q_OBJECT

public:
    /// The result of the last loadSettings().
    enum Status {
        NoError = 0, ///< the settings were read, or not read yet
        ConfigAccessFailed = 1, ///< the settings file does not exist
        InvalidSettings = 2 ///< not used at present
    };
    // contract: InvalidSettings stays, although no settings file leads to it. Hosts know the three values.
    Q_ENUM(Status)

    /// The layout of one field of a line.
    struct Field
    {
        bool enabled = false; ///< true if the template contains the field
        bool longFormat = false; ///< true for the long form of the field
        qint16 width = 0; ///< minimum width in characters; negative for left alignment
    };

    /// The levels that are written for one category.
    struct CategorySettings
    {
        QString name; ///< the category; empty if the settings do not contain it
        bool debug : 1; ///< true if debug and informational messages are written
        bool warning : 1; ///< true if warnings are written
        bool critical : 1; ///< true if critical messages are written
        bool fatal : 1; ///< true if fatal messages are written
    };

    /// The parts of a structured message.
    struct LogInfo
    {
        QtMsgType type = QtDebugMsg; ///< the level
        QString category; ///< the category; empty if the message is not structured
        QString file; ///< the path of the source file
        QString line; ///< the line in the source file, as text
        QString function; ///< the signature of the function
        QString functionName; ///< the name of the function
        QString message; ///< the message without the fields before it
    };

    /**
     * Reads the settings file at \a settingsPath, opens the log file for appending, and installs the message
     * handler. If the settings name no existing folder, the handler drops all messages of the process.
     *
     * Installs no handler and leaves instance() null if the settings file does not exist, which one line on
     * standard error reports, or if the log file cannot be opened, which a debug message reports. If another
     * logger exists, reports that on standard output and has no effect.
     */
    explicit QstLogger(const QString &settingsPath);
    /// Closes the log file. The message handler and instance() do not change.
    ~QstLogger() override;

    /// Returns the logger that has installed its message handler; null if there is none.
    static QstLogger *instance();

    /// Returns the result of the last loadSettings(); NoError if the settings have not been read.
    Status status() const;
    /// Returns the settings of the category \a name; an empty name and no levels if the settings do not
    /// contain it.
    CategorySettings settingsForName(const QString &name) const;

    /**
     * Writes one record to the log file. Returns true if the settings switch its category and level on and
     * the log file is open; otherwise returns false. If only the level is switched off and the settings
     * enable "show-unlogged", the message goes to standard output. Write errors are not reported.
     */
    bool log(QstLogger::LogInfo info);

    /// \name Fields of a line
    /// Padded to the width in the settings and never cut.
    /// @{
    /// Returns the current local time; in the long form with the date.
    QString timestampField() const;
    /// Returns the last component of the path \a file; in the long form the whole path.
    QString fileField(const QString &file) const;
    /// Returns \a line.
    QString lineField(const QString &line) const;
    /// Returns \a functionName; in the long form \a function.
    QString functionField(const QString &function, const QString &functionName) const;
    /// Returns "Debug", "Warning", "Critical" or "Fatal"; "Debug" for any other type.
    QString msgTypeField(QtMsgType type) const;
    /// @}

public Q_SLOTS:
    /**
     * Reads the settings file again and returns true. Returns false and changes only status() if the file
     * does not exist.
     */
    // contract: the log file and the message handler do not change, even if the settings do. Hosts rely on
    // it.
    bool loadSettings();

private:
    Q_DISABLE_COPY(QstLogger)

    static std::atomic<QstLogger *> _self;

    const std::unique_ptr<QstLoggerPrivate> d;
};

/**
 * Passes the message \a text, which is UTF-8, to the logger. This is the message handler of a logger with a
 * log file.
 *
 * A structured message with a category is logged. A structured message without a category goes to standard
 * output as one line without its fields. For a message that is not structured, one empty line goes to
 * standard output. After a fatal message, the process is aborted. This function is thread-safe.
 */
TIDEL_EXPORT void logMessageFilter(QtMsgType type, const char *text);

/// Drops a message, even a fatal one. This is the message handler of a logger without a log folder. This
/// function is thread-safe.
TIDEL_EXPORT void noLogsFilter(QtMsgType type, const char *text);

#endif
