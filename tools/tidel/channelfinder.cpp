// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelfinder.h"

#include "documenturl.h"
#include "feedstore.h"
#include "links.h"
#include "output.h"

#include <QSet>

namespace Tidel {

std::optional<FeedChannel> findChannel(const QList<FeedChannel> &channels, const QString &name,
                                       QString *error)
{
    const QString link = encodedUrl(documentUrl(name));
    const QString title = name.simplified();
    QList<FeedChannel> sameTitle;
    for (const FeedChannel &channel : channels) {
        if (channel.uri() == name || channel.link() == name || channel.link() == link)
            return channel;
        if (channel.title() == title)
            sameTitle.append(channel);
    }
    if (sameTitle.size() == 1)
        return sameTitle.first();

    *error = sameTitle.isEmpty()
        ? QStringLiteral("%1: no such channel; \"tidel channels\" lists them").arg(name)
        : QStringLiteral(
              "%1: %2 channels have this title; use the link of one, as \"tidel channels\" shows it")
              .arg(name, QString::number(sameTitle.size()));
    return std::nullopt;
}

std::optional<FeedChannel> chooseChannel(const FeedStore &store, const QString &name, Output &output)
{
    const QList<FeedChannel> channels = store.channels();
    if (!store.failure().isEmpty())
        return std::nullopt;
    QString error;
    const auto channel = findChannel(channels, name, &error);
    if (!channel)
        output.error(error);
    return channel;
}

QList<FeedChannel> chooseChannels(const FeedStore &store, const QStringList &names, Output &output)
{
    const QList<FeedChannel> channels = store.channels();
    if (!store.failure().isEmpty())
        return {};
    if (names.isEmpty() && channels.isEmpty())
        output.note(QStringLiteral("No channels yet; \"tidel subscribe FILE|URL\" adds one."));
    if (names.isEmpty())
        return channels;
    QList<FeedChannel> found;
    QSet<QString> uris;
    for (const QString &name : names) {
        QString error;
        const auto channel = findChannel(channels, name, &error);
        if (!channel) {
            output.error(error);
        } else if (!uris.contains(channel->uri())) {
            uris.insert(channel->uri());
            found.append(*channel);
        }
    }
    return found;
}

} // namespace Tidel
