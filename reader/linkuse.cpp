// SPDX-License-Identifier: LGPL-2.1-or-later
#include "linkuse.h"

#include "statements_p.h"
#include "store_p.h"

#include <QSet>

namespace Tidel {

class LinkUsePrivate : public QSharedData
{
public:
    QSet<QString> channels;
    QSet<QString> messages;
    QSet<QString> ofChannel;
};

Result<LinkUse> LinkUse::of(const Store &store, const QList<Link> &links, const QString &channelUri)
{
    LinkUse use(new LinkUsePrivate);
    const auto ask = [&](const QList<Link> &some) -> Result<void> {
        QStringList texts;
        for (const Link &link : some)
            texts.append(link.toString());
        return StorePrivate::of(store)
            .run(Statements::linkUse(texts, channelUri), "look up the links of the feed in the store")
            .map([&](const Answer &answer) {
                while (answer->next()) {
                    const QString link = answer->value(0).toString();
                    if (answer->value(1).toBool())
                        use.d->channels.insert(link);
                    if (answer->value(2).toBool())
                        use.d->messages.insert(link);
                    if (answer->value(3).toBool())
                        use.d->ofChannel.insert(link);
                }
            });
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

} // namespace Tidel
