// SPDX-License-Identifier: LGPL-2.1-or-later
#include "orphans.h"

#include "messageremoval_p.h"
#include "statements_p.h"
#include "writeturn.h"

namespace Tidel {

Orphans::Orphans(const Store &store) : m_store(store) { }

Result<void> Orphans::remove(const RemovalStep &step)
{
    StorePrivate &store = StorePrivate::of(m_store);
    const auto messages =
        store.texts(Statements::orphanMessages(), "find the messages that belong to no channel");
    if (!messages)
        return Failure(messages.error());
    const Result<void> removed = inChunks(*messages, [&](const QStringList &some) -> Result<void> {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        return removeMessages(store, QString(), some, Statements::removeMessages(some, QString()), step);
    });
    if (!removed)
        return removed;

    const char *const attempt = "find the enclosures that belong to nothing";
    const auto enclosures = readFiles(store, Statements::orphanEnclosures(), attempt);
    if (!enclosures)
        return Failure(enclosures.error());
    return inChunks(*enclosures, [&](const QList<FeedEnclosure> &some) -> Result<void> {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        return updateAndRelease(store, QString(), some, "delete enclosures from the store")
            .map([&](const QList<FeedEnclosure> &deleted) { step(0, deleted); });
    });
}

} // namespace Tidel
