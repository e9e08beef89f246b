// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ARCHIVE_H
#define TIDEL_ARCHIVE_H

#include "archivedownload.h"
#include "promise.h"

#include <TidelReader/error.h>
#include <TidelReader/store.h>

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <memory>
#include <type_traits>

namespace Tidel {

class ArchivePrivate;

/**
 * The user's archive for a program with an event loop. Nothing that it does blocks the thread that it lives
 * in, except store().
 *
 * Changes run on one thread, short reads on another one and long reads on a third one, each in the order in
 * which they were asked for. All answer by a future, so that QFutureWatcher and whatever else works with
 * QFuture can wait for them.
 *
 * \code
 * Archive archive;
 * auto *watcher = new QFutureWatcher<Result<int>>(this);
 * connect(watcher, &QFutureWatcher<Result<int>>::finished, this, [watcher] { show(watcher->result()); });
 * watcher->setFuture(archive.change([uris](const Store &store) { return ReadState(store).set(uris, true);
 * })); \endcode
 *
 * The signals tell what this object, another part of the program, or another program has changed. They come
 * within a second, after what one change() does when it has ended. Changes made together come as one signal
 * of each kind: added channels before their messages, removed ones after them.
 */
class TIDELREADER_EXPORT Archive : public QObject
{
    Q_OBJECT

public:
    /// The future of what \a Work returns, which is a Result.
    template <typename Work> using Answer = QFuture<std::invoke_result_t<Work, const Store &>>;

    /// Does not wait for the store. If it cannot be opened, each future says so.
    explicit Archive(QObject *parent = nullptr);
    /// As close().
    ~Archive() override;

    /// Runs \a work with the store on the thread for changes. If the future is canceled before \a work
    /// begins, it is left out. \a work must not refer to what may be gone when it runs.
    template <typename Work> Answer<Work> change(Work work)
    {
        return run(std::move(work), &Archive::addChange);
    }
    /// How long a read may take.
    enum ReadLength {
        ShortRead, ///< Milliseconds, as for a page of a list. The user waits for it.
        LongRead ///< As for all of a long list. It delays no short reads.
    };
    /// As change(), on a thread for reads, which a change does not delay.
    template <typename Work> Answer<Work> read(Work work, ReadLength length = ShortRead)
    {
        return run(std::move(work), length == ShortRead ? &Archive::addRead : &Archive::addLongRead);
    }

    /// A store of the caller's thread, which is that of this object, for short reads. The first call opens
    /// it.
    Result<Store> store() const;

    /// \name Downloads
    /// Each result of the future is the end of one download, in the order in which they were asked for; its
    /// progress is the number of those that have ended. To cancel the future cancels the downloads. Nothing
    /// can be downloaded without a plug-in and a store; then the only result has no subject and says why.
    /// @{
    /// Which channels a refresh asks for.
    enum RefreshMode {
        DueOnly, ///< Those that are due, see Schedule.
        Forced ///< All of them.
    };
    /// Refreshes those of the channels \a uris, or of all if it is empty, that \a mode allows.
    QFuture<ArchiveDownload> refresh(const QStringList &uris = {}, RefreshMode mode = DueOnly);
    /// Subscribes to the feeds at \a addresses.
    QFuture<ArchiveDownload> subscribe(const QList<QUrl> &addresses);
    /// Downloads the enclosures \a uris to \a folder, an absolute path. The progress of this future is the
    /// number of KiB of those that have begun, with what earlier downloads have left; its maximum is 0 if a
    /// size is unknown, and grows when further ones begin.
    QFuture<ArchiveDownload> downloadEnclosures(const QStringList &uris, const QString &folder);
    /// @}

    /// Ends the signals, cancels the downloads, waits for the changes that were asked for, for at most \a
    /// milliseconds, and ends the threads. What is asked for later is canceled. Returns false if a change has
    /// not ended by then; it goes on until the process ends. Otherwise returns true.
    bool close(int milliseconds = 30000);

Q_SIGNALS:
    /// \name What has changed
    /// Each signal has the URIs concerned, without duplicates. A message that is added and marked before it
    /// is told is told as added only.
    /// @{
    void channelsAdded(const QStringList &uris);
    /// What a list of channels shows: title, link, type, folder, website, error, interval, rule for pruning,
    /// image. What a refresh notes for itself is not told.
    void channelsChanged(const QStringList &uris);
    void channelsRemoved(const QStringList &uris);
    void messagesAdded(const QStringList &uris);
    /// Texts, dates, enclosures and their files, and the channels that hold the messages.
    void messagesChanged(const QStringList &uris);
    void messagesRemoved(const QStringList &uris);
    void readStateChanged(const QStringList &uris, bool isRead);
    void favoritesChanged(const QStringList &uris, bool isFavorite);
    /// @}

private:
    using Task = std::function<void(const Result<Store> &)>;

    template <typename Work> Answer<Work> run(Work work, void (Archive::*add)(const Task &))
    {
        using Value = std::invoke_result_t<Work, const Store &>;
        const auto promise = std::make_shared<Promise<Value>>();
        (this->*add)([promise, work = std::move(work)](const Result<Store> &store) mutable {
            if (!promise->isCanceled())
                promise->add(store ? work(*store) : Value(Failure(store.error())));
            promise->finish();
        });
        return promise->future();
    }
    void addChange(const Task &task);
    void addRead(const Task &task);
    void addLongRead(const Task &task);

    std::unique_ptr<ArchivePrivate> d;
};

} // namespace Tidel

#endif
