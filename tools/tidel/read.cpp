// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "messagefinder.h"
#include "output.h"
#include "phrases.h"
#include "timeargument.h"

#include <QJsonObject>

#include <TidelReader/readstate.h>

namespace Tidel {

namespace {

void mark(const Store &store, const QStringList &uris, bool isRead, Output &output)
{
    constexpr int many = 1000;
    const auto changed = ReadState(store).set(uris, isRead, [&output](int done, int all) {
        if (all >= many)
            output.progress(shownProgress(done, all, "messages"));
    });
    if (!changed) {
        output.failure(changed.error());
        return;
    }
    output.report(QStringLiteral("Marked as %1: %2")
                      .arg(QLatin1String(isRead ? "read" : "unread"), countedMessages(*changed)),
                  {{QStringLiteral("read"), isRead}, {QStringLiteral("changed"), *changed}});
}

void markMessages(const Store &store, const QStringList &names, bool isRead, Output &output)
{
    QStringList uris;
    const QList<MessageHeadline> messages = chooseMessages(store, names, output);
    for (const MessageHeadline &message : messages)
        uris.append(message.uri);
    if (!uris.isEmpty())
        mark(store, uris, isRead, output);
}

/// Marks all messages of the channels in \a arguments.
void markAll(const Store &store, const Arguments &arguments, Output &output)
{
    QStringList channelUris;
    for (const QString &name : arguments.names) {
        const auto channel = chooseChannel(store, name, output);
        if (!channel)
            return;
        channelUris.append(channel->uri());
    }
    const QDateTime before = timeArgument(arguments.value("older-than"), QDateTime::currentDateTime());
    const Result<QStringList> unread = ReadState(store).unread(channelUris, before);
    if (unread)
        mark(store, *unread, true, output);
    else
        output.failure(unread.error());
}

QString misuseOfRead(const Arguments &arguments)
{
    const bool isAll = arguments.isSet("all");
    if (arguments.isSet("older-than")
        && !timeArgument(arguments.value("older-than"), QDateTime::currentDateTime()).isValid())
        return QStringLiteral("--older-than needs a number of days such as 7d, or a day such as 2026-11-03");
    if (arguments.isSet("older-than") && !isAll)
        return QStringLiteral("--older-than needs --all");
    return isAll || !arguments.names.isEmpty() ? QString() : QStringLiteral("name messages, or give --all");
}

void read(const Store &store, const Arguments &arguments, Output &output)
{
    if (arguments.isSet("all"))
        markAll(store, arguments, output);
    else
        markMessages(store, arguments.names, true, output);
}

void unread(const Store &store, const Arguments &arguments, Output &output)
{
    markMessages(store, arguments.names, false, output);
}

} // namespace

const Command readCommand = {
    "read",
    "MESSAGE... | --all [CHANNEL...] [--older-than TIME]",
    "Mark messages as read.",
    "Messages, or with --all channels: numbers in the last list, parts of titles, links or URIs.",
    0,
    anyNumber,
    {{"all", nullptr, "All messages of the channels, or of all channels if none is named."},
     {"older-than", "TIME", "Only messages published before: 7d for seven days ago, yesterday, 2026-11-03."}},
    {"tidel read 3 4", "tidel read --all \"Garden Notes\"", "tidel read --all --older-than 7d"},
    read,
    misuseOfRead};

const Command unreadCommand = {"unread",  "MESSAGE...", "Mark messages as unread.", someMessages, 1,
                               anyNumber, {},           {"tidel unread 3"},         unread};

} // namespace Tidel
