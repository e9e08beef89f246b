// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageremoval_p.h"

#include "statements_p.h"

namespace Tidel {

namespace {

QList<FeedEnclosure> files(const Answer &answer)
{
    QList<FeedEnclosure> enclosures;
    while (answer->next()) {
        FeedEnclosure enclosure;
        enclosure.setUri(answer->value(0).toString());
        enclosure.setRemoteUrl(answer->value(1).toString());
        enclosure.setLocalUrl(answer->value(2).toString());
        enclosures.append(enclosure);
    }
    return enclosures;
}

QStringList urisOf(const QList<FeedEnclosure> &enclosures)
{
    QStringList uris;
    for (const FeedEnclosure &enclosure : enclosures)
        uris.append(enclosure.uri());
    uris.removeDuplicates();
    return uris;
}

} // namespace

Result<void> deleteReleased(StorePrivate &store, const QStringList &enclosures, QList<FeedEnclosure> *deleted)
{
    return inChunks(enclosures, [&](const QStringList &some) {
        return store.run(Statements::releasedEnclosures(some), "find the enclosures that belong to nothing")
            .map(files)
            .and_then([&](const QList<FeedEnclosure> &released) -> Result<void> {
                if (released.isEmpty())
                    return {};
                const QString deletion = Statements::deleteResources(urisOf(released));
                return store.update(Statements::update(deletion), "delete enclosures from the store")
                    .map([&] { *deleted += released; });
            });
    });
}

Result<void> removeMessages(StorePrivate &store, const QString &channelUri, const QStringList &messages,
                            const QString &removal, const RemovalStep &step)
{
    const char *const attempt = "delete messages from the store";
    // The question comes before the update, which deletes what connects enclosures with their messages.
    const auto enclosures = store.texts(Statements::enclosuresOfOwners(messages), attempt);
    if (!enclosures)
        return Failure(enclosures.error());
    const Result<void> removed = store.update(Statements::update(removal), attempt);
    if (!removed)
        return removed;
    const auto left = store.texts(Statements::messagesAmong(messages, channelUri), attempt);
    if (!left)
        return Failure(left.error());
    QList<FeedEnclosure> deleted;
    const Result<void> released = deleteReleased(store, *enclosures, &deleted);
    step(int(messages.size() - left->size()), deleted);
    return released;
}

} // namespace Tidel
