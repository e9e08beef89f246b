// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANGEWATCH_P_H
#define TIDEL_CHANGEWATCH_P_H

#include "storethread_p.h"

#include "../reader/storechanges_p.h"

#include <QMutex>
#include <QObject>

#include <future>

namespace Tidel {

/**
 * Tells what this and other programs have changed in the store. Looks at the store on a thread of its own,
 * and only after a program has written to its files.
 */
class ChangeWatch
{
    Q_DISABLE_COPY(ChangeWatch)

public:
    using Receiver = std::function<void(const StoreChanges &)>;
    using RunningChanges = std::shared_ptr<std::atomic_int>;

    /// Calls \a receiver in the thread of \a context, as long as both the watch and \a context live.
    ChangeWatch(QObject *context, const Receiver &receiver);
    /// Drops what was found and not told.
    ~ChangeWatch();

    /// Ready when the watch knows the store, or cannot know it. What is removed before is not told.
    std::shared_future<void> isReady() const { return m_isReady; }
    /// The number of changes that are under way. What they write is told together when they have ended.
    RunningChanges runningChanges() const { return m_runningChanges; }
    /// Ends the watch. Waits for its thread until \a deadline; see StoreThread::finish().
    bool finish(const QDeadlineTimer &deadline);

private:
    class Looks;
    struct Link;

    const std::shared_ptr<std::atomic_bool> m_isOver;
    const std::shared_ptr<Link> m_link;
    const RunningChanges m_runningChanges;
    std::shared_future<void> m_isReady;
    StoreThread m_thread;
};

} // namespace Tidel

#endif
