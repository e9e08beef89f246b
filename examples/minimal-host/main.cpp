// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: minimal-host [ADDRESS...]
// A whole feed reader: refreshes the channels, subscribes to the feeds at ADDRESS, and lists all messages.
#include <TidelReader/channels.h>
#include <TidelReader/documenturl.h>
#include <TidelReader/downloadqueue.h>
#include <TidelReader/messages.h>
#include <TidelReader/pluginfinder.h>

#include <QCoreApplication>
#include <QTextStream>

using namespace Tidel;

namespace {

bool hasFailed = false;

void fail(const QString &subject, const QString &reason)
{
    QTextStream(stderr) << "minimal-host: " << subject << ": " << reason << '\n';
    hasFailed = true;
}

/// A handler of a download for \a subject.
DownloadQueue::Handler report(const QString &subject)
{
    return [subject](const DownloadResult &result) {
        if (!result.isOk())
            fail(subject, result.reason());
    };
}

void download(FeedPluginInterface &plugin, const QList<FeedChannel> &channels, const QStringList &addresses)
{
    DownloadQueue queue(plugin);
    for (const FeedChannel &channel : channels)
        queue.downloadFeed(channel.uri(), report(channel.title()));
    for (const QString &address : addresses)
        queue.subscribe(documentUrl(address), report(address));
    QObject::connect(&queue, &DownloadQueue::finished, qApp, &QCoreApplication::quit);
    queue.start();
    QCoreApplication::exec();
}

void list(const Store &store, const FeedChannel &channel)
{
    QTextStream out(stdout);
    out << channel.title() << '\n';
    const Result<QList<FeedMessage>> messages = Messages(store).ofChannel(channel.uri());
    if (!messages)
        return fail(channel.title(), messages.error().text());
    for (const FeedMessage &message : *messages)
        out << "  " << message.title() << '\n';
}

/// Reads the channels of \a store. The list is empty after a failure, which is reported.
QList<FeedChannel> channelsOf(const Store &store)
{
    const Result<QList<FeedChannel>> channels = Channels(store).all();
    if (!channels)
        fail(QStringLiteral("channels"), channels.error().text());
    return channels.value_or(QList<FeedChannel>());
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    // Without a logger, the traces of the libraries would go to standard error.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    const Result<Store> store = Store::open();
    const Result<FeedPluginInterface *> plugin = findPlugin(pluginFolder());
    if (!store)
        fail(QStringLiteral("store"), store.error().text());
    else if (!plugin)
        fail(QStringLiteral("plug-in"), plugin.error().text());
    if (hasFailed)
        return 1;

    download(**plugin, channelsOf(*store), QCoreApplication::arguments().mid(1));
    const QList<FeedChannel> channels = channelsOf(*store);
    for (const FeedChannel &channel : channels)
        list(*store, channel);
    return hasFailed ? 1 : 0;
}
