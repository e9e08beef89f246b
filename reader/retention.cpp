// SPDX-License-Identifier: LGPL-2.1-or-later
#include "retention.h"

#include "headlines_p.h"
#include "itemkey_p.h"
#include "messageremoval_p.h"
#include "statements_p.h"
#include "writeturn.h"

#include <QHash>

namespace Tidel {

namespace {

/// Stores by what the channel knows the messages of \a answer: their keys, and the links of those without a
/// key.
QString rememberDropped(const Answer &answer, const QString &channelUri)
{
    const QString prefix = itemKeyPrefix(channelUri);
    QVector<QPair<QString, QString>> keys;
    QHash<QString, QString> links;
    while (answer->next()) {
        const QString uri = answer->value(0).toString();
        const QString key = answer->value(2).toString();
        links.insert(uri, answer->value(1).toString());
        if (key.startsWith(prefix))
            keys.append({uri, key});
    }
    for (const auto &[uri, key] : qAsConst(keys))
        links.remove(uri);
    QVector<QPair<QString, QString>> ownLinks;
    for (auto link = links.cbegin(); link != links.cend(); ++link)
        ownLinks.append({link.key(), link.value()});
    return Statements::insertDropped(channelUri, Statements::droppedKey, keys)
        + Statements::insertDropped(channelUri, Statements::droppedLink, ownLinks);
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

// One update remembers and deletes, so that both agree on which messages are favorites.
Result<void> Retention::drop(const QString &channelUri, const QStringList &uris, const RemovalStep &step)
{
    StorePrivate &store = StorePrivate::of(m_store);
    return inChunks(uris, [&](const QStringList &some) -> Result<void> {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        return store.run(Statements::linksAndKeys(some), "read its oldest messages from the store")
            .and_then([&](const Answer &answer) {
                return removeMessages(
                    store, channelUri, some,
                    rememberDropped(answer, channelUri) + Statements::dropMessages(some, channelUri), step);
            });
    });
}

} // namespace Tidel
