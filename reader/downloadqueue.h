// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOADQUEUE_H
#define TIDEL_DOWNLOADQUEUE_H

#include "downloadresult.h"
#include "tidelreaderglobal.h"

#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

class FeedPluginInterface;

namespace Tidel {

class DownloadQueuePrivate;

/**
 * Downloads that run several at a time. Their ends are reported in the order in which they were added.
 *
 * \code
 * DownloadQueue queue(*plugin);
 * queue.subscribe(QUrl("https://example.org/feed.xml"), [](const DownloadResult &result) {
 *     qInfo() << (result.isOk() ? "subscribed" : result.reason());
 * });
 * connect(&queue, &DownloadQueue::finished, &application, &QCoreApplication::quit);
 * queue.start();
 * \endcode
 *
 * The queue belongs to the thread of the plug-in and needs its event loop.
 */
class TIDELREADER_EXPORT DownloadQueue : public QObject
{
    Q_OBJECT

public:
    /// Hears how a download ended, after all that were added before it.
    using Handler = std::function<void(const DownloadResult &)>;

    /// Downloads with downloaders made by \a plugin, which must outlive the queue.
    explicit DownloadQueue(FeedPluginInterface &plugin, QObject *parent = nullptr);
    /// Cancels what is under way, without calling a handler.
    ~DownloadQueue() override;

    /// \name Adding downloads, before start()
    /// See the functions of the same names of FeedPluginInterface.
    /// @{
    /// Adds a subscription to the feed at \a address.
    void subscribe(const QUrl &address, const Handler &handler);
    /// Adds a refresh of the channel \a channelUri.
    void downloadFeed(const QString &channelUri, const Handler &handler);
    /// Adds a download of the enclosure \a enclosureUri to \a folder, an absolute path.
    void downloadEnclosure(const QString &enclosureUri, const QString &folder, const Handler &handler);
    /// @}

    /// Starts the downloads. finished() is emitted from the event loop when all have ended.
    void start();
    /// Cancels the downloads under way and leaves out the others, whose handlers are not called.
    void cancel();

Q_SIGNALS:
    /// \a ended of \a all downloads have ended; 0 when they start.
    void advanced(int ended, int all);
    /// The downloads of enclosures that have begun have \a received bytes of \a total. The total is -1 if the
    /// size of a file is unknown. It grows when further downloads begin.
    void progressed(qint64 received, qint64 total);
    /// All downloads have ended, and their handlers were called.
    void finished();

private:
    std::unique_ptr<DownloadQueuePrivate> d;
};

} // namespace Tidel

#endif
