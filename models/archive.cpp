// SPDX-License-Identifier: LGPL-2.1-or-later
#include "archive.h"

#include "changewatch_p.h"
#include "runningdownloads_p.h"
#include "storethread_p.h"

#include <TidelReader/channels.h>
#include <TidelReader/schedule.h>

#include <QPointer>

#include <algorithm>
#include <optional>

namespace Tidel {

class ArchivePrivate
{
public:
    QFuture<ArchiveDownload> download(const RunningDownloads::Filling &fill,
                                      RunningDownloads::Progress progress = RunningDownloads::Ends);

    std::optional<ChangeWatch> watch;
    std::optional<StoreThread> changes{QStringLiteral("tidel-changes")};
    std::optional<StoreThread> reads{QStringLiteral("tidel-reads")};
    std::optional<StoreThread> longReads{QStringLiteral("tidel-longreads")};
    std::optional<Store> ownStore;
    QList<QFuture<ArchiveDownload>> downloads; // Those that may be under way.
};

/// Starts the downloads that \a fill adds, on the thread for changes.
QFuture<ArchiveDownload> ArchivePrivate::download(const RunningDownloads::Filling &fill,
                                                  RunningDownloads::Progress progress)
{
    const auto receiver = std::make_shared<Promise<ArchiveDownload>>();
    const auto hasEnded = [](const QFuture<ArchiveDownload> &future) { return future.isFinished(); };
    downloads.erase(std::remove_if(downloads.begin(), downloads.end(), hasEnded), downloads.end());
    downloads.append(receiver->future());
    if (changes)
        changes->add([receiver, fill, progress](const Result<Store> &store) {
            RunningDownloads::start(store, receiver, fill, progress);
        });
    return receiver->future();
}

namespace {

/// Those of the channels \a uris, or of all if it is empty, that a refresh in \a mode asks for.
Result<QStringList> chosenChannels(const Store &store, const QStringList &uris, Archive::RefreshMode mode)
{
    const Result<QList<FeedChannel>> channels = Channels(store).all();
    if (!channels)
        return Failure(channels.error());
    const Result<Schedule> schedule = Schedule::read(store, QDateTime::currentDateTimeUtc());
    if (!schedule)
        return Failure(schedule.error());
    QStringList chosen;
    for (const FeedChannel &channel : *channels) {
        const bool isWanted = uris.isEmpty() || uris.contains(channel.uri());
        if (isWanted && (mode == Archive::Forced || schedule->isDue(channel)))
            chosen.append(channel.uri());
    }
    return chosen;
}

/// Emits the signals. A receiver may delete the archive.
void tell(const QPointer<Archive> &archive, const StoreChanges &changes)
{
    const auto emitUris = [&](void (Archive::*signal)(const QStringList &), const QStringList &uris) {
        if (archive && !uris.isEmpty())
            Q_EMIT(archive->*signal)(uris);
    };
    const auto emitMarks = [&](void (Archive::*signal)(const QStringList &, bool), const QStringList &uris,
                               bool isSet) {
        if (archive && !uris.isEmpty())
            Q_EMIT(archive->*signal)(uris, isSet);
    };
    emitUris(&Archive::channelsAdded, changes.channelsAdded);
    emitUris(&Archive::channelsChanged, changes.channelsChanged);
    emitUris(&Archive::messagesAdded, changes.messagesAdded);
    emitUris(&Archive::messagesChanged, changes.messagesChanged);
    emitMarks(&Archive::readStateChanged, changes.messagesRead, true);
    emitMarks(&Archive::readStateChanged, changes.messagesUnread, false);
    emitMarks(&Archive::favoritesChanged, changes.favoritesAdded, true);
    emitMarks(&Archive::favoritesChanged, changes.favoritesRemoved, false);
    emitUris(&Archive::messagesRemoved, changes.messagesRemoved);
    emitUris(&Archive::channelsRemoved, changes.channelsRemoved);
}

} // namespace

Archive::Archive(QObject *parent) : QObject(parent), d(new ArchivePrivate)
{
    d->watch.emplace(this, [this](const StoreChanges &changes) { tell(this, changes); });
    // What is removed before the watch knows the store could not be told.
    d->changes->add([isReady = d->watch->isReady()](const Result<Store> &) { isReady.wait(); });
}

Archive::~Archive() { close(); }

void Archive::addChange(const Task &task)
{
    if (!d->changes)
        return;
    d->changes->add([task, running = d->watch->runningChanges()](const Result<Store> &store) {
        ++*running;
        task(store);
        --*running;
    });
}

void Archive::addRead(const Task &task)
{
    if (d->reads)
        d->reads->add(task);
}

void Archive::addLongRead(const Task &task)
{
    if (d->longReads)
        d->longReads->add(task);
}

Result<Store> Archive::store() const
{
    if (d->ownStore)
        return *d->ownStore;
    const Result<Store> store = Store::open();
    if (store)
        d->ownStore = *store;
    return store;
}

QFuture<ArchiveDownload> Archive::refresh(const QStringList &uris, RefreshMode mode)
{
    return d->download(
        [uris, mode](const Store &store, DownloadQueue &queue, const RunningDownloads::Handlers &handlerOf) {
            return chosenChannels(store, uris, mode).map([&](const QStringList &chosen) {
                for (const QString &uri : chosen)
                    queue.downloadFeed(uri, handlerOf(uri));
            });
        });
}

QFuture<ArchiveDownload> Archive::subscribe(const QList<QUrl> &addresses)
{
    return d->download(
        [addresses](const Store &, DownloadQueue &queue, const RunningDownloads::Handlers &handlerOf) {
            for (const QUrl &address : addresses)
                queue.subscribe(address, handlerOf(address.toString()));
            return Result<void>();
        });
}

QFuture<ArchiveDownload> Archive::downloadEnclosures(const QStringList &uris, const QString &folder)
{
    return d->download(
        [uris, folder](const Store &, DownloadQueue &queue, const RunningDownloads::Handlers &handlerOf) {
            for (const QString &uri : uris)
                queue.downloadEnclosure(uri, folder, handlerOf(uri));
            return Result<void>();
        },
        RunningDownloads::Kibibytes);
}

bool Archive::close(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    for (QFuture<ArchiveDownload> &download : d->downloads)
        download.cancel();
    bool hasEnded = true;
    const auto finish = [&](auto &part) {
        hasEnded &= !part || part->finish(deadline);
        part.reset();
    };
    finish(d->watch);
    finish(d->changes);
    finish(d->reads);
    finish(d->longReads);
    d->ownStore.reset();
    return hasEnded;
}

} // namespace Tidel
