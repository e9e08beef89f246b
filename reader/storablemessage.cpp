// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storablemessage.h"

#include "detaillimits_p.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

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

namespace {

/// The size of those of \a texts that the store keeps.
int weightOf(const QStringList &texts)
{
    int weight = 0;
    for (const QString &text : texts.mid(0, maximumDetailValues))
        weight += std::min(int(text.size()), maximumDetailLength);
    return weight;
}

} // namespace

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
    // addChild() searches the whole list.
    if (d->enclosureDetails.contains(storable.remoteUrl()))
        d->message.addChild(&storable);
    else
        d->message.addEnclosure(storable);
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

int StorableMessage::weight() const
{
    constexpr int frame = 500; // What the statement says of any message or enclosure.
    const FeedMessage &message = d->message;
    int weight = frame + message.link().size() + message.title().size() + message.description().size()
        + message.summary().size() + weightOf(d->details.authors) + weightOf(d->details.categories)
        + d->details.comments.toString().size() + d->details.thumbnail.toString().size()
        + weightOf({d->details.baseUrl.toString(), d->details.language});
    const QList<FeedEnclosure> enclosures = message.enclosures();
    for (const FeedEnclosure &enclosure : enclosures) {
        const EnclosureDetails details = enclosureDetails(enclosure.remoteUrl());
        // The link stands in the piece that stores the enclosure and in the one that gives it to the message.
        weight += frame + 2 * enclosure.remoteUrl().size() + message.link().size()
            + enclosure.mimeType().size() + weightOf({details.title}) + details.chapters.toString().size();
    }
    return weight;
}

} // namespace Tidel
