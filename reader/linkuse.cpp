// SPDX-License-Identifier: LGPL-2.1-or-later
#include "linkuse.h"

#include "itemkey_p.h"
#include "knownmessage_p.h"
#include "statements_p.h"
#include "store_p.h"

#include <QHash>
#include <QSet>

namespace Tidel {

class LinkUsePrivate : public QSharedData
{
public:
    QSet<QString> channels;
    QSet<QString> messages;
    QHash<QString, KnownMessage> ofChannel; // by link
};

Result<LinkUse> LinkUse::of(const Store &store, const QList<Link> &links, const QString &channelUri)
{
    LinkUse use(new LinkUsePrivate);
    const QString prefix = itemKeyPrefix(channelUri);
    const char *const attempt = "look up the links of the feed in the store";
    const auto describe = [&](const QStringList &used) {
        return StorePrivate::of(store)
            .run(Statements::linkUse(used, channelUri), attempt)
            .map([&](const Answer &answer) {
                while (answer->next()) {
                    const QString link = answer->value(0).toString();
                    if (answer->value(1).toBool())
                        use.d->channels.insert(link);
                    if (answer->value(2).toBool())
                        use.d->messages.insert(link);
                    if (!answer->value(3).toBool())
                        continue;
                    // A message with several keys is in several rows.
                    KnownMessage &known = use.d->ofChannel[link];
                    known.uri = answer->value(4).toString();
                    known.link = link;
                    known.hasKey |= answer->value(5).toString().startsWith(prefix);
                    known.digest = answer->value(6).toString();
                }
            });
    };
    // Most links of a feed are new, and that question costs a third.
    const auto ask = [&](const QList<Link> &some) {
        QStringList texts;
        for (const Link &link : some)
            texts.append(link.toString());
        return StorePrivate::of(store)
            .texts(Statements::usedLinks(texts), attempt)
            .and_then(
                [&](const QStringList &used) { return used.isEmpty() ? Result<void>() : describe(used); });
    };
    return inChunks(links, ask).map([&] { return use; });
}

LinkUse::LinkUse(LinkUsePrivate *use) : d(use) { }
LinkUse::LinkUse(const LinkUse &other) = default;
LinkUse::LinkUse(LinkUse &&other) noexcept = default;
LinkUse &LinkUse::operator=(const LinkUse &other) = default;
LinkUse &LinkUse::operator=(LinkUse &&other) noexcept = default;
LinkUse::~LinkUse() = default;

bool LinkUse::isOfChannel(const Link &link) const { return d->channels.contains(link.toString()); }

bool LinkUse::isOfMessage(const Link &link) const { return d->messages.contains(link.toString()); }

bool LinkUse::isInChannel(const Link &link) const { return d->ofChannel.contains(link.toString()); }

bool LinkUse::isOfKnownItem(const Link &link) const
{
    const KnownMessage *known = message(link.toString());
    return known && known->hasKey;
}

const KnownMessage *LinkUse::message(const QString &link) const
{
    const auto found = d->ofChannel.constFind(link);
    return found == d->ofChannel.constEnd() ? nullptr : &*found;
}

} // namespace Tidel
