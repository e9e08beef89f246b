// SPDX-License-Identifier: LGPL-2.1-or-later
#include "qmlarchive.h"

#include <TidelReader/documenturl.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

namespace Tidel {

namespace {

QVariantList listOf(const QVector<FoundFeed> &feeds)
{
    QVariantList list;
    for (const FoundFeed &feed : feeds)
        list.append(QVariantMap{{QStringLiteral("title"), feed.title},
                                {QStringLiteral("address"), feed.address.toString(QUrl::FullyEncoded)}});
    return list;
}

} // namespace

qreal QmlArchive::progress() const
{
    int ended = 0;
    int all = 0;
    for (const Watcher *watcher : m_downloads) {
        ended += watcher->progressValue();
        all += watcher->progressMaximum();
    }
    if (m_downloads.isEmpty())
        return 1;
    // Their number is not known yet.
    return all == 0 ? 0 : qreal(ended) / all;
}

/// Changes the archive by \a work.
template <typename Work> void QmlArchive::tryChange(const Work &work)
{
    using Value = std::invoke_result_t<Work, const Store &>;
    auto *watcher = new QFutureWatcher<Value>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        watcher->deleteLater();
        // There is no result if the archive was closed.
        if (watcher->future().resultCount() > 0 && !watcher->result())
            Q_EMIT failed(watcher->result().error().text());
    });
    watcher->setFuture(change(work));
}

void QmlArchive::setRead(const QStringList &uris, bool isRead)
{
    tryChange([uris, isRead](const Store &store) { return ReadState(store).set(uris, isRead); });
}

void QmlArchive::setFavorite(const QString &uri, bool isFavorite)
{
    tryChange([uri, isFavorite](const Store &store) { return Messages(store).setFavorite(uri, isFavorite); });
}

void QmlArchive::refresh(const QStringList &uris) { watch(Archive::refresh(uris, Forced)); }

void QmlArchive::refreshDue() { watch(Archive::refresh()); }

void QmlArchive::subscribe(const QString &address) { watch(Archive::subscribe({documentUrl(address)})); }

void QmlArchive::cancelDownloads()
{
    for (Watcher *watcher : qAsConst(m_downloads))
        watcher->cancel();
}

void QmlArchive::watch(const QFuture<ArchiveDownload> &downloads)
{
    auto *watcher = new Watcher(this);
    connect(watcher, &Watcher::resultReadyAt, this,
            [this, watcher](int index) { take(watcher->resultAt(index)); });
    connect(watcher, &Watcher::progressValueChanged, this, &QmlArchive::progressChanged);
    connect(watcher, &Watcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        m_downloads.removeOne(watcher);
        Q_EMIT progressChanged();
        if (!isDownloading())
            Q_EMIT downloadingChanged();
    });
    m_downloads.append(watcher);
    watcher->setFuture(downloads);
    Q_EMIT progressChanged();
    if (m_downloads.size() == 1)
        Q_EMIT downloadingChanged();
}

void QmlArchive::take(const ArchiveDownload &download)
{
    const DownloadResult &result = download.result;
    if (result.isOk())
        Q_EMIT downloaded(download.subject, int(result.newMessages().size()));
    else if (result.foundFeeds().size() > 1)
        Q_EMIT feedsFound(download.subject, listOf(result.foundFeeds()));
    else
        Q_EMIT downloadFailed(download.subject, result.reason());
}

} // namespace Tidel
