// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDPLUGININTERFACE_H
#define FEEDPLUGININTERFACE_H

#include "tidelglobal.h"

#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

/// The IID of download plug-ins, for their Q_PLUGIN_METADATA. QPluginLoader finds plug-ins by it.
#define FeedPluginInterface_iid "org.tidel.FeedPluginInterface/1.0"

/**
 * The reasons why a download failed, as FeedPluginInterface's signals report them.
 *
 * If an HTTP server refuses a request, the signals report its status code instead, such as 404.
 */
enum FeedDownloadError {
    FeedDownloadNoError = 0, ///< no download has failed
    FeedDownloadCanceled = 1, ///< the host called cancel()
    FeedDownloadBusy = 2, ///< the downloader is busy with another download, which continues
    FeedDownloadBadAddress = 3, ///< the address is not an http, https or file URL
    FeedDownloadNotFound = 4, ///< the host, file, channel or enclosure does not exist
    FeedDownloadConnectionFailed = 5, ///< the connection was refused, was lost, or cannot be trusted
    FeedDownloadTimedOut = 6, ///< the server did not answer in time
    FeedDownloadTooLarge = 7, ///< the download exceeds the size limit
    FeedDownloadUnsafeRedirect = 8, ///< redirected from https to http, to another scheme, or too often
    FeedDownloadNotAFeed = 9, ///< the downloaded file is not a feed
    FeedDownloadAlreadyStored = 10, ///< the store already contains the channel to subscribe to
    FeedDownloadNotWritten = 11, ///< the file cannot be written to the folder
    FeedDownloadStoreFailed = 12 ///< the store refused the downloaded feed
};

/**
 * The base class of download plug-ins, which download feeds and enclosures into the store.
 *
 * A downloader runs one download at a time in the event loop of its thread. Each download ends with exactly
 * one signal, which is emitted after the operation has returned. For downloads in parallel,
 * createDownloader() creates further downloaders. All of them belong to the thread of
 * FeedTrackerSparql::instance(). A host that moves on to a store in another thread calls createDownloader()
 * there.
 *
 * The property "newMessages" lists the links of the messages that the last download of feeds added to their
 * channels. It is a QStringList; the messages of a channel are in order, oldest first. A plug-in that knows
 * the titles of such messages may have the property "headlines" too, a QVariantList of maps with the texts
 * "link" and "title" and the date "date", so that a host need not ask the store for them. A plug-in that
 * looks for the feeds of web pages has the property "foundFeeds" too, a QVariantList of maps with the texts
 * "title" and "address": the feeds of the page that subscribe() was given.
 *
 * The operations are invokable by name, so that a host can pass on calls as FeedMethod records. For example:
 * \code
 * class Downloader : public FeedPluginInterface
 * {
 *     Q_OBJECT
 *     Q_PLUGIN_METADATA(IID FeedPluginInterface_iid)
 *     Q_PROPERTY(QStringList newMessages READ newMessages)
 *
 * public:
 *     explicit Downloader(QObject *parent = nullptr) : FeedPluginInterface(parent) { }
 *     Q_INVOKABLE FeedPluginInterface *createDownloader(QObject *parent) const override;
 *     Q_INVOKABLE void subscribe(const QUrl &address) override;
 *     Q_INVOKABLE void downloadFeeds(const QStringList &channelUris) override;
 *     Q_INVOKABLE void downloadEnclosure(const QString &enclosureUri, const QString &folder) override;
 *     Q_INVOKABLE void cancel() override;
 *     Q_INVOKABLE QString errorString() const override;
 *     QStringList newMessages() const;
 * };
 * \endcode
 */
class TIDEL_EXPORT FeedPluginInterface : public QObject
{
    Q_OBJECT

public:
    /// Creates a downloader, owned by \a parent or, if that is null, by the caller.
    explicit FeedPluginInterface(QObject *parent);
    /// Destroys the downloader.
    ~FeedPluginInterface() override;

    /// Returns a new downloader with the settings of this one, owned by \a parent or, if that is null, by the
    /// caller.
    virtual FeedPluginInterface *createDownloader(QObject *parent) const = 0;

    /**
     * Downloads the feed at \a address, an absolute URL, and stores it with its messages as a channel with
     * that link. Ends with downloadFeedsFinished() or downloadFeedsFailed(). A failure stores no channel;
     * only FeedDownloadStoreFailed may leave a channel without its messages.
     */
    virtual void subscribe(const QUrl &address) = 0;

    /**
     * Downloads the feeds of the stored channels \a channelUris and stores their new messages. Ends with
     * downloadFeedsFinished() if all feeds were downloaded. Otherwise tries all feeds and ends with
     * downloadFeedsFailed() and the code of the first failure. A feed without changes is not a failure.
     */
    virtual void downloadFeeds(const QStringList &channelUris) = 0;

    /**
     * Downloads the file of the stored enclosure \a enclosureUri into \a folder, an absolute path. Creates
     * the folder if it does not exist. Reports progress with enclosureDownloadProgress() and ends with
     * downloadEnclosureFinished() or downloadEnclosureFailed(). An incomplete file is hidden; the next
     * download of the enclosure to the folder may continue it.
     */
    virtual void downloadEnclosure(const QString &enclosureUri, const QString &folder) = 0;

    /// Cancels the running download, which then fails with FeedDownloadCanceled. Does nothing if none is
    /// running.
    virtual void cancel() = 0;

    /// Returns one line for the user about the failure of the last download; empty if it did not fail.
    virtual QString errorString() const = 0;

Q_SIGNALS:
    /// Emitted when all requested feeds have been downloaded and stored.
    void downloadFeedsFinished();
    /// Emitted when a requested feed could not be downloaded or stored. \a error is a FeedDownloadError or an
    /// HTTP status code.
    void downloadFeedsFailed(int error);
    /**
     * Emitted when the enclosure has been downloaded. The keys of \a map are "uri", the URI of the enclosure;
     * "remoteUrl", its URL on the network; "localUrl", the `file:` URL of the file; "length", the size of the
     * file in bytes as a qint64; and "mimeType", its MIME type, empty if it is unknown. All but the length
     * are texts.
     */
    void downloadEnclosureFinished(QVariantMap map);
    /// Emitted when the enclosure could not be downloaded. \a error is a FeedDownloadError or an HTTP status
    /// code.
    void downloadEnclosureFailed(int error);
    /// Emitted while an enclosure is downloaded. Both sizes are in bytes; \a bytesTotal is -1 if it is
    /// unknown.
    void enclosureDownloadProgress(qint64 bytesReceived, qint64 bytesTotal);

private Q_SLOTS:
    /// Returns the version of this interface.
    // contract: a private slot. Hosts call it by its name through the meta-object.
    QString version() const;
};

#endif
