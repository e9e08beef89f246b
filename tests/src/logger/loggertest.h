// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef LOGGERTEST_H
#define LOGGERTEST_H

#include <QByteArray>
#include <QObject>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <vector>

/// The results of a run of the logging host.
struct HostRun
{
    QByteArray out;
    QByteArray err;
    int exitCode = -1; ///< -1 if a signal ended the process
    int signal = 0;
    QStringList report; ///< the last line is "end" if the host executed all actions
};

/// Returns the text of a structured message.
QString structured(const QString &message, const QString &category = "Test");
/// Returns the settings for a log file in the folder \a dirPath.
QByteArray logSettings(const QString &dirPath);

/// The base of the tests. Each test has a folder of its own and runs the host in processes of their own. The
/// log file is "log.txt" in the folder.
class LoggerTestCase : public QObject
{
    Q_OBJECT

protected:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    void write(const QString &name, const QByteArray &content) const;
    /// Returns the content of the file \a name; "(none)" if it does not exist.
    QByteArray content(const QString &name) const;

    /// Writes settings with \a format, a category "Test" with all levels, and the text \a more.
    void writeSettings(const QByteArray &format, const QByteArray &more = QByteArray()) const;
    /// Returns the action that creates a logger with these settings.
    QString construct() const { return "construct:" + path("settings.ini"); }
    HostRun run(const QStringList &actions) const { return runTogether({actions}).front(); }
    /// Runs a process for each list of actions, all at the same time.
    std::vector<HostRun> runTogether(const std::vector<QStringList> &lists) const;
    /// Runs the host with a logger of these settings.
    HostRun runLogger(const QStringList &actions) const { return run(QStringList(construct()) + actions); }
    QByteArray log() const { return content("log.txt"); }

    QProcessEnvironment environment;

protected Q_SLOTS:
    void init();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

/// Verifies that the host executed all actions.
#define VERIFY_ENDED(run)                                                                                    \
    do {                                                                                                     \
        const HostRun &run_ = (run);                                                                         \
        QCOMPARE(run_.signal, 0);                                                                            \
        QCOMPARE(run_.exitCode, 0);                                                                          \
        QCOMPARE(run_.report.isEmpty() ? QString() : run_.report.last(), QString("end"));                    \
    } while (false)

/// Verifies the same, and that standard output and standard error are empty.
#define VERIFY_QUIET(run)                                                                                    \
    do {                                                                                                     \
        const HostRun &quiet_ = (run);                                                                       \
        QCOMPARE(quiet_.err, QByteArray());                                                                  \
        QCOMPARE(quiet_.out, QByteArray());                                                                  \
        VERIFY_ENDED(quiet_);                                                                                \
    } while (false)

#endif
