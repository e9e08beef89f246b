// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fileprogress.h"

#include "output.h"
#include "phrases.h"

#include <TidelReader/downloadqueue.h>

#include <memory>

namespace Tidel {

namespace {

struct Progress
{
    int ended = 0;
    int all = 0;
    qint64 received = 0;
    qint64 total = 0; ///< -1 if it is unknown.
};

QString shown(const Progress &progress)
{
    const QString files = shownProgress(progress.ended, progress.all, "files") + QLatin1String(", ");
    if (progress.total <= 0)
        return files + shownSize(progress.received);
    return files
        + QStringLiteral("%1 of %2, %3 %")
              .arg(shownSize(progress.received), shownSize(progress.total),
                   QString::number(progress.received * 100 / progress.total));
}

} // namespace

void showFileProgress(DownloadQueue &queue, Output &output)
{
    const auto progress = std::make_shared<Progress>();
    QObject::connect(&queue, &DownloadQueue::advanced, &queue, [progress, &output](int ended, int all) {
        progress->ended = ended;
        progress->all = all;
        output.progress(shown(*progress));
    });
    QObject::connect(&queue, &DownloadQueue::progressed, &queue,
                     [progress, &output](qint64 received, qint64 total) {
                         progress->received = received;
                         progress->total = total;
                         output.progress(shown(*progress));
                     });
}

} // namespace Tidel
