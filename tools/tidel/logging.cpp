// SPDX-License-Identifier: LGPL-2.1-or-later
#include "logging.h"

#include "notices.h"

#include <QFileInfo>
#include <QStringList>

#include <TidelReader/usertext.h>

namespace Tidel {

namespace {

QtMessageHandler logMessage = nullptr;

bool isStructured(const QString &text)
{
    return !text.startsWith(QLatin1Char('\n')) && text.count(QLatin1Char('\n')) >= 5;
}

QString structured(const QMessageLogContext &context, const QString &text)
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

// The logger prints an empty line to standard output for each message that is not structured.
void logEveryMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    showNotice(type, context, text);
    const QString shown = withoutPasswords(text);
    logMessage(type, context, isStructured(shown) ? shown : structured(context, shown));
}

} // namespace

std::unique_ptr<QstLogger> startLogging(const QString &settingsPath, QString *error)
{
    if (!QFileInfo::exists(settingsPath)) {
        *error = settingsPath + QLatin1String(": could not read the log settings: no such file");
        return nullptr;
    }
    auto logger = std::make_unique<QstLogger>(settingsPath);
    if (!QstLogger::instance()) {
        *error =
            settingsPath + QLatin1String(": could not open the log file; check its dir-path and file-name");
        return nullptr;
    }
    logMessage = qInstallMessageHandler(logEveryMessage);
    return logger;
}

} // namespace Tidel
