// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedchannel.h"
#include "debuglist_p.h"
#include "feedchannel_p.h"

#include <QDebug>

#include <utility>

FeedChannel::FeedChannel() : d(new FeedChannelPrivate) { }

FeedChannel::FeedChannel(const QString &uri, const QString &link, const QString &title,
                         const FeedEnclosure &icon, const QString &type, const QString &description,
                         const QDateTime &subscribedTime, const QDateTime &updatedTime,
                         const QString &lastModifiedTime, QList<FeedMessage> messages)
    : d(new FeedChannelPrivate)
{
    d->uri = uri;
    d->link = link;
    d->title = title;
    d->icon = icon;
    d->type = type;
    d->description = description;
    d->subscribedTime = subscribedTime;
    d->updatedTime = updatedTime;
    d->lastModifiedTime = lastModifiedTime;
    d->messages = std::move(messages);
}

FeedChannel::FeedChannel(const FeedChannel &other) = default;

FeedChannel &FeedChannel::operator=(const FeedChannel &other) = default;

FeedChannel::~FeedChannel() = default;

QString FeedChannel::uri() const { return d->uri; }

QString FeedChannel::link() const { return d->link; }

QString FeedChannel::title() const { return d->title; }

FeedEnclosure FeedChannel::icon() const { return d->icon; }

QString FeedChannel::description() const { return d->description; }

QString FeedChannel::type() const { return d->type; }

QDateTime FeedChannel::subscribedTime() const { return d->subscribedTime; }

QDateTime FeedChannel::updatedTime() const { return d->updatedTime; }

QString FeedChannel::lastModifiedTime() const { return d->lastModifiedTime; }

QList<FeedMessage> FeedChannel::messages() const { return d->messages; }

void FeedChannel::setUri(const QString &uri)
{
    detach();
    d->uri = uri;
}

void FeedChannel::setLink(const QString &link)
{
    detach();
    d->link = link;
}

void FeedChannel::setTitle(const QString &title)
{
    detach();
    d->title = title.simplified();
}

void FeedChannel::setIcon(const FeedEnclosure &icon)
{
    detach();
    d->icon = icon;
}

void FeedChannel::setDescription(const QString &description)
{
    detach();
    d->description = description;
}

void FeedChannel::setType(const QString &type)
{
    detach();
    d->type = type;
}

void FeedChannel::setSubscribedTime(const QDateTime &subscribedTime)
{
    detach();
    d->subscribedTime = subscribedTime;
}

void FeedChannel::setUpdatedTime(const QDateTime &updatedTime)
{
    detach();
    d->updatedTime = updatedTime;
}

void FeedChannel::setLastModifiedTime(const QString &lastModifiedTime)
{
    detach();
    d->lastModifiedTime = lastModifiedTime;
}

void FeedChannel::setMessages(QList<FeedMessage> &messages)
{
    detach();
    d->messages = messages;
}

void FeedChannel::insertMessage(const FeedMessage &message)
{
    // contract: an equal date goes behind the last message, but before a message in the middle. If the held
    // messages are not in order, a message may find no place and is dropped. Hosts know the resulting order.
    QList<FeedMessage> &held = d->messages;
    const QDateTime date = message.publishedDate();
    if (held.isEmpty() || !date.isValid() || !(held.constLast().publishedDate() < date)) {
        held.append(message);
        return;
    }

    for (int i = 0; i < held.size(); ++i) {
        if (!(date < held.at(i).publishedDate())) {
            held.insert(i, message);
            return;
        }
    }
}

void FeedChannel::detach() { d.detach(); }

void FeedChannel::addChild(FeedNode *node)
{
    const auto *message = dynamic_cast<FeedMessage *>(node);
    if (!message)
        return;
    detach();
    insertMessage(*message);
}

// contract: the labels and blanks are uneven, and the times are quoted texts. Log readers compare the text.
QDebug operator<<(QDebug debug, const FeedChannel &channel)
{
    debug << "Channel : ";
    debug << "\n         Type: " << channel.type();
    debug << "\n        Title: " << channel.title();
    debug << "\n          Uri: " << channel.uri();
    debug << "\n         Link: " << channel.link();
    debug << "\n        Image: " << channel.icon();
    debug << "\n  Description: " << channel.description();
    debug << "\nSubscribed Time: " << channel.subscribedTime().toString(Qt::TextDate);
    debug << "\nUpdatedTime: " << channel.updatedTime().toString(Qt::TextDate);
    debug << Qt::endl << "Messages in the channel" << Qt::endl;
    writeDebugList(debug, channel.messages());
    return debug;
}
