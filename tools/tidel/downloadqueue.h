// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOADQUEUE_H
#define TIDEL_DOWNLOADQUEUE_H

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <feedmethod.h>

#include <functional>
#include <memory>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QEventLoop)
class FeedPluginInterface;

namespace Tidel {

/// How a download ended, as a plug-in tells it.
struct DownloadEnding
{
    int error = 0; ///< a FeedDownloadError or an HTTP status
    QString reason;
    QVariantMap results; ///< of an enclosure
    QStringList newMessages; ///< the links of those that a feed brought

    bool isFine() const { return error == 0; }
};

/// Downloads that run several at a time, and are heard of in the order in which they were added.
class DownloadQueue : public QObject
{
    Q_OBJECT

public:
    /// Downloads with the help of \a plugin.
    explicit DownloadQueue(FeedPluginInterface &plugin);
    ~DownloadQueue() override;

    /// Adds what \a call asks of a downloader. \a heard is called when it and all before it have ended.
    void add(const FeedMethod &call, const std::function<void(const DownloadEnding &)> &heard);

    /// Runs until all have ended. SIGINT and SIGTERM cancel what is under way and leave out the rest; the
    /// signal's number is then returned, else 0.
    int run();

Q_SIGNALS:
    /// \a ended of \a all downloads have ended, none when they begin.
    void advanced(int ended, int all);
    /// So many bytes of enclosures have come, of all downloads together.
    void progressed(qint64 bytesReceived);

private:
    struct Job;

    void start(FeedPluginInterface *downloader);
    void end(FeedPluginInterface *downloader, const DownloadEnding &ending);
    Job *jobOf(const FeedPluginInterface *downloader);
    void progress(const FeedPluginInterface *downloader, qint64 received);
    void tell();
    void interrupt(int signal);
    FeedPluginInterface *makeDownloader();

    FeedPluginInterface &m_plugin;
    std::vector<Job> m_jobs;
    size_t m_started = 0;
    size_t m_ended = 0;
    size_t m_told = 0;
    int m_signal = 0;
    QEventLoop *m_loop = nullptr;
    std::vector<std::unique_ptr<FeedPluginInterface>> m_downloaders;
};

} // namespace Tidel

#endif
