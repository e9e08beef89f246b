// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "table.h"

#include <TidelReader/channels.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/folders.h>
#include <TidelReader/messages.h>

namespace Tidel {

namespace {

QString shownSize(unsigned int length)
{
    return length == 0 ? QStringLiteral("(no size)") : QStringLiteral("%1 bytes").arg(length);
}

QString shownType(const QString &mimeType)
{
    return mimeType.isEmpty() ? QStringLiteral("(no type)") : mimeType;
}

void listChannels(const Store &store, const Arguments &, Output &output)
{
    const QList<FeedChannel> channels = chooseChannels(store, {}, output);
    if (channels.isEmpty())
        return;
    const Result<QHash<QString, int>> counts = Channels(store).messageCounts();
    if (!counts) {
        output.failure(counts.error());
        return;
    }
    const Result<QHash<QString, QString>> folders = Folders(store).all();
    if (!folders) {
        output.failure(folders.error());
        return;
    }
    Table table({folders->isEmpty() ? 1 : 2});
    for (const FeedChannel &channel : channels) {
        QStringList row{shownTitle(channel.title()), countedMessages(counts->value(channel.uri())),
                        channel.link(), channel.uri()};
        if (!folders->isEmpty())
            row.insert(1, folders->value(channel.uri()));
        table.addRow(row);
        QJsonObject json = channelJson(channel);
        addText(json, "folder", folders->value(channel.uri()));
        json.insert(QStringLiteral("messages"), counts->value(channel.uri()));
        output.object(json);
    }
    output.table(table);
}

void listMessages(const Store &store, const Arguments &arguments, Output &output)
{
    const auto channel = chooseChannel(store, arguments.names.first(), output);
    if (!channel)
        return;
    const Result<QList<FeedMessage>> messages = Messages(store).ofChannel(channel->uri());
    if (!messages) {
        output.failure(channel->title(), messages.error());
        return;
    }
    if (messages->isEmpty())
        output.note(QStringLiteral("%1: the channel has no messages").arg(channel->title()));
    Table table;
    for (const FeedMessage &message : *messages) {
        table.addRow({shownTime(message.publishedDate()),
                      message.isFavorite() ? QStringLiteral("*") : QStringLiteral(" "),
                      shownTitle(message.title()), message.link()});
        output.object(headlineJson(message.id(), message, {channel->title()}));
    }
    output.table(table);
}

void listEnclosures(const Store &store, const Arguments &arguments, Output &output)
{
    const QString name = arguments.names.first();
    const Result<QString> uri = Messages(store).uri(name);
    if (!uri) {
        output.failure(name, uri.error(), messageAdvice(uri.error()));
        return;
    }
    const Result<QList<FeedEnclosure>> enclosures = Enclosures(store).ofMessage(*uri);
    if (!enclosures) {
        output.failure(name, enclosures.error());
        return;
    }
    if (enclosures->isEmpty())
        output.note(QStringLiteral("%1: the message has no enclosures").arg(name));
    Table table({0});
    for (const FeedEnclosure &enclosure : *enclosures) {
        table.addRow({shownSize(enclosure.length()), shownType(enclosure.mimeType()), enclosure.remoteUrl()});
        output.object(enclosureJson(enclosure));
    }
    output.table(table);
}

} // namespace

const Command channelsCommand = {
    "channels",
    "",
    "List the channels: title, folder if there are any, number of messages, link, URI.",
    "",
    0,
    0,
    {},
    {"tidel channels"},
    listChannels};

const Command messagesCommand = {"messages",
                                 "CHANNEL",
                                 "List the messages of a channel, newest first; * marks favorites.",
                                 aChannel,
                                 1,
                                 1,
                                 {},
                                 {"tidel messages \"Garden Notes\""},
                                 listMessages};

const Command enclosuresCommand = {"enclosures",
                                   "MESSAGE",
                                   "List the files of a message: size, type, address.",
                                   aMessage,
                                   1,
                                   1,
                                   {},
                                   {"tidel enclosures https://radio.example.org/episodes/7"},
                                   listEnclosures};

} // namespace Tidel
