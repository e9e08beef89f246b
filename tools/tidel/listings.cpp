// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "feedstore.h"
#include "messageorder.h"
#include "output.h"
#include "phrases.h"
#include "table.h"

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

/// The store lists a message once for each of its tags, and only one of these makes it a favourite.
QList<FeedMessage> eachOnce(const QList<FeedMessage> &messages)
{
    QList<FeedMessage> merged;
    QHash<QString, int> places;
    for (const FeedMessage &message : messages) {
        const auto place = places.constFind(message.link());
        if (place == places.constEnd()) {
            places.insert(message.link(), merged.size());
            merged.append(message);
        } else if (message.isFavorite()) {
            merged[*place].setFavorite(true);
        }
    }
    return merged;
}

QString shownSize(unsigned int length)
{
    return length == 0 ? QStringLiteral("(no size)") : QStringLiteral("%1 bytes").arg(length);
}

QString shownType(const QString &mimeType)
{
    return mimeType.isEmpty() ? QStringLiteral("(no type)") : mimeType;
}

} // namespace

void listChannels(FeedStore &store, const Arguments &, Output &output)
{
    const QList<FeedChannel> channels = chooseChannels(store, {}, output);
    const QHash<QString, int> counts = store.messageCounts();
    Table table({1});
    for (const FeedChannel &channel : channels)
        table.addRow({shownTitle(channel.title()), countedMessages(counts.value(channel.uri())),
                      channel.link(), channel.uri()});
    output.table(table);
}

void listMessages(FeedStore &store, const Arguments &arguments, Output &output)
{
    const auto channel = chooseChannel(store, arguments.names.first(), output);
    if (!channel)
        return;
    QList<FeedMessage> messages = eachOnce(store.library().messagesForChannel(channel->uri()));
    // The library lists nothing, too, where the store fails.
    if (messages.isEmpty()
        && store.isStored("?x a mfo:FeedMessage ; nie:isLogicalPartOf ?:it", channel->uri()))
        output.error(QStringLiteral("%1: the store does not list the messages").arg(channel->title()));
    else if (messages.isEmpty())
        output.note(QStringLiteral("%1 has no messages").arg(channel->title()));
    sortNewestFirst(messages);
    Table table;
    for (const FeedMessage &message : qAsConst(messages))
        table.addRow({shownTime(message.publishedDate()),
                      message.isFavorite() ? QStringLiteral("*") : QStringLiteral(" "),
                      shownTitle(message.title()), message.link()});
    output.table(table);
}

void listEnclosures(FeedStore &store, const Arguments &arguments, Output &output)
{
    const QString uri = store.messageUri(arguments.names.first());
    if (uri.isEmpty()) {
        output.error(noSuchMessage(arguments.names.first()));
        return;
    }
    const QList<FeedEnclosure> enclosures = store.library().enclosuresForMessage(uri);
    if (enclosures.isEmpty() && store.isStored("?x a mfo:Enclosure ; nie:isLogicalPartOf ?:it", uri))
        output.error(
            QStringLiteral("%1: the store does not list the enclosures").arg(arguments.names.first()));
    else if (enclosures.isEmpty())
        output.note(QStringLiteral("the message has no enclosures"));
    Table table({0});
    for (const FeedEnclosure &enclosure : enclosures) {
        // The library gives the MIME type of a message's enclosure as its icon.
        table.addRow({shownSize(enclosure.length()), shownType(enclosure.typeIcon()), enclosure.remoteUrl()});
    }
    output.table(table);
}

} // namespace Tidel
