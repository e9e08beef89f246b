// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelfinder.h"

#include "output.h"

#include <QSet>

#include <TidelReader/channels.h>

namespace Tidel {

namespace {

QString advice(Error::Kind kind)
{
    switch (kind) {
    case Error::NotFound: return QStringLiteral("; \"tidel channels\" lists the channels");
    case Error::Ambiguous: return QStringLiteral("; use a link or URI that \"tidel channels\" shows");
    default: return QString();
    }
}

std::optional<FeedChannel> choose(const QList<FeedChannel> &channels, const QString &name, Output &output)
{
    const Result<FeedChannel> channel = Channels::find(channels, name);
    if (channel)
        return *channel;
    output.failure(name, channel.error(), advice(channel.error().kind()));
    return std::nullopt;
}

} // namespace

std::optional<FeedChannel> chooseChannel(const Store &store, const QString &name, Output &output)
{
    const Result<QList<FeedChannel>> channels = Channels(store).all();
    if (channels)
        return choose(*channels, name, output);
    output.failure(name, channels.error());
    return std::nullopt;
}

QList<FeedChannel> chooseChannels(const Store &store, const QStringList &names, Output &output)
{
    const Result<QList<FeedChannel>> channels = Channels(store).all();
    if (!channels) {
        output.failure(channels.error());
        return {};
    }
    if (names.isEmpty() && channels->isEmpty())
        output.note(QStringLiteral("There are no channels; \"tidel subscribe FILE|URL\" adds one."));
    if (names.isEmpty())
        return *channels;
    QList<FeedChannel> chosen;
    QSet<QString> uris;
    for (const QString &name : names) {
        const auto channel = choose(*channels, name, output);
        if (!channel || uris.contains(channel->uri()))
            continue;
        uris.insert(channel->uri());
        chosen.append(*channel);
    }
    return chosen;
}

} // namespace Tidel
