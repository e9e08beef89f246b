// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_WATCHING_P_H
#define TIDEL_WATCHING_P_H

#include "archive.h"

#include <QFutureWatcher>

namespace Tidel {

/// Calls \a work in the thread of \a receiver when \a archive tells every change. What was read before may
/// have changed since without having been told.
template <typename Work> void whenWatching(Archive *archive, QObject *receiver, const Work &work)
{
    auto *watcher = new QFutureWatcher<Result<void>>(receiver);
    QObject::connect(watcher, &QFutureWatcherBase::finished, receiver, [watcher, work] {
        watcher->deleteLater();
        work();
    });
    // Changes begin after the archive has looked at the store.
    watcher->setFuture(archive->change([](const Store &) { return Result<void>(); }));
}

} // namespace Tidel

#endif
