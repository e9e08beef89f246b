// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "downloads.h"
#include "feedchoice.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"
#include "searchable.h"

#include <QFileInfo>
#include <QHash>

#include <feedplugininterface.h>

#include <TidelReader/channels.h>
#include <TidelReader/documenturl.h>
#include <TidelReader/downloadqueue.h>
#include <TidelReader/link.h>
#include <TidelReader/logins.h>
#include <TidelReader/usertext.h>

#include <vector>

namespace Tidel {

namespace {

/// Returns advice if \a argument may be a web address without a scheme, which is read as the path of a file.
QString schemeAdvice(const QString &argument)
{
    const bool mayLackScheme = documentUrl(argument).isLocalFile() && !QFileInfo::exists(argument)
        && !argument.startsWith(QLatin1Char('/'))
        && !argument.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
    return mayLackScheme ? QStringLiteral("; web addresses begin with https:// or http://") : QString();
}

/// Writes \a text with the title of the channel with the link \a address, which has \a count new messages.
void reportChannel(const Store &store, const QUrl &address, const QString &text, int count, Output &output)
{
    const Result<QString> title = Channels(store).title(Link::encoded(address));
    QJsonObject json{{QStringLiteral("new"), count}};
    addText(json, "link", withoutPasswords(Link::encoded(address)));
    addText(json, "title", title.value_or(QString()));
    if (title)
        output.report(text.arg(shownTitle(*title)), json);
    else
        output.failure(Link::encoded(address), title.error());
}

/// The address of the channel that a subscription to \a address has led to.
QUrl channelAddress(const QUrl &address, const DownloadResult &result)
{
    const QVector<FoundFeed> found = result.foundFeeds();
    return found.isEmpty() ? address : found.first().address;
}

void reportNew(const Store &store, const QString &argument, const QUrl &address, const DownloadResult &result,
               Output &output)
{
    const int count = int(result.newMessages().size());
    reportChannel(store, address,
                  QStringLiteral("Subscribed: %1 (") + countedMessages(count) + QLatin1Char(')'), count,
                  output);
    output.warnings(argument, result.newNotes());
}

void report(const Store &store, const QString &argument, const DownloadResult &result, Output &output)
{
    const QUrl address = channelAddress(documentUrl(argument), result);
    if (result.isOk())
        reportNew(store, argument, address, result, output);
    else if (result.error() == FeedDownloadAlreadyStored)
        reportChannel(store, address,
                      QStringLiteral("Already subscribed: %1 (\"tidel refresh\" downloads new messages)"), 0,
                      output);
    else if (result.error() != FeedDownloadCanceled)
        output.error(argument + QLatin1String(": ") + result.reason() + schemeAdvice(argument),
                     {{QStringLiteral("link"), withoutPasswords(argument)}});
}

/// A web page with several feeds.
struct Page
{
    QString argument;
    DownloadResult result;
};

/// The passwords of addresses that are subscribed to. They are kept apart from the addresses.
class Passwords
{
public:
    /// Returns \a arguments without their passwords. An address that a channel has stays as it is. Reports to
    /// \a output if a password cannot be kept, and leaves its address out.
    QStringList takenFrom(const QStringList &arguments, const Store &store, Output &output);
    /// Gives the server of \a address the password that it had before, because the new one did not work.
    void restore(const QString &address) const
    {
        static_cast<void>(Logins::restore(m_trials.value(address)));
    }

private:
    QHash<QString, Logins::Trial> m_trials; // By the addresses without passwords.
};

/// Subscribes to the feeds at \a addresses, and reports each result, except those that it adds to \a pages.
void subscribeTo(const Store &store, FeedPluginInterface &plugin, const QStringList &addresses,
                 const Passwords &passwords, Output &output, std::vector<Page> *pages = nullptr)
{
    DownloadQueue queue(plugin);
    SearchFiller filler(store);
    for (const QString &address : addresses)
        queue.subscribe(documentUrl(address), [&, address](const DownloadResult &result) {
            filler.add(int(result.newMessages().size()));
            if (pages && result.foundFeeds().size() > 1)
                pages->push_back({address, result});
            else
                report(store, address, result, output);
            if (!result.isOk() && result.error() != FeedDownloadAlreadyStored
                && result.foundFeeds().isEmpty())
                passwords.restore(address);
        });
    showProgress(queue, "feeds", output);
    run(queue, output);
    addToIndex(store, filler);
}

QStringList Passwords::takenFrom(const QStringList &arguments, const Store &store, Output &output)
{
    QStringList addresses;
    for (const QString &argument : arguments) {
        const QUrl address = documentUrl(argument);
        const bool isKnown = !Channels(store).uri(Link::encoded(address)).value_or(QString()).isEmpty();
        if (address.password().isEmpty() || isKnown) {
            addresses.append(argument);
            continue;
        }
        const Result<Logins::Trial> trial = Logins::tryOut(address);
        if (!trial) {
            output.failure(argument, trial.error());
            continue;
        }
        addresses.append(Link::encoded(trial->address));
        m_trials.insert(addresses.constLast(), *trial);
    }
    return addresses;
}

QString misuseOfSubscribe(const Arguments &arguments)
{
    if (!arguments.isSet("feed"))
        return QString();
    if (arguments.value("feed").toInt() < 1)
        return QStringLiteral("--feed needs the number of a feed, 1 or more");
    if (arguments.isSet("all") || arguments.names.size() > 1)
        return QStringLiteral("--feed is for one address, without --all");
    return QString();
}

void subscribe(const Store &store, const Arguments &arguments, Output &output)
{
    FeedPluginInterface *plugin = downloadPlugin(output);
    if (!plugin)
        return;
    std::vector<Page> pages;
    Passwords passwords;
    subscribeTo(store, *plugin, passwords.takenFrom(arguments.names, store, output), passwords, output,
                &pages);
    QStringList chosen;
    for (const Page &page : pages) {
        if (output.signal() != 0)
            return;
        const auto feeds = chosenFeeds(page.argument, page.result, arguments, output);
        for (const FoundFeed &feed : feeds)
            chosen.append(Link::encoded(feed.address));
    }
    if (!chosen.isEmpty())
        subscribeTo(store, *plugin, chosen, passwords, output);
}

} // namespace

const Command subscribeCommand = {
    "subscribe",
    "FILE|URL... [--feed N | --all]",
    "Subscribe to RSS, Atom, RDF or JSON feeds, or to those of web pages.",
    "The http, https or file URLs of feeds or web pages, or paths of files.",
    1,
    anyNumber,
    {{"feed", "N", "The feed of this number, if a web page has several."},
     {"all", nullptr, "All feeds, if a web page has several."}},
    {"tidel subscribe https://example.org/feed.xml", "tidel subscribe https://example.org/ --all"},
    subscribe,
    misuseOfSubscribe};

} // namespace Tidel
