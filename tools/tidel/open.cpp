// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "messagefinder.h"
#include "output.h"
#include "phrases.h"

#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <TidelReader/readstate.h>

namespace Tidel {

namespace {

const QString opener = QStringLiteral("xdg-open");

/// Hands \a link to the desktop. Returns what went wrong; empty if nothing.
QString handOver(const QString &link)
{
    const QUrl url(link);
    // Anything else could start a program or open a file of the user.
    if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))
        return QStringLiteral("the link is no http or https address: %1").arg(link);
    const QString program = QStandardPaths::findExecutable(opener);
    if (program.isEmpty())
        return QStringLiteral("cannot open %1, because there is no program %2; install xdg-utils")
            .arg(link, opener);
    QProcess process;
    process.setProgram(program);
    process.setArguments({QString::fromLatin1(url.toEncoded())});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached()
        ? QString()
        : QStringLiteral("could not start %1: %2").arg(program, process.errorString());
}

void open(const Store &store, const Arguments &arguments, Output &output)
{
    const QList<MessageHeadline> messages = chooseMessages(store, arguments.names, output);
    for (const MessageHeadline &message : messages) {
        const QString title = shownTitle(message.title);
        const QString problem = handOver(message.link);
        if (!problem.isEmpty()) {
            output.error(title + QLatin1String(": ") + problem);
            continue;
        }
        output.report(QLatin1String("Opened: ") + title, {{QStringLiteral("uri"), message.uri}});
        const Result<int> marked = message.isRead ? 0 : ReadState(store).set({message.uri}, true);
        if (!marked)
            output.failure(title, marked.error());
    }
}

} // namespace

const Command openCommand = {
    "open",
    "MESSAGE...",
    "Open the web pages of messages in the browser of the desktop, and mark them as read.",
    someMessages,
    1,
    anyNumber,
    {},
    {"tidel open 3"},
    open};

} // namespace Tidel
