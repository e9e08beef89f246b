// SPDX-License-Identifier: LGPL-2.1-or-later
#include "jsonobjects.h"

#include <QJsonArray>

#include <TidelReader/schedule.h>
#include <TidelReader/usertext.h>

namespace Tidel {

void addText(QJsonObject &object, const char *key, const QString &value)
{
    if (!value.isEmpty())
        object.insert(QLatin1String(key), value);
}

void addList(QJsonObject &object, const char *key, const QStringList &value)
{
    if (!value.isEmpty())
        object.insert(QLatin1String(key), QJsonArray::fromStringList(value));
}

void addNumber(QJsonObject &object, const char *key, qint64 value)
{
    if (value > 0)
        object.insert(QLatin1String(key), value);
}

void addTime(QJsonObject &object, const char *key, const QDateTime &value)
{
    if (value.isValid())
        object.insert(QLatin1String(key), value.toUTC().toString(Qt::ISODate));
}

QJsonObject channelJson(const FeedChannel &channel)
{
    QJsonObject json;
    addText(json, "uri", channel.uri());
    addText(json, "link", withoutPasswords(channel.link()));
    addText(json, "title", channel.title());
    addText(json, "type", channel.type());
    return json;
}

void addTimes(QJsonObject &object, const FeedChannel &channel, const Schedule &schedule)
{
    addTime(object, "updated", channel.updatedTime());
    addTime(object, "due", schedule.due(channel));
    addText(object, "error", schedule.notes(channel.uri()).error);
}

QJsonObject headlineJson(const MessageHeadline &message)
{
    QJsonObject json{{QStringLiteral("read"), message.isRead},
                     {QStringLiteral("favorite"), message.isFavorite}};
    addText(json, "uri", message.uri);
    addText(json, "link", withoutPasswords(message.link));
    addText(json, "title", message.title);
    addList(json, "channels", message.channels);
    addTime(json, "published", message.published);
    return json;
}

QJsonObject enclosureJson(const FeedEnclosure &enclosure, const EnclosureDetails &details,
                          const QDateTime &queued)
{
    QJsonObject json;
    addText(json, "uri", enclosure.uri());
    addText(json, "url", withoutPasswords(enclosure.remoteUrl()));
    addText(json, "type", enclosure.mimeType());
    addNumber(json, "length", enclosure.length());
    addNumber(json, "duration", details.duration);
    addText(json, "title", details.title);
    addTime(json, "queued", queued);
    addText(json, "file", QUrl(enclosure.localUrl()).toLocalFile());
    return json;
}

} // namespace Tidel
