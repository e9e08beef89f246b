// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "downloadqueue.h"
#include "feedstore.h"
#include "messageorder.h"
#include "output.h"
#include "phrases.h"
#include "plugincall.h"
#include "pluginfinder.h"

#include <feedplugininterface.h>
#include <feedtrackersparql.h>

namespace Tidel {

namespace {

QSet<QString> messageLinks(const FeedStore &store, const FeedChannel &channel)
{
    const QStringList links = store.library().messageLinksOfChannel(channel.uri());
    return {links.begin(), links.end()};
}

QList<FeedChannel> eachOnce(const QList<FeedChannel> &channels)
{
    QList<FeedChannel> once;
    QSet<QString> uris;
    for (const FeedChannel &channel : channels) {
        if (!uris.contains(channel.uri()))
            once.append(channel);
        uris.insert(channel.uri());
    }
    return once;
}

/// Tells what each refreshed channel has now that it did not have before.
class RefreshReport
{
public:
    RefreshReport(const FeedStore &store, Output &output) : m_store(store), m_output(output) { }

    void tell(const FeedChannel &channel, const QSet<QString> &before, const DownloadEnding &ending);
    void summarize() const;

private:
    void tellNews(const FeedChannel &channel, const QSet<QString> &before);

    const FeedStore &m_store;
    Output &m_output;
    int m_channels = 0;
    int m_messages = 0;
    int m_failures = 0;
};

void RefreshReport::tell(const FeedChannel &channel, const QSet<QString> &before,
                         const DownloadEnding &ending)
{
    if (ending.error == FeedDownloadCanceled)
        return;
    ++m_channels;
    if (ending.isFine()) {
        tellNews(channel, before);
    } else {
        ++m_failures;
        m_output.error(
            QStringLiteral("%1 (%2): %3").arg(channel.title(), shownAddress(channel.link()), ending.reason));
    }
}

void RefreshReport::tellNews(const FeedChannel &channel, const QSet<QString> &before)
{
    QSet<QString> news = messageLinks(m_store, channel) - before;
    m_messages += news.size();
    if (news.isEmpty()) {
        m_output.line(channel.title() + QLatin1String(": nothing new"));
        return;
    }
    m_output.line(QStringLiteral("%1: %2 new").arg(channel.title(), QString::number(news.size())));
    QList<FeedMessage> messages;
    const QList<FeedMessage> stored = m_store.library().messagesForChannel(channel.uri());
    for (const FeedMessage &message : stored) {
        if (news.remove(message.link()))
            messages.append(message);
    }
    sortNewestFirst(messages);
    for (const FeedMessage &message : qAsConst(messages))
        m_output.line(
            QStringLiteral("  %1  %2").arg(shownTime(message.publishedDate()), shownTitle(message.title())));
}

void RefreshReport::summarize() const
{
    const QString failures = m_failures > 0 ? QStringLiteral(", %1 failed").arg(m_failures) : QString();
    if (m_channels > 1)
        m_output.line(QStringLiteral("%1: %2%3")
                          .arg(countedChannels(m_channels), countedNewMessages(m_messages), failures));
}

} // namespace

void refresh(FeedStore &store, const Arguments &arguments, Output &output)
{
    const QList<FeedChannel> channels = store.channels();
    if (channels.isEmpty() && arguments.names.isEmpty())
        output.note(noChannelsHint());
    const QList<FeedChannel> chosen = eachOnce(findChannels(channels, arguments.names, output));
    FeedPluginInterface *plugin = chosen.isEmpty() ? nullptr : downloadPlugin(output);
    if (!plugin)
        return;

    RefreshReport report(store, output);
    DownloadQueue queue(*plugin);
    for (const FeedChannel &channel : chosen) {
        const QSet<QString> before = messageLinks(store, channel);
        queue.add(methodCall("downloadFeeds", QStringList(channel.uri())),
                  [&report, channel, before](const DownloadEnding &ending) {
                      report.tell(channel, before, ending);
                  });
    }
    QObject::connect(&queue, &DownloadQueue::advanced, &queue,
                     [&](int ended, int all) { output.progress(shownProgress(ended, all, "feeds")); });
    output.interrupted(queue.run());
    report.summarize();
}

} // namespace Tidel
