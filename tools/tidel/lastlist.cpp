// SPDX-License-Identifier: LGPL-2.1-or-later
#include "lastlist.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

namespace Tidel {

namespace {

constexpr int maximumRows = 10000;

/// A text that no other session of a terminal has, also after the system was started again; empty if the
/// session has no terminal. It begins with the number of the process that leads the session.
QString sessionName(const QString &leader)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(leader));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // The name of the program, which may contain anything, is in parentheses.
    const QByteArray text = file.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    const QByteArray terminal = fields.value(4);
    const QByteArray begin = fields.value(19);
    return terminal.isEmpty() || terminal == "0"
        ? QString()
        : QStringLiteral("%1-%2-%3").arg(leader, QString::fromLatin1(terminal), QString::fromLatin1(begin));
}

/// The folder for the lists, with a slash at the end.
QString folder()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString base =
        runtime.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) : runtime;
    return base + QLatin1String("/tidel/");
}

void removeEndedSessions()
{
    const QDir lists(folder());
    const QStringList names = lists.entryList({QStringLiteral("*-*-*.list")}, QDir::Files);
    for (const QString &name : names) {
        const QString session = name.section(QLatin1Char('.'), 0, 0);
        if (sessionName(session.section(QLatin1Char('-'), 0, 0)) != session)
            QFile::remove(lists.filePath(name));
    }
}

} // namespace

LastList::LastList(Kind kind)
{
    const QString session = sessionName(QString::number(getsid(0)));
    if (!session.isEmpty())
        m_path = folder() + session
            + (kind == Channels ? QLatin1String(".channels.list") : QLatin1String(".messages.list"));
}

// To name rows is a convenience. Where it cannot be had, links and titles do.
void LastList::remember(const QStringList &uris) const
{
    if (m_path.isEmpty() || !QDir().mkpath(folder()))
        return;
    removeEndedSessions();
    chmod(QFile::encodeName(folder()).constData(), 0700);
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write(uris.mid(0, maximumRows).join(QLatin1Char('\n')).toUtf8());
    static_cast<void>(file.commit());
}

QStringList LastList::rows() const
{
    QFile file(m_path);
    return !m_path.isEmpty() && file.open(QIODevice::ReadOnly)
        ? QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)
        : QStringList();
}

int LastList::rowNumber(const QString &name)
{
    bool isNumber = false;
    const uint number = name.toUInt(&isNumber);
    return isNumber && number <= 1000000 && name.at(0).isDigit() ? int(number) : 0;
}

} // namespace Tidel
