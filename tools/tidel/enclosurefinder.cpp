// SPDX-License-Identifier: LGPL-2.1-or-later
#include "enclosurefinder.h"

#include "channelfinder.h"
#include "lastlist.h"
#include "messagefinder.h"
#include "output.h"

#include <TidelReader/enclosures.h>

namespace Tidel {

namespace {

QStringList findEnclosures(const Store &store, const QString &name, Output &output)
{
    const bool isRow = LastList::rowNumber(name) > 0;
    Result<QStringList> uris = isRow ? QStringList() : Enclosures(store).uris(name);
    if (isRow || (!uris && uris.error().kind() == Error::NotFound)) {
        const auto message = chooseMessage(store, name, output);
        if (!message)
            return {};
        uris = Enclosures(store).uris(message->uri);
    }
    if (!uris) {
        output.failure(name, uris.error());
        return {};
    }
    if (uris->isEmpty())
        output.note(QStringLiteral("%1: the message has no enclosures").arg(name));
    return *uris;
}

} // namespace

QStringList findEnclosures(const Store &store, const QStringList &names, Output &output)
{
    QStringList uris;
    for (const QString &name : names)
        uris += findEnclosures(store, name, output);
    uris.removeDuplicates();
    return uris;
}

QStringList newestEnclosures(const Store &store, int count, const QStringList &channels, Output &output)
{
    QStringList channelUris;
    if (!channels.isEmpty()) {
        const QList<FeedChannel> chosen = chooseChannels(store, channels, output);
        if (chosen.isEmpty())
            return {};
        for (const FeedChannel &channel : chosen)
            channelUris.append(channel.uri());
    }
    const Result<QStringList> uris = Enclosures(store).newest(count, channelUris);
    if (!uris) {
        output.failure(uris.error());
        return {};
    }
    if (uris->isEmpty())
        output.note(QStringLiteral("All files of these channels were downloaded before"));
    return *uris;
}

} // namespace Tidel
