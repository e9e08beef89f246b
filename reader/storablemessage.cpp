// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storablemessage.h"

namespace Tidel {

class StorableMessagePrivate : public QSharedData
{
public:
    Link link;
    FeedMessage message;
};

StorableMessage::StorableMessage(const Link &link, const FeedMessage &message) : d(new StorableMessagePrivate)
{
    d->link = link;
    d->message = message;
    d->message.setLink(link.toString());
    d->message.setEnclosures({});
}

StorableMessage::StorableMessage(const StorableMessage &other) = default;
StorableMessage::StorableMessage(StorableMessage &&other) noexcept = default;
StorableMessage &StorableMessage::operator=(const StorableMessage &other) = default;
StorableMessage &StorableMessage::operator=(StorableMessage &&other) noexcept = default;
StorableMessage::~StorableMessage() = default;

void StorableMessage::addEnclosure(const Link &remoteLink, const FeedEnclosure &enclosure)
{
    if (remoteLink.isNull())
        return;
    FeedEnclosure storable = enclosure;
    storable.setRemoteUrl(remoteLink.toString());
    storable.setLocalUrl(QString());
    d->message.addChild(&storable);
}

Link StorableMessage::link() const { return d->link; }

FeedMessage StorableMessage::message() const { return d->message; }

} // namespace Tidel
