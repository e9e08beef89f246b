// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "downloads.h"
#include "feedstore.h"
#include "messageremoval.h"
#include "output.h"
#include "writeturn.h"

#include <QSparqlQuery>
#include <QSparqlResultRow>
#include <QUrl>

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

// So many at a time that a statement is worth its while, and so few that its text stays small.
constexpr int messagesAtOnce = 500;

/// Spares the library the messages, which it would delete one at a time. False when the store fails.
bool removeAllMessages(FeedStore &store, const QString &channelUri)
{
    const QStringList uris = store.library().allMessageUrls(channelUri);
    bool isComplete = true;
    for (int from = 0; from < uris.size(); from += messagesAtOnce) {
        isComplete = removeMessages(store, channelUri, uris.mid(from, messagesAtOnce)) && isComplete;
        store.collectGarbage();
    }
    return isComplete;
}

/// Whether \a pattern, which names the channel, has a match; also when the store does not tell.
bool isStored(const FeedStore &store, const char *pattern, const QString &channelUri)
{
    QSparqlQuery query(QStringLiteral("SELECT ?x WHERE { %1 } LIMIT 1").arg(QLatin1String(pattern)));
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    return !store.rows(query).isEmpty() || !store.failure().isEmpty();
}

bool isDeleted(const FeedStore &store, const QString &channelUri)
{
    return !isStored(store, "?x a mfo:FeedChannel FILTER(?x = ?:channel)", channelUri);
}

bool hasNothingLeft(const FeedStore &store, const QString &channelUri)
{
    return !isStored(store, "?x a mfo:FeedMessage ; nie:isLogicalPartOf ?:channel", channelUri)
        && !isStored(store, "?x a mfo:Enclosure ; nie:isLogicalPartOf ?:channel", channelUri);
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
    const WriteTurn turn;
    const bool isEmptied = removeAllMessages(store, channel->uri());
    store.library().deleteChannel(channel->uri());
    if (!isDeleted(store, channel->uri()))
        output.error(QStringLiteral("%1: the store did not delete the channel").arg(channel->title()));
    else if (!isEmptied || !hasNothingLeft(store, channel->uri()))
        output.error(QStringLiteral("%1: unsubscribed, but the store did not delete all that it had; "
                                    "\"tidel clean\" does")
                         .arg(channel->title()));
    else
        output.line(QStringLiteral("Unsubscribed: %1").arg(channel->title()));
}

} // namespace Tidel
