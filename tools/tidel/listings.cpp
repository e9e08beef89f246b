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
    const QList<FeedChannel> channels = store.channels();
    if (channels.isEmpty())
        output.note(noChannelsHint());
    const QHash<QString, int> counts = store.messageCounts();
    Table table({1});
    for (const FeedChannel &channel : channels)
        table.addRow({shownTitle(channel.title()), countedMessages(counts.value(channel.uri())),
                      channel.link(), channel.uri()});
    output.table(table);
}

void listMessages(FeedStore &store, const Arguments &arguments, Output &output)
{
    QString error;
    const auto channel = findChannel(store.channels(), arguments.names.first(), &error);
    if (!channel) {
        output.error(error);
        return;
    }
    QList<FeedMessage> messages = eachOnce(store.library().messagesForChannel(channel->uri()));
    if (messages.isEmpty())
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
    if (enclosures.isEmpty())
        output.note(QStringLiteral("the message has no enclosures"));
    Table table({0});
    for (const FeedEnclosure &enclosure : enclosures) {
        // The library gives the MIME type of a message's enclosure as its icon.
        table.addRow({shownSize(enclosure.length()), shownType(enclosure.typeIcon()), enclosure.remoteUrl()});
    }
    output.table(table);
}

} // namespace Tidel
