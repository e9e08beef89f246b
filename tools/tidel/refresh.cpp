// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "downloads.h"
#include "duechannels.h"
#include "failures.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "searchable.h"

#include <feedplugininterface.h>

#include <TidelReader/downloadqueue.h>
#include <TidelReader/messages.h>
#include <TidelReader/usertext.h>

namespace Tidel {

namespace {

// The HTTP status of a document that was removed permanently.
constexpr int gone = 410;
const char *const goneAdvice =
    "; the feed is not asked for any more: \"tidel edit CHANNEL --link\" gives it another "
    "address, \"tidel refresh --force\" asks again, \"tidel unsubscribe\" deletes it";

/// Reports the new and changed messages of refreshed channels.
class RefreshReport
{
public:
    RefreshReport(const Store &store, bool isForOne, Output &output)
        : m_store(store), m_isForOne(isForOne), m_output(output), m_filler(store)
    {
    }

    /// Reports the result of the download of \a channel.
    void add(const FeedChannel &channel, const DownloadResult &result);
    /// Reports the failures, and the totals if there were several channels.
    void summarize() const;
    /// Adds the new messages to the index for searches.
    void addToIndex() { Tidel::addToIndex(m_store, m_filler); }

private:
    /// Reports the messages of \a result.
    void addMessages(const FeedChannel &channel, const DownloadResult &result);
    /// Reports the messages \a links, each with \a mark. \a known are their headlines, if they are known.
    void list(const FeedChannel &channel, const QStringList &links, const QString &mark,
              const QList<FeedMessage> &known = {});

    const Store &m_store;
    const bool m_isForOne; ///< One channel is refreshed.
    Output &m_output;
    int m_channels = 0;
    int m_newMessages = 0;
    int m_changedMessages = 0;
    Failures m_failures;
    SearchFiller m_filler;
};

void RefreshReport::add(const FeedChannel &channel, const DownloadResult &result)
{
    if (result.error() == FeedDownloadCanceled)
        return;
    ++m_channels;
    if (result.isOk()) {
        addMessages(channel, result);
        return;
    }
    const QString advice = result.error() == gone ? QString::fromLatin1(goneAdvice) : QString();
    m_failures.add(channel, result.reason() + advice);
}

void RefreshReport::addMessages(const FeedChannel &channel, const DownloadResult &result)
{
    const QStringList added = result.newMessages();
    const QStringList changed = result.changedMessages();
    m_newMessages += int(added.size());
    m_filler.add(int(added.size()));
    m_changedMessages += int(changed.size());
    m_output.warnings(channel.title(), result.newNotes());
    QJsonObject json = channelJson(channel);
    json.insert(QStringLiteral("new"), int(added.size()));
    json.insert(QStringLiteral("changed"), int(changed.size()));
    const QString news = countedNews(int(added.size()), int(changed.size()));
    if (m_isForOne || !added.isEmpty() || !changed.isEmpty())
        m_output.report(channel.title() + QLatin1String(": ") + news, json);
    else
        m_output.object(json);
    list(channel, added, QString(), result.headlines());
    list(channel, changed, QStringLiteral(" (changed)"));
}

void RefreshReport::list(const FeedChannel &channel, const QStringList &links, const QString &mark,
                         const QList<FeedMessage> &known)
{
    const Result<QList<FeedMessage>> messages =
        known.isEmpty() ? Messages(m_store).headlines(links) : Result<QList<FeedMessage>>(known);
    if (!messages) {
        m_output.failure(channel.title(), messages.error());
        return;
    }
    for (const FeedMessage &message : *messages) {
        QJsonObject json{{QStringLiteral("changed"), !mark.isEmpty()}};
        addText(json, "link", withoutPasswords(message.link()));
        addText(json, "title", message.title());
        addList(json, "channels", {channel.title()});
        addTime(json, "published", message.publishedDate());
        m_output.report(QStringLiteral("  %1  %2")
                            .arg(shownTime(message.publishedDate()), shownTitle(message.title()) + mark),
                        json);
    }
}

void RefreshReport::summarize() const
{
    const QString changes =
        m_changedMessages > 0 ? QStringLiteral(", %1 changed").arg(m_changedMessages) : QString();
    m_failures.report(m_output);
    const int failed = m_failures.count();
    const QString failures = failed > 0 ? QStringLiteral(", %1 failed").arg(failed) : QString();
    if (m_channels > 1)
        m_output.report(
            QStringLiteral("%1: %2%3%4")
                .arg(countedChannels(m_channels), countedNewMessages(m_newMessages), changes, failures),
            {});
}

void refresh(const Store &store, const Arguments &arguments, Output &output)
{
    const QList<FeedChannel> chosen =
        dueChannels(store, chooseChannels(store, arguments.names, output), arguments, output);
    FeedPluginInterface *plugin = chosen.isEmpty() ? nullptr : downloadPlugin(output);
    if (!plugin)
        return;

    RefreshReport report(store, chosen.size() == 1, output);
    DownloadQueue queue(*plugin);
    for (const FeedChannel &channel : chosen)
        queue.downloadFeed(channel.uri(),
                           [&report, channel](const DownloadResult &result) { report.add(channel, result); });
    showProgress(queue, "feeds", output);
    run(queue, output);
    report.summarize();
    report.addToIndex();
}

} // namespace

const Command refreshCommand = {
    "refresh",
    "[CHANNEL...] [--force]",
    "Download the feeds that are due, and store new messages. Lists the channels that have some.",
    someChannels,
    0,
    anyNumber,
    {{"force", nullptr, "Asks for feeds that are not due, too."}},
    {"tidel refresh", "tidel refresh \"Garden Notes\""},
    refresh};

} // namespace Tidel
