// SPDX-License-Identifier: LGPL-2.1-or-later
#include "linelayout_p.h"

#include <QDateTime>
#include <QFileInfo>

namespace {

QString padded(const QString &text, const QstLogger::Field &field)
{
    return QStringLiteral("%1").arg(text, field.width, QLatin1Char(' '));
}

void fill(QString &line, QLatin1String placeholder, const QString &text)
{
    constexpr qint64 longest = 16LL * 1024 * 1024;
    const qint64 count = line.count(placeholder);
    if (count <= 1 || line.size() + count * text.size() <= longest)
        line.replace(placeholder, text);
}

} // namespace

QString LineLayout::timestampText() const
{
    const QDateTime now = QDateTime::currentDateTime();
    return padded(timestamp.longFormat ? now.toString(Qt::TextDate)
                                       : now.toString(QStringLiteral("hh:mm:ss")),
                  timestamp);
}

QString LineLayout::fileText(const QString &path) const
{
    return padded(file.longFormat ? path : QFileInfo(path).fileName(), file);
}

QString LineLayout::lineText(const QString &number) const { return padded(number, line); }

QString LineLayout::functionText(const QString &signature, const QString &name) const
{
    return padded(function.longFormat ? signature : name, function);
}

QString LineLayout::msgTypeText(QtMsgType type) const
{
    switch (type) {
    case QtWarningMsg: return padded(QStringLiteral("Warning"), msgType);
    case QtCriticalMsg: return padded(QStringLiteral("Critical"), msgType);
    case QtFatalMsg: return padded(QStringLiteral("Fatal"), msgType);
    // contract: all other types, such as QtInfoMsg, are "Debug". Log readers know these four words.
    default: return padded(QStringLiteral("Debug"), msgType);
    }
}

QString LineLayout::filled(const QstLogger::LogInfo &info) const
{
    QString text = format;
    if (timestamp.enabled)
        fill(text, QLatin1String("<timestamp>"), timestampText());
    if (file.enabled)
        fill(text, QLatin1String("<file>"), fileText(info.file));
    if (function.enabled)
        fill(text, QLatin1String("<function>"), functionText(info.function, info.functionName));
    if (msgType.enabled)
        fill(text, QLatin1String("<msgtype>"), msgTypeText(info.type));
    if (line.enabled)
        fill(text, QLatin1String("<line>"), lineText(info.line));
    // contract: the message is never padded, and replaced even if the format was read without it.
    fill(text, QLatin1String("<message>"), info.message);
    return text;
}
