// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedmessage.h"
#include "debuglist_p.h"
#include "feedmessage_p.h"

#include <QDebug>

#include <algorithm>
#include <utility>

FeedMessage::FeedMessage() : d(new FeedMessagePrivate) { }

FeedMessage::FeedMessage(const QString &title, const QString &link, const QString &description,
                         const QDateTime &downloadedTime)
    : d(new FeedMessagePrivate)
{
    d->title = title;
    d->link = link;
    d->description = description;
    d->downloadedTime = downloadedTime;
}

FeedMessage::FeedMessage(const QString &title, const QString &link, const QString &id,
                         const QString &description, const QString &summary, const QDateTime &publishedDate,
                         const QList<FeedEnclosure> &enclosures, const QDateTime &downloadedTime,
                         bool favorite)
    : d(new FeedMessagePrivate)
{
    d->title = title;
    d->link = link;
    d->id = id;
    d->description = description;
    d->summary = summary;
    d->publishedDate = publishedDate;
    d->enclosures = enclosures;
    d->downloadedTime = downloadedTime;
    d->favorite = favorite;
}

FeedMessage::FeedMessage(const FeedMessage &other) = default;

FeedMessage &FeedMessage::operator=(const FeedMessage &other) = default;

FeedMessage::~FeedMessage() = default;

QString FeedMessage::title() const { return d->title; }

QString FeedMessage::link() const { return d->link; }

QString FeedMessage::id() const { return d->id; }

QString FeedMessage::description() const { return d->description; }

QString FeedMessage::summary() const { return d->summary; }

QUrl FeedMessage::baseUrl() const { return d->baseUrl; }

QDateTime FeedMessage::publishedDate() const { return d->publishedDate; }

QDateTime FeedMessage::downloadedTime() const { return d->downloadedTime; }

bool FeedMessage::isFavorite() const { return d->favorite; }

QList<FeedEnclosure> FeedMessage::enclosures() const { return d->enclosures; }

void FeedMessage::setTitle(const QString &title)
{
    detach();
    d->title = title;
}

void FeedMessage::setLink(const QString &link)
{
    detach();
    d->link = link.trimmed();
}

void FeedMessage::setId(const QString &id)
{
    detach();
    d->id = id;
}

void FeedMessage::setDescription(const QString &description)
{
    detach();
    d->description = description;
}

void FeedMessage::setSummary(const QString &summary)
{
    detach();
    d->summary = summary;
}

void FeedMessage::setBaseUrl(const QUrl &baseUrl)
{
    detach();
    d->baseUrl = baseUrl;
}

void FeedMessage::setPublishedDate(const QDateTime &publishedDate)
{
    detach();
    d->publishedDate = publishedDate;
}

void FeedMessage::setDownloadedTime(const QDateTime &downloadedTime)
{
    detach();
    d->downloadedTime = downloadedTime;
}

void FeedMessage::setFavorite(bool favorite)
{
    detach();
    d->favorite = favorite;
}

void FeedMessage::addEnclosure(const FeedEnclosure &enclosure)
{
    detach();
    d->enclosures.append(enclosure);
}

void FeedMessage::addEnclosure(const QList<FeedEnclosure> &enclosures)
{
    detach();
    d->enclosures.append(enclosures);
}

void FeedMessage::setEnclosures(QList<FeedEnclosure> enclosures)
{
    detach();
    d->enclosures = std::move(enclosures);
}

void FeedMessage::detach() { d.detach(); }

void FeedMessage::addChild(FeedNode *node)
{
    const auto *enclosure = dynamic_cast<FeedEnclosure *>(node);
    if (!enclosure)
        return;
    detach();

    QList<FeedEnclosure> &held = d->enclosures;
    const auto sameFile = [enclosure](const FeedEnclosure &other) {
        return other.remoteUrl() == enclosure->remoteUrl();
    };
    const auto found = std::find_if(held.cbegin(), held.cend(), sameFile);
    if (found == held.cend())
        held.append(*enclosure);
    else if (found->sourceNamespace().isEmpty())
        held.replace(found - held.cbegin(), *enclosure);
}

// contract: the labels and blanks are uneven, and the times are not quoted. Log readers compare the text.
QDebug operator<<(QDebug debug, const FeedMessage &message)
{
    debug << "\nFeed Message: ";
    debug << "\n         Title: " << message.title();
    debug << "\n         Link: " << message.link();
    debug << "\n         Description: " << message.description();
    debug << "\n         Summary: " << message.summary();
    debug << "\n         Published Date: " << message.publishedDate();
    debug << "\n         Downloaded Time: " << message.downloadedTime();
    debug << "\n         Favorite: " << message.isFavorite();
    debug << "\n         Id:       " << message.id();
    debug << "\n         Enclosures: ";
    writeDebugList(debug, message.enclosures());
    return debug;
}
