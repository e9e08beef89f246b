// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "documenturl.h"
#include "feedfile.h"
#include "feedparser.h"
#include "feedstore.h"
#include "links.h"
#include "output.h"
#include "phrases.h"

#include <feedtrackersparql.h>

#include <QHash>

namespace Tidel {

namespace {

class Subscriber
{
public:
    Subscriber(FeedStore &store, const QStringList &arguments, Output &output);

    void subscribe(const QString &argument);

private:
    void store(const ParsedFeed &feed, const QString &argument);

    FeedStore &m_store;
    Output &m_output;
    QHash<QString, QString> m_titles; // of the subscribed channels, by their links
    QSet<QString> m_channelLinks; // theirs, and of those still to come
};

Subscriber::Subscriber(FeedStore &store, const QStringList &arguments, Output &output)
    : m_store(store), m_output(output)
{
    const QList<FeedChannel> channels = store.channels();
    for (const FeedChannel &channel : channels) {
        m_titles.insert(channel.link(), channel.title());
        m_channelLinks.insert(channel.link());
    }
    for (const QString &argument : arguments)
        m_channelLinks.insert(encodedUrl(documentUrl(argument)));
}

void Subscriber::subscribe(const QString &argument)
{
    const QUrl url = documentUrl(argument);
    if (m_titles.contains(encodedUrl(url))) {
        m_output.line(QStringLiteral("Already subscribed: %1 (\"tidel refresh\" reads what is new)")
                          .arg(m_titles.value(encodedUrl(url))));
        return;
    }
    QString error;
    const auto document = readDocument(url, &error);
    const auto feed = document ? ParsedFeed::parse(*document, url, &error) : std::nullopt;
    if (feed)
        store(*feed, argument);
    else
        m_output.error(argument + QLatin1String(": ") + error);
}

void Subscriber::store(const ParsedFeed &feed, const QString &argument)
{
    FeedChannel channel = feed.channel();
    const FeedEnclosure icon = channel.icon();
    // addChannel() would make the icon an enclosure of the URI that the channel does not have yet.
    channel.setIcon(FeedEnclosure());
    const QString uri = m_store.library().addChannel(channel);
    if (uri.isEmpty()) {
        m_output.error(argument + QLatin1String(": the store did not take the channel"));
        return;
    }
    m_titles.insert(channel.link(), channel.title());
    if (!icon.remoteUrl().isEmpty())
        m_store.library().addEnclosures({icon}, uri);

    const QList<FeedMessage> messages = feed.messages(m_channelLinks);
    if (messages.isEmpty() || m_store.addMessages(messages, uri)) {
        m_output.line(
            QStringLiteral("Subscribed: %1 (%2)").arg(channel.title(), countedMessages(messages.size())));
        return;
    }
    m_output.error(argument
                   + QLatin1String(": subscribed, but the store did not take its messages; "
                                   "\"tidel refresh\" tries again"));
}

} // namespace

void subscribe(FeedStore &store, const Arguments &arguments, Output &output)
{
    Subscriber subscriber(store, arguments.names, output);
    for (const QString &argument : arguments.names) {
        subscriber.subscribe(argument);
        store.collectGarbage();
    }
}

} // namespace Tidel
