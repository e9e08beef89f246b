// SPDX-License-Identifier: LGPL-2.1-or-later
#include "changewatch_p.h"

#include "storefiles_p.h"

#include "../reader/storestate_p.h"

#include <QElapsedTimer>
#include <QThread>
#include <QTimer>

namespace Tidel {

namespace {

// Milliseconds.
constexpr int shortestQuiet = 100; // without writes before a look
constexpr int longestDelay = 700; // from the first write to the look
constexpr int pauseForLook = 2; // times as long as the last look, so that looks take a third of the time
constexpr int longestChange = 10000; // Changes of others are told after that, even if one is under way.

} // namespace

/// The way to the receiver, which may be gone before the thread.
struct ChangeWatch::Link
{
    static void send(const std::shared_ptr<Link> &link, const StoreChanges &changes);

    QMutex mutex;
    QObject *context; // null when the watch is gone
    Receiver receiver;
};

void ChangeWatch::Link::send(const std::shared_ptr<Link> &link, const StoreChanges &changes)
{
    const QMutexLocker locker(&link->mutex);
    if (!link->context)
        return;
    QMetaObject::invokeMethod(
        link->context,
        [link, changes] {
            // The watch ends in this thread.
            if (link->context)
                link->receiver(changes);
        },
        Qt::QueuedConnection);
}

/// Lives in the thread of the watch.
class ChangeWatch::Looks : public QObject
{
public:
    Looks(const Store &store, const std::shared_ptr<std::atomic_bool> &isOver,
          const std::shared_ptr<Link> &link, const RunningChanges &runningChanges);

    void start();

private:
    void noteWrite();
    void lookIfDue();
    void look();

    Store m_store;
    const std::shared_ptr<Link> m_link;
    const std::shared_ptr<const std::atomic_int> m_runningChanges;
    StoreFiles m_files;
    StoreState m_state;
    QTimer m_timer; // runs until the next look
    QElapsedTimer m_sinceWrite; // since the first one after the last look
    QElapsedTimer m_sinceLook;
    int m_pause = 0; // after the last look
};

ChangeWatch::Looks::Looks(const Store &store, const std::shared_ptr<std::atomic_bool> &isOver,
                          const std::shared_ptr<Link> &link, const RunningChanges &runningChanges)
    : m_store(store), m_link(link), m_runningChanges(runningChanges), m_state(isOver)
{
    connect(QThread::currentThread(), &QThread::finished, this, &QObject::deleteLater);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Looks::lookIfDue);
    connect(&m_files, &StoreFiles::written, this, &Looks::noteWrite);
}

void ChangeWatch::Looks::start()
{
    if (m_state.begin(StorePrivate::of(m_store)))
        look();
}

/// Many writes in a row are told together.
void ChangeWatch::Looks::noteWrite()
{
    if (!m_sinceWrite.isValid())
        m_sinceWrite.start();
    const int quiet = qMax(shortestQuiet, m_pause - int(m_sinceLook.elapsed()));
    m_timer.start(qBound(0, longestDelay - int(m_sinceWrite.elapsed()), quiet));
}

void ChangeWatch::Looks::lookIfDue()
{
    if (*m_runningChanges > 0 && m_sinceWrite.elapsed() < longestChange)
        m_timer.start(shortestQuiet);
    else
        look();
}

void ChangeWatch::Looks::look()
{
    m_sinceWrite.invalidate();
    // Another database may have replaced the one that is open.
    if (const Result<Store> store = Store::open())
        m_store = *store;
    m_sinceLook.start();
    const Result<StoreChanges> changes = m_state.look(StorePrivate::of(m_store));
    m_pause = pauseForLook * int(m_sinceLook.restart());
    if (changes)
        Link::send(m_link, *changes);
}

ChangeWatch::ChangeWatch(QObject *context, const Receiver &receiver)
    : m_isOver(std::make_shared<std::atomic_bool>(false)), m_link(new Link{{}, context, receiver}),
      m_runningChanges(std::make_shared<std::atomic_int>(0)), m_thread(QStringLiteral("tidel-watch"))
{
    const auto ready = std::make_shared<std::promise<void>>();
    m_isReady = ready->get_future();
    m_thread.add([ready, isOver = m_isOver, link = m_link,
                  runningChanges = m_runningChanges](const Result<Store> &store) {
        if (store)
            (new Looks(*store, isOver, link, runningChanges))->start();
        ready->set_value();
    });
}

ChangeWatch::~ChangeWatch()
{
    *m_isOver = true;
    const QMutexLocker locker(&m_link->mutex);
    m_link->context = nullptr;
}

bool ChangeWatch::finish(const QDeadlineTimer &deadline)
{
    *m_isOver = true;
    return m_thread.finish(deadline);
}

} // namespace Tidel
