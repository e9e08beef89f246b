// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "documenturl.h"
#include "downloadqueue.h"
#include "feedstore.h"
#include "links.h"
#include "output.h"
#include "phrases.h"
#include "plugincall.h"
#include "pluginfinder.h"

#include <QFileInfo>
#include <QSparqlQuery>
#include <QSparqlResultRow>

#include <feedplugininterface.h>

namespace Tidel {

namespace {

QString titleOf(const FeedStore &store, const QUrl &address)
{
    QSparqlQuery query(
        QStringLiteral("SELECT ?t { ?c a mfo:FeedChannel ; nie:links ?:link ; nie:title ?t }"));
    query.bindValue(QStringLiteral("link"), QUrl(encodedUrl(address)));
    const QList<QSparqlResultRow> found = store.rows(query);
    return found.isEmpty() ? QString() : found.first().value(0).toString();
}

void tellKnown(const FeedStore &store, const QUrl &address, Output &output)
{
    output.line(QStringLiteral("Already subscribed: %1 (\"tidel refresh\" reads what is new)")
                    .arg(titleOf(store, address)));
}

/// Why there is no subscription. What lacks its https:// is taken for the path of a file.
QString shownReason(const QString &argument, const QString &reason)
{
    const bool mayLackScheme = documentUrl(argument).isLocalFile() && !QFileInfo::exists(argument)
        && !argument.startsWith(QLatin1Char('/'))
        && !argument.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
    return mayLackScheme ? reason + QStringLiteral("; web addresses begin with https:// or http://") : reason;
}

void tell(const FeedStore &store, const QString &argument, const DownloadEnding &ending, Output &output)
{
    const QUrl address = documentUrl(argument);
    if (ending.error == FeedDownloadCanceled)
        return;
    if (ending.error == FeedDownloadAlreadyStored) {
        tellKnown(store, address, output);
    } else if (ending.isFine()) {
        output.line(QStringLiteral("Subscribed: %1 (%2)")
                        .arg(titleOf(store, address), countedMessages(int(ending.newMessages.size()))));
    } else {
        output.error(shownAddress(argument) + QLatin1String(": ") + shownReason(argument, ending.reason));
    }
}

} // namespace

void subscribe(FeedStore &store, const Arguments &arguments, Output &output)
{
    FeedPluginInterface *plugin = downloadPlugin(output);
    if (!plugin)
        return;
    DownloadQueue queue(*plugin);
    for (const QString &argument : arguments.names)
        queue.add(methodCall("subscribe", documentUrl(argument)),
                  [&store, &output, argument](const DownloadEnding &ending) {
                      tell(store, argument, ending, output);
                  });
    QObject::connect(&queue, &DownloadQueue::advanced, &queue,
                     [&](int ended, int all) { output.progress(shownProgress(ended, all, "feeds")); });
    output.interrupted(queue.run());
}

} // namespace Tidel
