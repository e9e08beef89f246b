// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STORETHREAD_P_H
#define TIDEL_STORETHREAD_P_H

#include <TidelReader/store.h>

#include <QDeadlineTimer>

#include <atomic>
#include <functional>
#include <memory>

class QThread;

namespace Tidel {

/**
 * A thread with a store of its own, which it opens for the first task. Tasks run one after the other, in the
 * order in which they were given. The thread has an event loop.
 */
class StoreThread
{
    Q_DISABLE_COPY(StoreThread)

public:
    /// Gets the store of the thread, or why it could not be opened.
    using Task = std::function<void(const Result<Store> &)>;

    /// Starts the thread \a name.
    explicit StoreThread(const QString &name);
    /// Drops the tasks that have not begun. Leaves a task under way to itself.
    ~StoreThread();

    /// Adds \a task.
    void add(const Task &task);
    /// Runs the tasks that were added and ends the thread, for which it waits until \a deadline. Returns
    /// false if it has not ended by then; otherwise returns true.
    bool finish(const QDeadlineTimer &deadline);

private:
    class Worker;

    std::unique_ptr<QThread> m_thread;
    Worker *m_worker; // lives in the thread
    const std::shared_ptr<std::atomic_bool> m_isOver; // Tasks that have not begun are dropped.
};

} // namespace Tidel

#endif
