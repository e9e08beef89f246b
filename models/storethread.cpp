// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storethread_p.h"

#include <QThread>

#include <optional>

namespace Tidel {

/// Runs the tasks in the thread that it lives in.
class StoreThread::Worker : public QObject
{
public:
    void run(const Task &task);

private:
    std::optional<Store> m_store;
};

/// Opens the store again if another one has replaced it; otherwise this costs next to nothing.
void StoreThread::Worker::run(const Task &task)
{
    const Result<Store> store = Store::open();
    if (store)
        m_store = *store;
    task(store);
}

StoreThread::StoreThread(const QString &name)
    : m_thread(new QThread), m_worker(new Worker), m_isOver(std::make_shared<std::atomic_bool>(false))
{
    m_thread->setObjectName(name);
    m_worker->moveToThread(m_thread.get());
    // Deletes the store in its thread, too.
    QObject::connect(m_thread.get(), &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread->start();
}

StoreThread::~StoreThread()
{
    *m_isOver = true;
    m_thread->quit();
    if (m_thread->isFinished())
        return;
    // To end a thread by force could leave locks behind. The process ends it.
    QObject::connect(m_thread.get(), &QThread::finished, m_thread.get(), &QObject::deleteLater);
    m_thread.release(); // NOLINT(bugprone-unused-return-value): it deletes itself
}

void StoreThread::add(const Task &task)
{
    QMetaObject::invokeMethod(
        m_worker,
        [worker = m_worker, task, isOver = m_isOver] {
            if (!*isOver)
                worker->run(task);
        },
        Qt::QueuedConnection);
}

bool StoreThread::finish(const QDeadlineTimer &deadline)
{
    QThread *thread = m_thread.get();
    QMetaObject::invokeMethod(
        m_worker, [thread] { thread->quit(); }, Qt::QueuedConnection);
    return m_thread->wait(deadline);
}

} // namespace Tidel
