// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "downloads.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "searchable.h"

#include <QFile>

#include <feedplugininterface.h>

#include <TidelReader/channels.h>
#include <TidelReader/downloadqueue.h>
#include <TidelReader/folders.h>
#include <TidelReader/logins.h>
#include <TidelReader/opml.h>
#include <TidelReader/usertext.h>

namespace Tidel {

namespace {

/// The feeds in the file \a fileName. Reports what cannot be read to \a output.
QList<Subscription> readList(const QString &fileName, Output &output)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        output.error(QStringLiteral("%1: could not open the file: %2; check its name")
                         .arg(fileName, file.errorString()));
        return {};
    }
    const Result<Opml::Content> content = Opml::read(file.read(Opml::maximumSize + 1));
    if (!content) {
        output.failure(fileName, content.error(),
                       QStringLiteral("; nothing was imported, correct the file or export it again"));
        return {};
    }
    for (const QString &problem : content->problems)
        output.error(fileName + QLatin1String(": ") + problem);
    if (content->subscriptions.isEmpty())
        output.note(QStringLiteral("%1: the file lists no feeds").arg(fileName));
    return content->subscriptions;
}

void showPlan(const QList<Subscription> &missing, Output &output)
{
    for (const Subscription &subscription : missing) {
        const QString folder = Folders::path(subscription.folder);
        QJsonObject json;
        addText(json, "link", withoutPasswords(subscription.link.toString()));
        addText(json, "title", subscription.title);
        addText(json, "folder", folder);
        output.object(json);
        output.line(QStringLiteral("Would subscribe: %1 (%2)%3")
                        .arg(shownTitle(subscription.title), subscription.link.toString(),
                             folder.isEmpty() ? QString() : QLatin1String(" in ") + folder));
    }
}

/// Fills new channels with messages, and reports each.
class FirstRefresh
{
public:
    FirstRefresh(const Store &store, Output &output) : m_store(store), m_output(output), m_filler(store) { }

    void run(FeedPluginInterface &plugin, const QList<FeedChannel> &channels);
    int failures() const { return m_failures; }

private:
    void report(const FeedChannel &channel, const DownloadResult &result);

    const Store &m_store;
    Output &m_output;
    int m_failures = 0;
    SearchFiller m_filler;
};

void FirstRefresh::run(FeedPluginInterface &plugin, const QList<FeedChannel> &channels)
{
    DownloadQueue queue(plugin);
    for (const FeedChannel &channel : channels)
        queue.downloadFeed(channel.uri(),
                           [this, channel](const DownloadResult &result) { report(channel, result); });
    showProgress(queue, "feeds", m_output);
    Tidel::run(queue, m_output);
    addToIndex(m_store, m_filler);
}

void FirstRefresh::report(const FeedChannel &channel, const DownloadResult &result)
{
    if (result.error() == FeedDownloadCanceled)
        return;
    if (result.isOk()) {
        m_filler.add(int(result.newMessages().size()));
        // A channel without a given title has got one from its feed.
        const QString title = Channels(m_store).title(channel.link()).value_or(channel.title());
        const int count = int(result.newMessages().size());
        QJsonObject json = channelJson(channel);
        json.insert(QStringLiteral("title"), title);
        json.insert(QStringLiteral("new"), count);
        m_output.report(QStringLiteral("Subscribed: %1 (%2)").arg(title, countedMessages(count)), json);
        m_output.warnings(title, result.newNotes());
        return;
    }
    ++m_failures;
    m_output.error(QStringLiteral("%1 (%2): subscribed without messages: %3; \"tidel refresh\" tries again")
                       .arg(channel.title(), channel.link(), result.reason()),
                   channelJson(channel));
}

/// Returns \a subscriptions without the passwords of their links, which are kept apart. Reports to \a output
/// if one cannot be kept, and leaves its subscription out.
QList<Subscription> withPasswordsApart(QList<Subscription> subscriptions, Output &output)
{
    QList<Subscription> kept;
    for (Subscription &subscription : subscriptions) {
        const Result<QUrl> bare = Logins::takeApart(subscription.link.toUrl());
        if (!bare) {
            output.failure(subscription.link.toString(), bare.error());
            continue;
        }
        subscription.link = Link::fromText(Link::encoded(*bare));
        kept.append(subscription);
    }
    return kept;
}

void importChannels(const Store &store, const Arguments &arguments, Output &output)
{
    const QString fileName = arguments.names.first();
    const QList<Subscription> listed = readList(fileName, output);
    if (listed.isEmpty())
        return;
    Subscriptions subscriptions(store);
    const auto missing = subscriptions.missing(listed);
    if (!missing) {
        output.failure(fileName, missing.error());
        return;
    }
    const QString total = QStringLiteral("%1: %2, %3 already subscribed")
                              .arg(fileName, countedChannels(int(listed.size())))
                              .arg(listed.size() - missing->size());
    if (arguments.isSet("dry-run")) {
        showPlan(*missing, output);
        output.line(total);
        return;
    }
    const auto added = subscriptions.add(withPasswordsApart(*missing, output));
    if (!added) {
        output.failure(fileName, added.error(), QStringLiteral("; import the file again"));
        return;
    }
    FirstRefresh refresh(store, output);
    if (!added->isEmpty()) {
        if (FeedPluginInterface *plugin = downloadPlugin(output))
            refresh.run(*plugin, *added);
    }
    const QString failures =
        refresh.failures() > 0 ? QStringLiteral(", %1 without messages").arg(refresh.failures()) : QString();
    output.report(total + QStringLiteral(", %1 new%2").arg(added->size()).arg(failures), {});
}

} // namespace

const Command importCommand = {
    "import",
    "FILE [--dry-run]",
    "Subscribe to the feeds in an OPML file, with their titles and folders.",
    "An OPML file that another feed reader has exported. Channels that exist already stay as they are.",
    1,
    1,
    {{"dry-run", nullptr, "Shows what would be subscribed, and changes nothing."}},
    {"tidel import subscriptions.opml", "tidel import subscriptions.opml --dry-run"},
    importChannels};

} // namespace Tidel
