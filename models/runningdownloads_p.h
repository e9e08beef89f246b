// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RUNNINGDOWNLOADS_P_H
#define TIDEL_RUNNINGDOWNLOADS_P_H

#include "archivedownload.h"
#include "promise.h"

#include <TidelReader/downloadqueue.h>
#include <TidelReader/searchfiller.h>
#include <TidelReader/store.h>

#include <QFutureWatcher>
#include <QObject>

#include <memory>

namespace Tidel {

/**
 * Downloads in the thread in which it was made. Deletes itself when all have ended, or with the thread.
 */
class RunningDownloads : public QObject
{
public:
    using Receiver = std::shared_ptr<Promise<ArchiveDownload>>;
    /// Adds downloads to a queue. The function gives the handler of the download of a subject.
    using Handlers = std::function<DownloadQueue::Handler(const QString &subject)>;
    using Filling = std::function<Result<void>(const Store &, DownloadQueue &, const Handlers &)>;

    /// What the progress of the receiver counts.
    enum Progress {
        Ends, ///< The downloads that have ended.
        Kibibytes ///< What has come of the enclosures that have begun.
    };

    /// Starts the downloads that \a fill adds, and gives the results and \a progress to \a receiver. If
    /// nothing can be downloaded, the only result has no subject and says why.
    static void start(const Result<Store> &store, const Receiver &receiver, const Filling &fill,
                      Progress progress);

private:
    RunningDownloads(const Store &store, const Receiver &receiver, FeedPluginInterface &plugin);
    DownloadQueue::Handler handlerOf(const QString &subject);
    void report(Progress progress);
    void finish();

    const Store m_store;
    const Receiver m_receiver;
    SearchFiller m_filler;
    QFutureWatcher<ArchiveDownload> m_watcher; // hears that the receiver cancels
    DownloadQueue m_queue;
};

} // namespace Tidel

#endif
