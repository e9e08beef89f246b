// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "downloads.h"
#include "output.h"
#include "phrases.h"

#include <QFileInfo>

#include <feedplugininterface.h>

#include <TidelReader/channels.h>
#include <TidelReader/documenturl.h>
#include <TidelReader/downloadqueue.h>
#include <TidelReader/link.h>

namespace Tidel {

namespace {

/// Returns advice if \a argument may be a web address without a scheme, which is read as the path of a file.
QString schemeAdvice(const QString &argument)
{
    const bool mayLackScheme = documentUrl(argument).isLocalFile() && !QFileInfo::exists(argument)
        && !argument.startsWith(QLatin1Char('/'))
        && !argument.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
    return mayLackScheme ? QStringLiteral("; web addresses begin with https:// or http://") : QString();
}

/// Writes \a text with the title of the channel with the link \a address.
void reportChannel(const Store &store, const QUrl &address, const QString &text, Output &output)
{
    const Result<QString> title = Channels(store).title(Link::encoded(address));
    if (title)
        output.line(text.arg(shownTitle(*title)));
    else
        output.failure(shownAddress(Link::encoded(address)), title.error());
}

void report(const Store &store, const QString &argument, const DownloadResult &result, Output &output)
{
    const QUrl address = documentUrl(argument);
    if (result.isOk())
        reportChannel(store, address,
                      QStringLiteral("Subscribed: %1 (") + countedMessages(int(result.newMessages().size()))
                          + QLatin1Char(')'),
                      output);
    else if (result.error() == FeedDownloadAlreadyStored)
        reportChannel(store, address,
                      QStringLiteral("Already subscribed: %1 (\"tidel refresh\" downloads new messages)"),
                      output);
    else if (result.error() != FeedDownloadCanceled)
        output.error(shownAddress(argument) + QLatin1String(": ") + result.reason() + schemeAdvice(argument));
}

} // namespace

void subscribe(const Store &store, const Arguments &arguments, Output &output)
{
    FeedPluginInterface *plugin = downloadPlugin(output);
    if (!plugin)
        return;
    DownloadQueue queue(*plugin);
    for (const QString &argument : arguments.names)
        queue.subscribe(documentUrl(argument), [&store, &output, argument](const DownloadResult &result) {
            report(store, argument, result, output);
        });
    showProgress(queue, "feeds", output);
    run(queue, output);
}

} // namespace Tidel
