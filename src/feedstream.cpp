// SPDX-License-Identifier: LGPL-2.1-or-later
// contract: the order of the fields, such as the namespace at the end of an enclosure and the id behind the
// flag of a message. The stream has no version; other programs read and write this order.
// contract: the readers do not call detach(), so copies change too. Hosts share records on purpose.
#include "feedchannel_p.h"
#include "feedenclosure_p.h"
#include "feedmessage_p.h"
#include "streamlist_p.h"

#include <QTimeZone>

namespace {

/// Returns an invalid time if the zone of \a time is unknown; otherwise returns \a time. Qt 5 crashes when it
/// writes or prints a time with such a zone, which a stream can contain.
QDateTime withKnownZone(const QDateTime &time)
{
    const bool isUnknown = time.timeSpec() == Qt::TimeZone && !time.timeZone().isValid();
    return isUnknown ? QDateTime() : time;
}

void readTime(QDataStream &stream, QDateTime &time)
{
    stream >> time;
    time = withKnownZone(time);
}

} // namespace

QDataStream &operator<<(QDataStream &stream, const FeedEnclosure &enclosure)
{
    return stream << enclosure.uri() << enclosure.remoteUrl() << enclosure.localUrl()
                  << quint32(enclosure.length()) << qint32(enclosure.type()) << quint32(enclosure.groupId())
                  << enclosure.isDefault() << enclosure.mimeType() << enclosure.typeIcon()
                  << enclosure.sourceNamespace();
}

QDataStream &operator>>(QDataStream &stream, FeedEnclosure &enclosure)
{
    FeedEnclosurePrivate &d = *enclosure.d;
    qint32 type = -1;
    stream >> d.uri >> d.remoteUrl >> d.localUrl >> d.length >> type >> d.groupId >> d.isDefault;
    stream >> d.mimeType >> d.typeIcon >> d.sourceNamespace;
    // contract: not checked. Unknown values come back as they were written.
    d.type = FeedEnclosure::Type(type);
    return stream;
}

QDataStream &operator>>(QDataStream &stream, QList<FeedEnclosure> &enclosures)
{
    return readStreamList(stream, enclosures);
}

QDataStream &operator<<(QDataStream &stream, const FeedMessage &message)
{
    return stream << message.title() << message.link() << message.description() << message.summary()
                  << message.baseUrl() << withKnownZone(message.publishedDate())
                  << withKnownZone(message.downloadedTime()) << message.isFavorite() << message.id()
                  << message.enclosures();
}

QDataStream &operator>>(QDataStream &stream, FeedMessage &message)
{
    FeedMessagePrivate &d = *message.d;
    // Reading into a URL that is not empty would keep its old query and fragment.
    QUrl baseUrl;
    stream >> d.title >> d.link >> d.description >> d.summary >> baseUrl;
    d.baseUrl = baseUrl;
    readTime(stream, d.publishedDate);
    readTime(stream, d.downloadedTime);
    return stream >> d.favorite >> d.id >> d.enclosures;
}

QDataStream &operator>>(QDataStream &stream, QList<FeedMessage> &messages)
{
    return readStreamList(stream, messages);
}

QDataStream &operator<<(QDataStream &stream, const FeedChannel &channel)
{
    return stream << channel.type() << channel.title() << channel.uri() << channel.link() << channel.icon()
                  << channel.description() << withKnownZone(channel.subscribedTime())
                  << withKnownZone(channel.updatedTime()) << channel.lastModifiedTime() << channel.messages();
}

QDataStream &operator>>(QDataStream &stream, FeedChannel &channel)
{
    FeedChannelPrivate &d = *channel.d;
    stream >> d.type >> d.title >> d.uri >> d.link >> d.icon >> d.description;
    readTime(stream, d.subscribedTime);
    readTime(stream, d.updatedTime);
    return stream >> d.lastModifiedTime >> d.messages;
}
