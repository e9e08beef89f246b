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
#include "sparqltext.h"

#include <QSparqlQuery>
#include <QSparqlResultRow>

#include <feedplugininterface.h>
#include <feedtrackersparql.h>

namespace Tidel {

namespace {

// What a question about many messages costs grows faster than their number.
constexpr int messagesAtOnce = 100;

QSet<QString> messageUris(const FeedStore &store, const FeedChannel &channel)
{
    const QStringList uris = store.library().allMessageUrls(channel.uri());
    return {uris.begin(), uris.end()};
}

/// The messages \a uris with what is shown of them: title and date.
QList<FeedMessage> headlines(const FeedStore &store, const QStringList &uris)
{
    const QList<QSparqlResultRow> rows = store.rows(
        QSparqlQuery(QStringLiteral("SELECT ?title ?date WHERE { ") + valuesOf("m", uris)
                     + QStringLiteral("?m nie:title ?title OPTIONAL { ?m nie:contentCreated ?date } }")));
    QList<FeedMessage> messages;
    for (const QSparqlResultRow &row : rows) {
        FeedMessage message;
        message.setTitle(row.value(0).toString());
        message.setPublishedDate(row.value(1).toDateTime());
        messages.append(message);
    }
    return messages;
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
    QStringList news;
    const QStringList uris = m_store.library().allMessageUrls(channel.uri());
    for (const QString &uri : uris) {
        if (!before.contains(uri))
            news.append(uri);
    }
    m_messages += news.size();
    if (news.isEmpty()) {
        m_output.line(channel.title() + QLatin1String(": nothing new"));
        return;
    }
    m_output.line(QStringLiteral("%1: %2 new").arg(channel.title(), QString::number(news.size())));
    QList<FeedMessage> messages;
    for (int from = 0; from < news.size(); from += messagesAtOnce)
        messages += headlines(m_store, news.mid(from, messagesAtOnce));
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
    const QList<FeedChannel> chosen = findChannels(channels, arguments.names, output);
    FeedPluginInterface *plugin = chosen.isEmpty() ? nullptr : downloadPlugin(output);
    if (!plugin)
        return;

    RefreshReport report(store, output);
    DownloadQueue queue(*plugin);
    for (const FeedChannel &channel : chosen) {
        const QSet<QString> before = messageUris(store, channel);
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
