// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef HELPER_H
#define HELPER_H

#include <QProcess>

/// A helper process that waits for a command. The destructor kills it.
class Helper
{
    static constexpr int timeout = 60000;

public:
    explicit Helper(const QStringList &arguments,
                    const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(TIDEL_STORE_HELPER), arguments);
        if (!m_process.waitForStarted(timeout) || !reads(QStringLiteral("ready")))
            qFatal("The helper does not start: %s", qPrintable(m_process.errorString()));
    }
    ~Helper() { kill(); }

    qint64 process() const { return m_process.processId(); }
    void go()
    {
        m_process.write("\n");
        m_process.waitForBytesWritten(timeout);
    }
    bool reads(const QString &line)
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(timeout)) { }
        return QString::fromUtf8(m_process.readLine()).trimmed() == line;
    }
    bool isRunningAfter(int milliseconds)
    {
        m_process.waitForFinished(milliseconds);
        return m_process.state() == QProcess::Running;
    }
    /// Returns an empty text if the command succeeded; otherwise returns the output.
    QString outcome()
    {
        if (m_process.state() == QProcess::Running && !m_process.waitForFinished(timeout))
            return QStringLiteral("still running");
        if (m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0)
            return QString();
        return QStringLiteral("exit code %1: ").arg(m_process.exitCode())
            + QString::fromUtf8(m_process.readAllStandardOutput());
    }
    QString standardError() { return QString::fromUtf8(m_process.readAllStandardError()); }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished(timeout);
    }

private:
    Q_DISABLE_COPY(Helper)

    QProcess m_process;
};

#endif
