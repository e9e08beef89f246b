// SPDX-License-Identifier: LGPL-2.1-or-later
#include "runningdownloads_p.h"

#include <feedplugininterface.h>

#include <TidelReader/pluginfinder.h>
#include <TidelReader/search.h>

#include <QThread>

#include <limits>

namespace Tidel {

namespace {

void fail(const RunningDownloads::Receiver &receiver, const Error &error)
{
    const int code = error.kind() == Error::PluginUnusable ? FeedDownloadNotFound : FeedDownloadStoreFailed;
    receiver->add({QString(), DownloadResult::failed(code, error.text())});
    receiver->finish();
}

} // namespace

void RunningDownloads::start(const Result<Store> &store, const Receiver &receiver, const Filling &fill,
                             Progress progress)
{
    if (receiver->isCanceled()) {
        receiver->finish();
        return;
    }
    const Result<FeedPluginInterface *> plugin =
        store ? findPlugin(pluginFolder()) : Result<FeedPluginInterface *>(Failure(store.error()));
    if (!plugin) {
        fail(receiver, plugin.error());
        return;
    }
    auto *downloads = new RunningDownloads(*store, receiver, **plugin);
    const Result<void> filled = fill(*store, downloads->m_queue, [downloads](const QString &subject) {
        return downloads->handlerOf(subject);
    });
    if (filled) {
        downloads->report(progress);
        downloads->m_queue.start();
        return;
    }
    delete downloads;
    fail(receiver, filled.error());
}

RunningDownloads::RunningDownloads(const Store &store, const Receiver &receiver, FeedPluginInterface &plugin)
    : m_store(store), m_receiver(receiver), m_filler(store), m_queue(plugin)
{
    connect(QThread::currentThread(), &QThread::finished, this, [this] { delete this; });
    connect(&m_watcher, &QFutureWatcher<ArchiveDownload>::canceled, &m_queue, &DownloadQueue::cancel);
    connect(&m_queue, &DownloadQueue::finished, this, &RunningDownloads::finish);
    m_watcher.setFuture(receiver->future());
}

void RunningDownloads::report(Progress progress)
{
    const auto kibibytes = [](qint64 bytes) {
        return int(qBound(qint64(0), bytes / 1024, qint64(std::numeric_limits<int>::max())));
    };
    if (progress == Ends)
        connect(&m_queue, &DownloadQueue::advanced, this,
                [this](int ended, int all) { m_receiver->setProgress(ended, all); });
    else
        connect(&m_queue, &DownloadQueue::progressed, this, [this, kibibytes](qint64 received, qint64 total) {
            m_receiver->setProgress(kibibytes(received), kibibytes(total));
        });
}

DownloadQueue::Handler RunningDownloads::handlerOf(const QString &subject)
{
    return [this, subject](const DownloadResult &result) {
        m_filler.add(int(result.newMessages().size()));
        m_receiver->add({subject, result});
    };
}

void RunningDownloads::finish()
{
    // What cannot be added to the index is added by the next search, which says so if it cannot.
    const int left = m_filler.finish();
    if (left > 0)
        static_cast<void>(Search(m_store).addNewMessages(left));
    m_receiver->finish();
    deleteLater();
}

} // namespace Tidel
