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

#include <QHash>
#include <QSparqlQuery>
#include <QSparqlResultRow>

#include <feedplugininterface.h>

namespace Tidel {

namespace {

// What a question about many messages costs grows faster than their number.
constexpr int messagesAtOnce = 100;
// A server's refusal is known by its status.
constexpr int goneForGood = 410;

/// The messages \a links in their order, with what is shown of them: title and date.
QList<FeedMessage> headlines(const FeedStore &store, const QStringList &links)
{
    const QList<QSparqlResultRow> rows =
        store.rows(QSparqlQuery(QStringLiteral("SELECT ?l ?title ?date WHERE { ") + valuesOf("l", links)
                                + QStringLiteral("?m nie:links ?l ; a mfo:FeedMessage ; nie:title ?title "
                                                 "OPTIONAL { ?m nie:contentCreated ?date } }")));
    QHash<QString, FeedMessage> found;
    for (const QSparqlResultRow &row : rows) {
        FeedMessage &message = found[row.value(0).toString()];
        message.setTitle(row.value(1).toString());
        message.setPublishedDate(row.value(2).toDateTime());
    }
    QList<FeedMessage> messages;
    for (const QString &link : links) {
        if (found.contains(link))
            messages.append(found.value(link));
    }
    return messages;
}

/// Tells what is new in each refreshed channel.
class RefreshReport
{
public:
    RefreshReport(const FeedStore &store, Output &output) : m_store(store), m_output(output) { }

    void tell(const FeedChannel &channel, const DownloadEnding &ending);
    void summarize() const;

private:
    void tellNews(const FeedChannel &channel, const QStringList &links);

    const FeedStore &m_store;
    Output &m_output;
    int m_channels = 0;
    int m_messages = 0;
    int m_failures = 0;
};

void RefreshReport::tell(const FeedChannel &channel, const DownloadEnding &ending)
{
    if (ending.error == FeedDownloadCanceled)
        return;
    ++m_channels;
    if (ending.isFine()) {
        tellNews(channel, ending.newMessages);
    } else {
        ++m_failures;
        const QString advice = ending.error == goneForGood ? QStringLiteral("; unsubscribe") : QString();
        m_output.error(QStringLiteral("%1 (%2): %3")
                           .arg(channel.title(), shownAddress(channel.link()), ending.reason + advice));
    }
}

void RefreshReport::tellNews(const FeedChannel &channel, const QStringList &links)
{
    m_messages += links.size();
    if (links.isEmpty()) {
        m_output.line(channel.title() + QLatin1String(": nothing new"));
        return;
    }
    m_output.line(QStringLiteral("%1: %2 new").arg(channel.title(), QString::number(links.size())));
    QList<FeedMessage> messages;
    for (int from = 0; from < links.size(); from += messagesAtOnce)
        messages += headlines(m_store, links.mid(from, messagesAtOnce));
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
    const QList<FeedChannel> chosen = chooseChannels(store, arguments.names, output);
    FeedPluginInterface *plugin = chosen.isEmpty() ? nullptr : downloadPlugin(output);
    if (!plugin)
        return;

    RefreshReport report(store, output);
    DownloadQueue queue(*plugin);
    for (const FeedChannel &channel : chosen)
        queue.add(methodCall("downloadFeeds", QStringList(channel.uri())),
                  [&report, channel](const DownloadEnding &ending) { report.tell(channel, ending); });
    QObject::connect(&queue, &DownloadQueue::advanced, &queue,
                     [&](int ended, int all) { output.progress(shownProgress(ended, all, "feeds")); });
    output.interrupted(queue.run());
    report.summarize();
}

} // namespace Tidel
