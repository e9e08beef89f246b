// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "droppedlinks.h"
#include "feedfile.h"
#include "feedparser.h"
#include "feedstore.h"
#include "output.h"
#include "phrases.h"

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

class Refresher
{
public:
    Refresher(FeedStore &store, const QList<FeedChannel> &channels, Output &output);

    void refresh(const FeedChannel &channel);

private:
    void storeNew(const FeedChannel &channel, const QList<FeedMessage> &messages);
    void fail(const FeedChannel &channel, const QString &reason);

    FeedStore &m_store;
    Output &m_output;
    QSet<QString> m_channelLinks;
};

Refresher::Refresher(FeedStore &store, const QList<FeedChannel> &channels, Output &output)
    : m_store(store), m_output(output)
{
    for (const FeedChannel &channel : channels)
        m_channelLinks.insert(channel.link());
}

void Refresher::refresh(const FeedChannel &channel)
{
    const QUrl url(channel.link());
    QString error;
    const auto document = readDocument(url, &error);
    const auto feed = document ? ParsedFeed::parse(*document, url, &error) : std::nullopt;
    if (!feed) {
        fail(channel, error);
        return;
    }
    const QStringList stored = m_store.library().messageLinksOfChannel(channel.uri());
    const QSet<QString> dropped = droppedLinks(m_store, channel.uri());
    const QSet<QString> known = QSet<QString>(stored.begin(), stored.end()) + dropped;
    storeNew(channel, feed->messages(m_channelLinks, known));
    if (!dropped.isEmpty())
        forgetDropped(m_store, channel.uri(), (dropped - feed->links(m_channelLinks)).values());
}

void Refresher::storeNew(const FeedChannel &channel, const QList<FeedMessage> &messages)
{
    if (messages.isEmpty()) {
        m_output.line(channel.title() + QLatin1String(": nothing new"));
        return;
    }
    if (!m_store.addMessages(messages, channel.uri())) {
        fail(channel, QStringLiteral("the store did not take the new messages; refresh again to try again"));
        return;
    }
    m_output.line(QStringLiteral("%1: %2 new").arg(channel.title(), QString::number(messages.size())));
    for (const FeedMessage &message : messages)
        m_output.line(
            QStringLiteral("  %1  %2").arg(shownTime(message.publishedDate()), shownTitle(message.title())));
}

void Refresher::fail(const FeedChannel &channel, const QString &reason)
{
    m_output.error(QStringLiteral("%1 (%2): %3").arg(channel.title(), channel.link(), reason));
}

} // namespace

void refresh(FeedStore &store, const Arguments &arguments, Output &output)
{
    const QList<FeedChannel> channels = store.channels();
    if (channels.isEmpty() && arguments.names.isEmpty())
        output.note(noChannelsHint());
    Refresher refresher(store, channels, output);
    const QList<FeedChannel> chosen = findChannels(channels, arguments.names, output);
    for (const FeedChannel &channel : chosen) {
        refresher.refresh(channel);
        store.collectGarbage();
    }
}

} // namespace Tidel
