// SPDX-License-Identifier: LGPL-2.1-or-later
#include "retention.h"

#include "headlines_p.h"
#include "messageremoval_p.h"
#include "statements_p.h"
#include "writeturn.h"

namespace Tidel {

namespace {

QStringList linksOf(const QList<FeedMessage> &messages)
{
    QStringList links;
    for (const FeedMessage &message : messages) {
        if (!message.link().isEmpty())
            links.append(message.link());
    }
    return links;
}

} // namespace

Retention::Retention(const Store &store) : m_store(store) { }

Result<QStringList> Retention::excess(const QString &channelUri, int keep) const
{
    StorePrivate &store = StorePrivate::of(m_store);
    const char *const attempt = "find its oldest messages in the store";
    return store.number(Statements::droppableCount(channelUri), attempt).and_then([&](int count) {
        if (count <= keep)
            return Result<QStringList>();
        return store.texts(Statements::droppableMessages(channelUri, count - keep), attempt)
            .map([](QStringList uris) {
                uris.removeDuplicates();
                return uris;
            });
    });
}

Result<QList<FeedMessage>> Retention::headlines(const QStringList &uris) const
{
    return readHeadlines(StorePrivate::of(m_store), uris, Statements::headlines,
                         "read its oldest messages from the store");
}

// The links are stored before the messages are deleted, so that an interruption between the two loses
// nothing.
Result<void> Retention::drop(const QString &channelUri, const QStringList &uris, const RemovalStep &step)
{
    StorePrivate &store = StorePrivate::of(m_store);
    return inChunks(uris, [&](const QStringList &some) -> Result<void> {
        const WriteTurn turn;
        const auto messages = headlines(some);
        if (!messages)
            return Failure(messages.error());
        const QStringList links = linksOf(*messages);
        if (!links.isEmpty()) {
            const auto kept = store.update(Statements::insertDroppedLinks(channelUri, links),
                                           "keep the links of deleted messages in the store");
            if (!kept)
                return kept;
        }
        return removeMessages(store, channelUri, some, step);
    });
}

} // namespace Tidel
