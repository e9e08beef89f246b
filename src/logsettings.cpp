// SPDX-License-Identifier: LGPL-2.1-or-later
#include "logsettings_p.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>

#include <limits>

namespace {

void readLogFile(const QSettings &file, LogSettings &settings)
{
    const QString folder = file.value(QStringLiteral("log-settings/dir-path")).toString();
    if (!QFileInfo(folder).isDir())
        return;
    settings.hasLogFolder = true;
    settings.logFilePath =
        folder + QLatin1Char('/') + file.value(QStringLiteral("log-settings/file-name")).toString();
    settings.showUnlogged = file.value(QStringLiteral("log-settings/show-unlogged")).toBool();
}

/// Returns a width that fits into the field, so that no setting makes a line of gigabytes.
qint16 readWidth(const QSettings &file, const QString &key)
{
    constexpr qlonglong widest = std::numeric_limits<qint16>::max();
    const qlonglong length = file.value(key + QLatin1String("-length"), 20).toLongLong();
    const qint16 width = qint16(qAbs(qBound(-widest, length, widest)));
    // contract: every alignment except "left" is right alignment. Settings files rely on it.
    const QString left = QStringLiteral("left");
    return file.value(key + QLatin1String("-alignment"), left).toString() == left ? qint16(-width) : width;
}

QstLogger::Field readField(const QSettings &file, const QString &format, const QString &name)
{
    QstLogger::Field field;
    field.enabled = format.contains(QLatin1Char('<') + name + QLatin1Char('>'));
    if (field.enabled) {
        const QString key = QLatin1String("log-format/") + name;
        field.longFormat = file.value(key + QLatin1String("-format")).toString() == QLatin1String("long");
        field.width = readWidth(file, key);
    }
    return field;
}

LineLayout readLayout(const QSettings &file)
{
    // contract: the default has no separators. Log readers know it.
    const QString format = file.value(QStringLiteral("log-format/format"),
                                      QStringLiteral("<timestamp><file><line><msgtype><function><message>"))
                               .toString();
    const auto field = [&](const char *name) { return readField(file, format, QLatin1String(name)); };
    return {format, field("timestamp"), field("file"), field("line"), field("msgtype"), field("function")};
}

QstLogger::CategorySettings readCategory(const QSettings &file, const QString &name)
{
    const auto isOn = [&](const char *level, bool byDefault) {
        return file.value(name + QLatin1Char('/') + QLatin1String(level), byDefault).toBool();
    };
    return {name, isOn("debug", false), isOn("warning", false), isOn("critical", true), isOn("fatal", true)};
}

/// Returns all groups, also groups without a key, which QSettings::childGroups() omits.
QStringList groupsOf(const QSettings &settings)
{
    static const QRegularExpression emptyGroup(QStringLiteral("^\\s*\\[(?!general\\])([\\w .-]+)\\]\\s*$"),
                                               QRegularExpression::MultilineOption
                                                   | QRegularExpression::CaseInsensitiveOption);
    QStringList groups = settings.childGroups();
    QFile file(settings.fileName());
    if (file.open(QIODevice::ReadOnly)) {
        auto match = emptyGroup.globalMatch(QString::fromUtf8(file.readAll()));
        while (match.hasNext())
            groups.append(match.next().captured(1).trimmed());
    }
    groups.removeDuplicates();
    return groups;
}

} // namespace

LogSettings readLogSettings(const QString &path, const LogSettings &previous)
{
    QSettings file(path, QSettings::IniFormat);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    file.setIniCodec("UTF-8");
#endif
    // contract: without a group "log-format" the format stays empty, and so does every line. Hosts rely on
    // it.
    LogSettings settings = previous;
    settings.categories.clear();
    const QStringList groups = groupsOf(file);
    for (const QString &group : groups) {
        if (group == QLatin1String("log-settings"))
            readLogFile(file, settings);
        else if (group == QLatin1String("log-format"))
            settings.layout = readLayout(file);
        else
            settings.categories.insert(group, readCategory(file, group));
    }
    return settings;
}
