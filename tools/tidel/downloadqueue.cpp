// SPDX-License-Identifier: LGPL-2.1-or-later
#include "downloadqueue.h"

#include "interrupt.h"
#include "plugincall.h"

#include <QEventLoop>

#include <feedplugininterface.h>

#include <algorithm>
#include <optional>

namespace Tidel {

namespace {

constexpr size_t width = 8;

} // namespace

struct DownloadQueue::Job
{
    FeedMethod call;
    std::function<void(const DownloadEnding &)> heard;
    FeedPluginInterface *downloader = nullptr;
    std::optional<DownloadEnding> ending;
    qint64 received = 0;
};

DownloadQueue::DownloadQueue(FeedPluginInterface &plugin) : m_plugin(plugin) { }

DownloadQueue::~DownloadQueue() = default;

void DownloadQueue::add(const FeedMethod &call, const std::function<void(const DownloadEnding &)> &heard)
{
    Job job;
    job.call = call;
    job.heard = heard;
    m_jobs.push_back(job);
}

int DownloadQueue::run()
{
    Interrupt interruption;
    QEventLoop loop;
    m_loop = &loop;
    connect(&interruption, &Interrupt::received, this, &DownloadQueue::interrupt);
    Q_EMIT advanced(0, int(m_jobs.size()));
    while (m_downloaders.size() < std::min(width, m_jobs.size()))
        start(makeDownloader());
    if (m_ended < m_started)
        loop.exec();
    m_loop = nullptr;
    tell();
    return m_signal;
}

FeedPluginInterface *DownloadQueue::makeDownloader()
{
    m_downloaders.emplace_back(m_plugin.createDownloader(nullptr));
    FeedPluginInterface *downloader = m_downloaders.back().get();
    const auto fail = [=](int error) { end(downloader, {error, downloader->errorString(), {}, {}}); };
    connect(downloader, &FeedPluginInterface::downloadFeedsFinished, this, [=] {
        end(downloader, {0, {}, {}, downloader->property("newMessages").toStringList()});
    });
    connect(downloader, &FeedPluginInterface::downloadFeedsFailed, this, fail);
    connect(downloader, &FeedPluginInterface::downloadEnclosureFinished, this,
            [=](const QVariantMap &results) {
                end(downloader, {0, {}, results, {}});
            });
    connect(downloader, &FeedPluginInterface::downloadEnclosureFailed, this, fail);
    connect(downloader, &FeedPluginInterface::enclosureDownloadProgress, this,
            [=](qint64 received, qint64) { progress(downloader, received); });
    return downloader;
}

/// Gives \a downloader the next job, if there is one.
void DownloadQueue::start(FeedPluginInterface *downloader)
{
    if (m_signal != 0 || m_started == m_jobs.size())
        return;
    Job &job = m_jobs[m_started];
    ++m_started;
    job.downloader = downloader;
    if (invoke(*downloader, job.call))
        return;
    const QString reason =
        QStringLiteral("the plug-in has no \"%1\"").arg(QString::fromLatin1(job.call.name));
    QMetaObject::invokeMethod(
        this,
        [=] {
            end(downloader, {-1, reason, {}, {}});
        },
        Qt::QueuedConnection);
}

/// The job that \a downloader is at; null when there is none.
DownloadQueue::Job *DownloadQueue::jobOf(const FeedPluginInterface *downloader)
{
    const auto job = std::find_if(m_jobs.begin(), m_jobs.end(), [&](const Job &candidate) {
        return candidate.downloader == downloader && !candidate.ending;
    });
    return job == m_jobs.end() ? nullptr : &*job;
}

void DownloadQueue::progress(const FeedPluginInterface *downloader, qint64 received)
{
    Job *job = jobOf(downloader);
    if (!job)
        return;
    job->received = received;
    qint64 bytes = 0;
    for (const Job &each : m_jobs)
        bytes += each.received;
    Q_EMIT progressed(bytes);
}

void DownloadQueue::end(FeedPluginInterface *downloader, const DownloadEnding &ending)
{
    Job *job = jobOf(downloader);
    if (!job)
        return;
    job->ending = ending;
    ++m_ended;
    tell();
    Q_EMIT advanced(int(m_ended), int(m_jobs.size()));
    start(downloader);
    if (m_loop && m_ended == m_started)
        m_loop->quit();
}

/// Tells of those that have ended, up to the first that has not; after an interruption of all that have.
void DownloadQueue::tell()
{
    for (; m_told < m_jobs.size(); ++m_told) {
        const Job &job = m_jobs[m_told];
        if (job.ending)
            job.heard(*job.ending);
        else if (m_signal == 0 || m_loop)
            break;
    }
}

void DownloadQueue::interrupt(int signal)
{
    m_signal = signal;
    for (const auto &downloader : m_downloaders)
        downloader->cancel();
}

} // namespace Tidel
