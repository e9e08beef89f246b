// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storablemessage.h"

#include <QHash>

namespace Tidel {

class StorableMessagePrivate : public QSharedData
{
public:
    Link link;
    QString key;
    FeedMessage message;
    MessageDetails details;
    QHash<QString, EnclosureDetails> enclosureDetails; // by remote URL
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

void StorableMessage::addEnclosure(const Link &remoteLink, const FeedEnclosure &enclosure,
                                   const EnclosureDetails &details)
{
    if (remoteLink.isNull())
        return;
    FeedEnclosure storable = enclosure;
    storable.setRemoteUrl(remoteLink.toString());
    storable.setLocalUrl(QString());
    d->message.addChild(&storable);
    d->enclosureDetails.insert(remoteLink.toString(), details);
}

void StorableMessage::setDetails(const MessageDetails &details) { d->details = details; }

void StorableMessage::setKey(const QString &key) { d->key = key; }

Link StorableMessage::link() const { return d->link; }

QString StorableMessage::key() const { return d->key; }

FeedMessage StorableMessage::message() const { return d->message; }

MessageDetails StorableMessage::details() const { return d->details; }

EnclosureDetails StorableMessage::enclosureDetails(const QString &remoteUrl) const
{
    return d->enclosureDetails.value(remoteUrl);
}

} // namespace Tidel
