// SPDX-License-Identifier: LGPL-2.1-or-later
#include "enclosurequeue.h"

#include "statements_p.h"
#include "store_p.h"

#include <QMultiMap>

namespace Tidel {

namespace {

const char *const attempt = "change the queue of downloads in the store";

} // namespace

EnclosureQueue::EnclosureQueue(const Store &store) : m_store(store) { }

Result<QStringList> EnclosureQueue::uris() const
{
    return StorePrivate::of(m_store)
        .run(Statements::queuedEnclosures(), "read the queue of downloads from the store")
        .map([](const Answer &answer) {
            // The store sorts times of whole seconds before all others.
            QMultiMap<QDateTime, QString> queue;
            while (answer->next())
                queue.insert(answer->value(1).toDateTime(), answer->value(0).toString());
            return QStringList(queue.values());
        });
}

Result<QHash<QString, QDateTime>> EnclosureQueue::times(const QStringList &uris) const
{
    QHash<QString, QDateTime> times;
    const Result<void> read = inChunks(uris, [&](const QStringList &some) {
        return StorePrivate::of(m_store)
            .run(Statements::queuedTimes(some), "read the queue of downloads from the store")
            .map([&](const Answer &answer) {
                while (answer->next())
                    times.insert(answer->value(0).toString(), answer->value(1).toDateTime());
            });
    });
    return read.map([&] { return times; });
}

Result<void> EnclosureQueue::add(const QStringList &uris)
{
    // The order of the times is that of the queue.
    QDateTime time = QDateTime::currentDateTimeUtc();
    return inChunks(uris, [&](const QStringList &some) {
        const QString text = Statements::queueEnclosures(some, time);
        time = time.addMSecs(some.size());
        return StorePrivate::of(m_store).update(Statements::update(text), attempt);
    });
}

Result<void> EnclosureQueue::remove(const QStringList &uris)
{
    return inChunks(uris, [&](const QStringList &some) {
        const QString text = Statements::unqueueEnclosures(some);
        return StorePrivate::of(m_store).update(Statements::update(text), attempt);
    });
}

} // namespace Tidel
