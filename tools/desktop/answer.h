// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ANSWER_H
#define TIDEL_DESKTOP_ANSWER_H

#include <QFutureWatcher>
#include <QObject>

#include <utility>

namespace Tidel {

/// Calls \a handler with the result of \a future, in the thread of \a context. Does not call it if \a context
/// goes first, or if the future is canceled.
template <typename T, typename Handler>
void whenAnswered(const QFuture<T> &future, QObject *context, Handler handler)
{
    auto *watcher = new QFutureWatcher<T>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context,
                     [watcher, handler = std::move(handler)]() mutable {
                         watcher->deleteLater();
                         if (!watcher->isCanceled() && watcher->future().resultCount() > 0)
                             handler(watcher->result());
                     });
    watcher->setFuture(future);
}

} // namespace Tidel

#endif
