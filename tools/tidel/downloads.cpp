// SPDX-License-Identifier: LGPL-2.1-or-later
#include "downloads.h"

#include "interrupt.h"
#include "output.h"
#include "phrases.h"

#include <QEventLoop>

#include <TidelReader/downloadqueue.h>
#include <TidelReader/pluginfinder.h>

namespace Tidel {

FeedPluginInterface *downloadPlugin(Output &output)
{
    QStringList problems;
    const Result<FeedPluginInterface *> plugin = findPlugin(pluginFolder(), &problems);
    for (const QString &problem : qAsConst(problems))
        output.note(QLatin1String("tidel: ") + problem);
    if (plugin)
        return *plugin;
    output.error(plugin.error().text() + QLatin1String("; install tidel again to get one"));
    return nullptr;
}

void run(DownloadQueue &queue, Output &output)
{
    Interrupt interruption;
    QEventLoop loop;
    QObject::connect(&interruption, &Interrupt::received, &queue, [&](int signal) {
        output.interrupted(signal);
        queue.cancel();
    });
    QObject::connect(&queue, &DownloadQueue::finished, &loop, &QEventLoop::quit);
    queue.start();
    loop.exec();
}

void showProgress(DownloadQueue &queue, const char *nouns, Output &output)
{
    QObject::connect(&queue, &DownloadQueue::advanced, &queue, [&output, nouns](int ended, int all) {
        output.progress(shownProgress(ended, all, nouns));
    });
}

} // namespace Tidel
