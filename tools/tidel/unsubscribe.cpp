// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "downloads.h"
#include "feedstore.h"
#include "messageremoval.h"
#include "output.h"
#include "writeturn.h"

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

bool isDeleted(const FeedStore &store, const QString &channelUri)
{
    return !store.isStored("?x a mfo:FeedChannel FILTER(?x = ?:it)", channelUri);
}

bool hasNothingLeft(const FeedStore &store, const QString &channelUri)
{
    return !store.isStored("?x a mfo:FeedMessage ; nie:isLogicalPartOf ?:it", channelUri)
        && !store.isStored("?x a mfo:Enclosure ; nie:isLogicalPartOf ?:it", channelUri);
}

} // namespace

void unsubscribe(FeedStore &store, const Arguments &arguments, Output &output)
{
    const auto channel = chooseChannel(store, arguments.names.first(), output);
    if (!channel)
        return;
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
