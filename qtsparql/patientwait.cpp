// SPDX-License-Identifier: LGPL-2.1-or-later
#include "patientwait_p.h"

#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>
#include <QThread>

Q_LOGGING_CATEGORY(lcWaiting, "tidel.waiting")

namespace {

constexpr qint64 silence = 2000;

QByteArray processFile(qint64 process, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Returns true if the user has stopped \a process, for example with Ctrl-Z; otherwise returns false.
bool isSuspended(qint64 process)
{
    // The name of the program, in parentheses, may contain anything.
    const QByteArray status = processFile(process, "stat");
    return status.mid(status.lastIndexOf(')')).startsWith(") T");
}

} // namespace

QString nameOfProcess(qint64 process) { return QString::fromUtf8(processFile(process, "comm")).simplified(); }

PatientWait::PatientWait(int milliseconds, const char *activity)
    : m_milliseconds(milliseconds), m_activity(QString::fromLatin1(activity))
{
    m_clock.start();
}

bool PatientWait::goOn(const std::function<Holder()> &holder, unsigned pause)
{
    if (m_clock.elapsed() >= m_milliseconds)
        return false;
    if (!m_isTold && m_clock.elapsed() >= silence) {
        m_isTold = true;
        const Holder other = holder();
        qCInfo(lcWaiting).noquote() << QStringLiteral("Waiting for %1, which has been %2 for %3 seconds")
                                           .arg(description(other), m_activity)
                                           .arg(seconds(other));
    }
    QThread::msleep(pause);
    return true;
}

QString PatientWait::failure(const Holder &holder) const
{
    const QString text = QStringLiteral("%1 has been %2 for %3 seconds").arg(description(holder), m_activity);
    const QString advice = isSuspended(holder.process)
        ? QStringLiteral(" and is suspended; continue it with \"kill -CONT %1\", or end it")
              .arg(holder.process)
        : QStringLiteral("; wait until it has ended, or end it");
    return text.arg(seconds(holder)) + advice;
}

QString PatientWait::description(const Holder &holder) const
{
    return holder.process == 0 ? QStringLiteral("another program")
                               : QStringLiteral("%1 (process %2)").arg(holder.name).arg(holder.process);
}

qint64 PatientWait::seconds(const Holder &holder) const
{
    return holder.since == 0 ? m_clock.elapsed() / 1000 : QDateTime::currentSecsSinceEpoch() - holder.since;
}
