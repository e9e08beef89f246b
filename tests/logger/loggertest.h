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

/// What a run of the logging host left.
struct HostRun
{
    QByteArray out;
    QByteArray err;
    int exitCode = -1; ///< -1 where a signal ended it
    int signal = 0;
    QStringList report; ///< the last line is "end" when it came so far
};

/// The text of a structured message, in the category "Test" where no other is named.
QString structured(const QString &message, const QString &category = "Test");
/// The settings of a log file in the folder \a dirPath.
QByteArray logSettings(const QString &dirPath);

/// The base of the tests: a folder for each function, and runs of the host in processes of their own. The log
/// file is "log.txt" in that folder.
class LoggerTestCase : public QObject
{
    Q_OBJECT

protected:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    void write(const QString &name, const QByteArray &content) const;
    /// All of the file \a name; "(none)" when there is no such file.
    QByteArray content(const QString &name) const;

    /// Writes the settings of a logger with \a format and a category "Test" of all levels, and what \a more
    /// says.
    void writeSettings(const QByteArray &format, const QByteArray &more = QByteArray()) const;
    /// The action that makes the logger of those settings.
    QString construct() const { return "construct:" + path("settings.ini"); }
    HostRun run(const QStringList &actions) const { return runTogether({actions}).front(); }
    /// One process for each list of actions, all at once.
    std::vector<HostRun> runTogether(const std::vector<QStringList> &lists) const;
    /// run(), with a logger of the settings as its first action.
    HostRun runLogger(const QStringList &actions) const { return run(QStringList(construct()) + actions); }
    QByteArray log() const { return content("log.txt"); }

    QProcessEnvironment environment;

protected Q_SLOTS:
    void init();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

/// Verifies that a run came to its end.
#define VERIFY_ENDED(run)                                                                                    \
    do {                                                                                                     \
        const HostRun &run_ = (run);                                                                         \
        QCOMPARE(run_.signal, 0);                                                                            \
        QCOMPARE(run_.exitCode, 0);                                                                          \
        QCOMPARE(run_.report.isEmpty() ? QString() : run_.report.last(), QString("end"));                    \
    } while (false)

/// The same, and that there is nothing on its streams.
#define VERIFY_QUIET(run)                                                                                    \
    do {                                                                                                     \
        const HostRun &quiet_ = (run);                                                                       \
        QCOMPARE(quiet_.err, QByteArray());                                                                  \
        QCOMPARE(quiet_.out, QByteArray());                                                                  \
        VERIFY_ENDED(quiet_);                                                                                \
    } while (false)

#endif
