// SPDX-License-Identifier: LGPL-2.1-or-later
#include "downloadqueue.h"

#include <feedplugininterface.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace Tidel {

namespace {

// More do not make a usual connection faster, and servers of many feeds count connections.
constexpr size_t width = 8;

struct Job
{
    std::function<void(FeedPluginInterface &)> begin;
    DownloadQueue::Handler handler;
    FeedPluginInterface *downloader = nullptr;
    std::optional<DownloadResult> result;
    qint64 received = 0;
    qint64 total = 0; ///< -1 if it is unknown.
};

} // namespace

class DownloadQueuePrivate
{
public:
    DownloadQueuePrivate(DownloadQueue *queue, FeedPluginInterface &thePlugin) : q(queue), plugin(thePlugin)
    {
    }

    void add(const std::function<void(FeedPluginInterface &)> &begin, const DownloadQueue::Handler &handler);
    void makeDownloader();
    void startNext(FeedPluginInterface *downloader);
    Job *jobOf(const FeedPluginInterface *downloader);
    void progress(const FeedPluginInterface *downloader, qint64 newlyReceived, qint64 newTotal);
    void setSizes(Job &job, qint64 newlyReceived, qint64 newTotal);
    void end(FeedPluginInterface *downloader, const DownloadResult &result);
    void report();
    void finishWhenDone();

    DownloadQueue *const q;
    FeedPluginInterface &plugin;
    std::vector<Job> jobs;
    size_t started = 0;
    size_t ended = 0;
    size_t reported = 0;
    qint64 received = 0; // by all jobs, as the next
    qint64 total = 0; // of the known sizes
    int unknownSizes = 0;
    bool isCanceled = false;
    bool isFinished = false;
    std::vector<std::unique_ptr<FeedPluginInterface>> downloaders;
};

void DownloadQueuePrivate::add(const std::function<void(FeedPluginInterface &)> &begin,
                               const DownloadQueue::Handler &handler)
{
    Job job;
    job.begin = begin;
    job.handler = handler;
    jobs.push_back(job);
}

void DownloadQueuePrivate::makeDownloader()
{
    downloaders.emplace_back(plugin.createDownloader(nullptr));
    FeedPluginInterface *downloader = downloaders.back().get();
    const auto failure = [downloader](int error) {
        return DownloadResult::failed(error, downloader->errorString());
    };
    const auto endFeeds = [this, downloader](const DownloadResult &result) {
        end(downloader, result.withFoundFeeds(downloader->property("foundFeeds").toList()));
    };
    QObject::connect(downloader, &FeedPluginInterface::downloadFeedsFinished, q, [downloader, endFeeds] {
        const auto texts = [downloader](const char *name) {
            return downloader->property(name).toStringList();
        };
        endFeeds(DownloadResult::ofFeeds(texts("newMessages"), texts("changedMessages"), texts("newNotes"))
                     .withHeadlines(downloader->property("headlines").toList()));
    });
    QObject::connect(downloader, &FeedPluginInterface::downloadFeedsFailed, q,
                     [failure, endFeeds](int error) { endFeeds(failure(error)); });
    QObject::connect(
        downloader, &FeedPluginInterface::downloadEnclosureFinished, q,
        [this, downloader](const QVariantMap &map) { end(downloader, DownloadResult::ofEnclosure(map)); });
    QObject::connect(downloader, &FeedPluginInterface::downloadEnclosureFailed, q,
                     [this, downloader, failure](int error) { end(downloader, failure(error)); });
    QObject::connect(downloader, &FeedPluginInterface::enclosureDownloadProgress, q,
                     [this, downloader](qint64 bytes, qint64 size) { progress(downloader, bytes, size); });
    startNext(downloader);
}

void DownloadQueuePrivate::startNext(FeedPluginInterface *downloader)
{
    if (isCanceled || started == jobs.size())
        return;
    Job &job = jobs[started];
    ++started;
    job.downloader = downloader;
    job.begin(*downloader);
}

/// The job that \a downloader works on; null if there is none.
Job *DownloadQueuePrivate::jobOf(const FeedPluginInterface *downloader)
{
    const auto first = jobs.begin() + std::ptrdiff_t(reported);
    const auto job = std::find_if(first, jobs.end(), [&](const Job &candidate) {
        return candidate.downloader == downloader && !candidate.result;
    });
    return job == jobs.end() ? nullptr : &*job;
}

void DownloadQueuePrivate::progress(const FeedPluginInterface *downloader, qint64 newlyReceived,
                                    qint64 newTotal)
{
    Job *job = jobOf(downloader);
    if (!job)
        return;
    setSizes(*job, newlyReceived, newTotal);
    Q_EMIT q->progressed(received, unknownSizes > 0 ? -1 : total);
}

void DownloadQueuePrivate::setSizes(Job &job, qint64 newlyReceived, qint64 newTotal)
{
    received += newlyReceived - job.received;
    total += qMax(newTotal, qint64(0)) - qMax(job.total, qint64(0));
    unknownSizes += int(newTotal < 0) - int(job.total < 0);
    job.received = newlyReceived;
    job.total = newTotal;
}

void DownloadQueuePrivate::end(FeedPluginInterface *downloader, const DownloadResult &result)
{
    Job *job = jobOf(downloader);
    if (!job)
        return;
    job->result = result;
    // Nothing more comes, whatever was announced.
    setSizes(*job, job->received, job->received);
    ++ended;
    report();
    Q_EMIT q->advanced(int(ended), int(jobs.size()));
    startNext(downloader);
    finishWhenDone();
}

/// Calls the handlers of the jobs that have ended, in their order. Stops at a job that is still under way. A
/// job that was never started because of cancel() is left out.
void DownloadQueuePrivate::report()
{
    for (; reported < started && jobs[reported].result; ++reported) {
        Job &job = jobs[reported];
        // The results of thousands of feeds would take much memory.
        job.downloader = nullptr;
        const DownloadQueue::Handler handler = std::exchange(job.handler, nullptr);
        const DownloadResult result = *std::exchange(job.result, std::nullopt);
        handler(result);
    }
}

void DownloadQueuePrivate::finishWhenDone()
{
    const bool isDone = ended == started && (isCanceled || started == jobs.size());
    if (!isDone || isFinished)
        return;
    isFinished = true;
    QMetaObject::invokeMethod(q, &DownloadQueue::finished, Qt::QueuedConnection);
}

DownloadQueue::DownloadQueue(FeedPluginInterface &plugin, QObject *parent)
    : QObject(parent), d(std::make_unique<DownloadQueuePrivate>(this, plugin))
{
}

DownloadQueue::~DownloadQueue() = default;

void DownloadQueue::subscribe(const QUrl &address, const Handler &handler)
{
    d->add([address](FeedPluginInterface &downloader) { downloader.subscribe(address); }, handler);
}

void DownloadQueue::downloadFeed(const QString &channelUri, const Handler &handler)
{
    d->add([channelUri](FeedPluginInterface &downloader) { downloader.downloadFeeds({channelUri}); },
           handler);
}

void DownloadQueue::downloadEnclosure(const QString &enclosureUri, const QString &folder,
                                      const Handler &handler)
{
    const auto begin = [enclosureUri, folder](FeedPluginInterface &downloader) {
        downloader.downloadEnclosure(enclosureUri, folder);
    };
    d->add(begin, handler);
}

void DownloadQueue::start()
{
    Q_EMIT advanced(0, int(d->jobs.size()));
    while (d->downloaders.size() < std::min(width, d->jobs.size()))
        d->makeDownloader();
    d->finishWhenDone();
}

void DownloadQueue::cancel()
{
    d->isCanceled = true;
    for (const auto &downloader : d->downloaders)
        downloader->cancel();
}

} // namespace Tidel
