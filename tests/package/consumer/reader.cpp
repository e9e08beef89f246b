// SPDX-License-Identifier: LGPL-2.1-or-later
// usage: reader FEED
// A whole feed reader: subscribes to a feed and lists its messages. It reports what fails, and then
// returns 1.
#include <TidelReader/channels.h>
#include <TidelReader/documenturl.h>
#include <TidelReader/downloadqueue.h>
#include <TidelReader/messages.h>
#include <TidelReader/pluginfinder.h>

#include <feedplugininterface.h>

#include <QCoreApplication>
#include <QTextStream>

using namespace Tidel;

namespace {

QTextStream out(stdout);

int fail(const QString &subject, const QString &reason)
{
    QTextStream(stderr) << "reader: " << subject << ": " << reason << '\n';
    return 1;
}

int list(const Store &store)
{
    const Result<QList<FeedChannel>> channels = Channels(store).all();
    if (!channels)
        return fail("channels", channels.error().text());
    for (const FeedChannel &channel : *channels) {
        out << channel.title() << '\n';
        const Result<QList<FeedMessage>> messages = Messages(store).ofChannel(channel.uri());
        if (!messages)
            return fail(channel.title(), messages.error().text());
        for (const FeedMessage &message : *messages)
            out << "  " << message.title() << '\n';
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QString address = QCoreApplication::arguments().value(1);

    const Result<Store> store = Store::open();
    if (!store)
        return fail("store", store.error().text());
    const Result<FeedPluginInterface *> plugin = findPlugin(pluginFolder());
    if (!plugin)
        return fail("plug-in", plugin.error().text());

    int failures = 0;
    DownloadQueue queue(**plugin);
    queue.subscribe(documentUrl(address), [&](const DownloadResult &result) {
        if (!result.isOk())
            failures += fail(address, result.reason());
    });
    QObject::connect(&queue, &DownloadQueue::finished, &application, &QCoreApplication::quit);
    queue.start();
    QCoreApplication::exec();
    return list(*store) + failures > 0 ? 1 : 0;
}
