// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_QMLARCHIVE_H
#define TIDEL_QMLARCHIVE_H

#include <TidelReader/archive.h>

#include <QFutureWatcher>
#include <QVariantList>

namespace Tidel {

/**
 * The type Archive of QML: an Archive with methods in place of functions and futures. The signals of Archive
 * tell what a method has changed; failed(), downloadFailed() and feedsFound() tell what it could not do.
 *
 * \code
 * Archive {
 *     id: archive
 *     onFailed: status.text = text
 * }
 * Button { onClicked: archive.refresh() }
 * \endcode
 */
class QmlArchive : public Archive
{
    Q_OBJECT
    Q_PROPERTY(bool downloading READ isDownloading NOTIFY downloadingChanged)
    Q_PROPERTY(qreal progress READ progress NOTIFY progressChanged)

public:
    using Archive::Archive;

    /// Returns true if something is being downloaded; otherwise returns false.
    bool isDownloading() const { return !m_downloads.isEmpty(); }
    /// Which part of the downloads under way has ended, from 0 to 1. It is 1 if there are none.
    qreal progress() const;

    /// Marks the messages \a uris as read or unread.
    Q_INVOKABLE void setRead(const QStringList &uris, bool isRead);
    /// Marks the message \a uri as a favorite, or takes the mark away.
    Q_INVOKABLE void setFavorite(const QString &uri, bool isFavorite);
    /// Refreshes the channels \a uris, or all if it is empty, whether they are due or not.
    Q_INVOKABLE void refresh(const QStringList &uris = {});
    /// As refresh(), but only the channels that are due.
    Q_INVOKABLE void refreshDue();
    /// Subscribes to the feed at \a address, an address or the path of a file.
    Q_INVOKABLE void subscribe(const QString &address);
    /// Cancels what is being downloaded.
    Q_INVOKABLE void cancelDownloads();

Q_SIGNALS:
    void downloadingChanged();
    void progressChanged();
    /// A mark could not be changed; \a text is for the user.
    void failed(const QString &text);
    /// A download has ended: \a subject is the URI of a refreshed channel, which got \a newMessages messages,
    /// or the address of a subscription.
    void downloaded(const QString &subject, int newMessages);
    /// A download has failed; \a reason is for the user. If nothing can be downloaded, \a subject is empty.
    void downloadFailed(const QString &subject, const QString &reason);
    /// The page at \a address has several feeds. Each of \a feeds is an object with the texts title and
    /// address. Nothing was subscribed to.
    void feedsFound(const QString &address, const QVariantList &feeds);

private:
    using Watcher = QFutureWatcher<ArchiveDownload>;

    template <typename Work> void tryChange(const Work &work);
    void watch(const QFuture<ArchiveDownload> &downloads);
    void take(const ArchiveDownload &download);

    QList<Watcher *> m_downloads; // Those under way.
};

} // namespace Tidel

#endif
