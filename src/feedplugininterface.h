// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDPLUGININTERFACE_H
#define FEEDPLUGININTERFACE_H

#include "tidelglobal.h"

#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

/// What QPluginLoader finds a download plug-in by: the IID of its Q_PLUGIN_METADATA.
#define FeedPluginInterface_iid "org.tidel.FeedPluginInterface/1.0"

/**
 * Why a download failed: the codes of FeedPluginInterface's signals.
 *
 * An HTTP server's refusal is given by its status code, such as 404, as it is.
 */
enum FeedDownloadError {
    FeedDownloadNoError = 0,
    FeedDownloadCanceled = 1, ///< by cancel()
    FeedDownloadBusy = 2, ///< a download of the same object is under way, and goes on
    FeedDownloadBadAddress = 3, ///< not an http, https or file address
    FeedDownloadNotFound = 4, ///< no such host, file, channel or enclosure
    FeedDownloadConnectionFailed = 5, ///< refused, broken off, or not to be trusted
    FeedDownloadTimedOut = 6,
    FeedDownloadTooLarge = 7,
    FeedDownloadUnsafeRedirect = 8, ///< from https to http, to another scheme, or too many in a row
    FeedDownloadNotAFeed = 9,
    FeedDownloadAlreadyStored = 10, ///< the channel to be subscribed to is in the store
    FeedDownloadNotWritten = 11, ///< the folder did not take the file
    FeedDownloadStoreFailed = 12 ///< the store did not take what was downloaded
};

/**
 * The base of download plug-ins, which fetch feeds and enclosures and put them into the store.
 *
 * A downloader does one download at a time, in the background of its thread's event loop, and tells of its
 * end by exactly one signal, never before the operation has returned. createDownloader() makes further ones
 * for downloads side by side. All belong to the thread of FeedTrackerSparql::instance().
 *
 * What the last download of feeds has found that is new to their channels is told by the property
 * "newMessages", a QStringList of the messages' links, of each channel the oldest first. So a host need not
 * look for it among all that it has.
 *
 * The operations are invokable by name, so that a host can hand over calls as FeedMethod records. A whole
 * plug-in:
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
    explicit FeedPluginInterface(QObject *parent);
    ~FeedPluginInterface() override;

    /// A further downloader with the settings of this one, owned by \a parent and, where that is null, by the
    /// caller.
    virtual FeedPluginInterface *createDownloader(QObject *parent) const = 0;

    /**
     * Downloads the feed at \a address, an absolute URL, and stores it as a channel of that link, with its
     * messages. Ends with downloadFeedsFinished() or downloadFeedsFailed(); a failure stores no channel,
     * except that after FeedDownloadStoreFailed one may be there without its messages.
     */
    virtual void subscribe(const QUrl &address) = 0;

    /**
     * Downloads the feeds of the stored channels \a channelUris and stores their new messages. Ends with
     * downloadFeedsFinished(), or, when all have been tried, with downloadFeedsFailed() and the code of the
     * first that failed. A feed that has not changed since is no failure.
     */
    virtual void downloadFeeds(const QStringList &channelUris) = 0;

    /**
     * Downloads the file of the stored enclosure \a enclosureUri into \a folder, an absolute path, which is
     * made when it is missing. Tells its progress by enclosureDownloadProgress() and ends with
     * downloadEnclosureFinished() or downloadEnclosureFailed(); the file is there only when it is complete.
     */
    virtual void downloadEnclosure(const QString &enclosureUri, const QString &folder) = 0;

    /// Breaks off the download under way, which ends with FeedDownloadCanceled. Nothing without one.
    virtual void cancel() = 0;

    /// What went wrong in the last download, one line for the user; empty when nothing did.
    virtual QString errorString() const = 0;

Q_SIGNALS:
    /// The feeds that were asked for have been downloaded and stored.
    void downloadFeedsFinished();
    /// They have not all been; \a error is a FeedDownloadError or an HTTP status code.
    void downloadFeedsFailed(int error);
    /**
     * The enclosure has been downloaded. Keys of \a map: "uri", the enclosure's URI; "remoteUrl"; "localUrl",
     * the file's `file:` URL, all three as text; "length", the file's size in bytes (qint64); "mimeType",
     * text, empty when nobody says.
     */
    void downloadEnclosureFinished(QVariantMap map);
    /// It has not been; \a error is a FeedDownloadError or an HTTP status code.
    void downloadEnclosureFailed(int error);
    /// Of the running download, in bytes; \a bytesTotal is -1 while the size is not known.
    void enclosureDownloadProgress(qint64 bytesReceived, qint64 bytesTotal);

private Q_SLOTS:
    /// The version of this interface.
    QString version() const;
};

#endif
