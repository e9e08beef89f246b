// SPDX-License-Identifier: LGPL-2.1-or-later
#include "knownitems.h"

#include "knownmessage_p.h"
#include "statements_p.h"
#include "store_p.h"

#include <QHash>

namespace Tidel {

class KnownItemsPrivate : public QSharedData
{
public:
    QHash<QString, KnownMessage> messages; // by key
};

Result<KnownItems> KnownItems::of(const Store &store, const QStringList &keys, const QString &channelUri)
{
    KnownItems items;
    const auto ask = [&](const QStringList &some) {
        return StorePrivate::of(store)
            .run(Statements::messagesWithKeys(some, channelUri), "look up the items of the feed in the store")
            .map([&](const Answer &answer) {
                while (answer->next())
                    items.d->messages.insert(answer->value(0).toString(),
                                             {answer->value(1).toString(), answer->value(2).toString(),
                                              answer->value(3).toString(), true});
            });
    };
    return inChunks(keys, ask).map([&] { return items; });
}

KnownItems::KnownItems() : d(new KnownItemsPrivate) { }
KnownItems::KnownItems(const KnownItems &other) = default;
KnownItems::KnownItems(KnownItems &&other) noexcept = default;
KnownItems &KnownItems::operator=(const KnownItems &other) = default;
KnownItems &KnownItems::operator=(KnownItems &&other) noexcept = default;
KnownItems::~KnownItems() = default;

Link KnownItems::link(const QString &key) const
{
    const KnownMessage *known = message(key);
    return known ? Link::fromEncoded(known->link) : Link();
}

const KnownMessage *KnownItems::message(const QString &key) const
{
    const auto found = d->messages.constFind(key);
    return found == d->messages.constEnd() ? nullptr : &*found;
}

} // namespace Tidel
