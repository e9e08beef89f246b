// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "downloads.h"
#include "feedstore.h"
#include "output.h"

#include <QSparqlQuery>
#include <QUrl>

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

/// Messages of other channels still say that they were this one's too.
bool forget(FeedStore &store, const QString &channelUri)
{
    QSparqlQuery query(QStringLiteral("DELETE { ?m nie:isLogicalPartOf ?:channel } "
                                      "WHERE { ?m nie:isLogicalPartOf ?:channel . "
                                      "?m nie:isLogicalPartOf ?c . ?c a mfo:FeedChannel }"),
                       QSparqlQuery::DeleteStatement);
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    return store.run(query);
}

} // namespace

void unsubscribe(FeedStore &store, const Arguments &arguments, Output &output)
{
    QString error;
    const auto channel = findChannel(store.channels(), arguments.names.first(), &error);
    if (!channel) {
        output.error(error);
        return;
    }
    const DownloadRemover remover(store, output);
    store.library().deleteChannel(channel->uri());
    if (store.library().allChannelUrls().contains(channel->uri())) {
        output.error(QStringLiteral("%1: the store did not delete the channel").arg(channel->title()));
        return;
    }
    if (!forget(store, channel->uri()) || !store.library().allMessageUrls(channel->uri()).isEmpty()) {
        output.error(QStringLiteral("%1: unsubscribed, but the store did not delete all of its messages; "
                                    "\"tidel clean\" does")
                         .arg(channel->title()));
        return;
    }
    output.line(QStringLiteral("Unsubscribed: %1").arg(channel->title()));
}

} // namespace Tidel
