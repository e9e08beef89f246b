// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelfinder.h"

#include "candidates.h"
#include "output.h"
#include "phrases.h"

#include <QSet>

#include <TidelReader/channels.h>

#include <algorithm>

namespace Tidel {

namespace {

QString advice(Error::Kind kind)
{
    switch (kind) {
    case Error::NotFound: return QStringLiteral("; \"tidel channels\" lists the channels");
    case Error::Ambiguous: return QStringLiteral("; use a link or URI that \"tidel channels --uri\" shows");
    default: return QString();
    }
}

const FeedChannel *withUri(const QList<FeedChannel> &channels, const QString &uri)
{
    const auto found = std::find_if(channels.begin(), channels.end(),
                                    [&uri](const FeedChannel &channel) { return channel.uri() == uri; });
    return found == channels.end() ? nullptr : &*found;
}

void reportCandidates(const QString &name, const QList<FeedChannel> &found, Output &output)
{
    QList<Candidate> candidates;
    for (const FeedChannel &channel : found)
        candidates.append({channel.uri(), channel.link(),
                           QStringLiteral("%1  %2").arg(shownTitle(channel.title()), channel.link())});
    showCandidates(name, "channels", LastList::Channels, candidates, output);
}

/// Looks for a channel whose title is, or contains, \a name. \a error says that no other name is meant.
std::optional<FeedChannel> chooseByTitle(const QList<FeedChannel> &channels, const QString &name,
                                         const Error &error, Output &output)
{
    const QList<FeedChannel> found = Channels::titled(channels, name);
    const bool isNumber = LastList::rowNumber(name) > 0;
    if (found.size() > 1)
        reportCandidates(name, found, output);
    else if (found.isEmpty() || isNumber)
        output.failure(name, error, advice(error.kind()));
    else
        return found.first();
    return std::nullopt;
}

std::optional<FeedChannel> choose(const QList<FeedChannel> &channels, const QString &name, Output &output)
{
    const int row = LastList::rowNumber(name);
    const LastList list(LastList::Channels);
    const QString uri = row > 0 ? list.uri(row) : QString();
    if (const FeedChannel *channel = uri.isEmpty() ? nullptr : withUri(channels, uri))
        return *channel;
    if (row > list.size() && list.size() > 0) {
        output.error(beyondList(row, list.size(), "channels"));
        return std::nullopt;
    }
    const Result<FeedChannel> channel = Channels::find(channels, name);
    return channel ? *channel : chooseByTitle(channels, name, channel.error(), output);
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
