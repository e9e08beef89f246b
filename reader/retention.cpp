// SPDX-License-Identifier: LGPL-2.1-or-later
#include "retention.h"

#include "detailfields_p.h"
#include "headlines_p.h"
#include "itemkey_p.h"
#include "messageremoval_p.h"
#include "statements_p.h"
#include "writeturn.h"

#include <QHash>
#include <QSet>

namespace Tidel {

namespace {

/// The values by which the channel remembers the messages of \a answer: their keys, and the links of those
/// without a key.
QVector<DetailValue> namesOfDropped(const Answer &answer, const QString &channelUri)
{
    const QString prefix = itemKeyPrefix(channelUri);
    QVector<DetailValue> names;
    QHash<QString, QString> links;
    QSet<QString> withKey;
    while (answer->next()) {
        const QString uri = answer->value(0).toString();
        const QString key = answer->value(2).toString();
        links.insert(uri, answer->value(1).toString());
        if (!key.startsWith(prefix))
            continue;
        names.append({Statements::droppedKey, key});
        withKey.insert(uri);
    }
    for (auto link = links.cbegin(); link != links.cend(); ++link) {
        if (!withKey.contains(link.key()))
            names.append({Statements::droppedLink, link.value()});
    }
    return names;
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

// The names are stored before the messages are deleted, so that an interruption between the two loses
// nothing.
Result<void> Retention::drop(const QString &channelUri, const QStringList &uris, const RemovalStep &step)
{
    StorePrivate &store = StorePrivate::of(m_store);
    return inChunks(uris, [&](const QStringList &some) -> Result<void> {
        const WriteTurn turn;
        const auto names =
            store.run(Statements::linksAndKeys(some), "read its oldest messages from the store")
                .map([&](const Answer &answer) { return namesOfDropped(answer, channelUri); });
        if (!names)
            return Failure(names.error());
        if (!names->isEmpty()) {
            const QString insertion = Statements::insertDetails(channelUri, *names);
            const auto kept = store.update(Statements::update(insertion),
                                           "keep the links of deleted messages in the store");
            if (!kept)
                return kept;
        }
        return removeMessages(store, channelUri, some, step);
    });
}

} // namespace Tidel
