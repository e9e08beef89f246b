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
    const char *const attempt = "look up the items of the feed in the store";
    const auto describe = [&](const QStringList &known) {
        return StorePrivate::of(store)
            .run(Statements::messagesWithKeys(known, channelUri), attempt)
            .map([&](const Answer &answer) {
                while (answer->next())
                    items.d->messages.insert(answer->value(0).toString(),
                                             {answer->value(1).toString(), answer->value(2).toString(),
                                              answer->value(3).toString(), true});
            });
    };
    // Most items that are asked about are new, and that question costs half.
    const auto ask = [&](const QStringList &some) {
        return StorePrivate::of(store)
            .texts(Statements::usedKeys(some), attempt)
            .and_then(
                [&](const QStringList &known) { return known.isEmpty() ? Result<void>() : describe(known); });
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
