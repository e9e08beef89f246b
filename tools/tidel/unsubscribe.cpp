// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "downloads.h"
#include "feedstore.h"
#include "orphans.h"
#include "output.h"

#include <QSparqlQuery>
#include <QSparqlResultRow>
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

/// Whether \a pattern, which names the channel, has a match; also when the store does not tell.
bool isStored(const FeedStore &store, const char *pattern, const QString &channelUri)
{
    QSparqlQuery query(QStringLiteral("SELECT ?x WHERE { %1 } LIMIT 1").arg(QLatin1String(pattern)));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    return !store.rows(query).isEmpty() || !store.failure().isEmpty();
}

bool isDeleted(FeedStore &store, const QString &channelUri)
{
    return !isStored(store, "?x a mfo:FeedChannel FILTER(?x = ?:channel)", channelUri);
}

bool hasNothingLeft(FeedStore &store, const QString &channelUri)
{
    return forget(store, channelUri)
        && !isStored(store, "?x a mfo:FeedMessage ; nie:isLogicalPartOf ?:channel", channelUri);
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
    const int orphans = orphanEnclosures(store);
    store.library().deleteChannel(channel->uri());
    if (!isDeleted(store, channel->uri()))
        output.error(QStringLiteral("%1: the store did not delete the channel").arg(channel->title()));
    else if (!hasNothingLeft(store, channel->uri()) || orphanEnclosures(store) > orphans)
        output.error(QStringLiteral("%1: unsubscribed, but the store did not delete all that it had; "
                                    "\"tidel clean\" does")
                         .arg(channel->title()));
    else
        output.line(QStringLiteral("Unsubscribed: %1").arg(channel->title()));
}

} // namespace Tidel
