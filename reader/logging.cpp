// SPDX-License-Identifier: LGPL-2.1-or-later
#include "logging.h"

#include "usertext.h"

#include <QFileInfo>
#include <QStringList>

namespace Tidel {

namespace {

QtMessageHandler handleBefore = nullptr;
QtMessageHandler handleByLogger = nullptr;

bool isTrace(const QString &text)
{
    if (text.startsWith(QLatin1Char('\n')) || text.count(QLatin1Char('\n')) < 5)
        return false;
    bool hasLineNumber = false;
    text.section(QLatin1Char('\n'), 2, 2).toInt(&hasLineNumber);
    return hasLineNumber;
}

QString asTrace(const QMessageLogContext &context, const QString &text)
{
    const QString function = QString::fromUtf8(context.function);
    return QStringList{QString::fromUtf8(context.category),
                       QString::fromUtf8(context.file),
                       QString::number(context.line),
                       function,
                       function,
                       QLatin1Char(' ') + text}
        .join(QLatin1Char('\n'));
}

void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const QString shown = withoutPasswords(text);
    if (isTrace(shown)) {
        handleByLogger(type, context, shown);
        return;
    }
    handleBefore(type, context, shown);
    handleByLogger(type, context, asTrace(context, shown));
}

Failure notLogging(const char *attempt, const QString &reason)
{
    return Failure(Error(Error::FileFailed, QString::fromLatin1(attempt), reason));
}

} // namespace

Result<std::unique_ptr<QstLogger>> startLogging(const QString &settingsPath)
{
    if (QstLogger::instance())
        return notLogging("open the log file", QStringLiteral("the program has had a logger before"));
    if (!QFileInfo::exists(settingsPath))
        return notLogging("read the log settings", QStringLiteral("no such file"));
    handleBefore = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handleBefore);
    auto logger = std::make_unique<QstLogger>(settingsPath);
    if (!QstLogger::instance())
        return notLogging("open the log file",
                          QStringLiteral("it cannot be written; check dir-path and file-name"));
    handleByLogger = qInstallMessageHandler(handle);
    return logger;
}

} // namespace Tidel
