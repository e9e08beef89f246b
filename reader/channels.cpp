// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channels.h"

#include "detailfields_p.h"
#include "documenturl.h"
#include "link.h"
#include "messageremoval_p.h"
#include "statements_p.h"
#include "usertext.h"
#include "writeturn.h"

#include <feedtrackersparql.h>

#include <algorithm>

namespace Tidel {

namespace {

void sortByTitle(QList<FeedChannel> &channels)
{
    std::sort(channels.begin(), channels.end(), [](const FeedChannel &a, const FeedChannel &b) {
        const int order = QString::compare(a.title(), b.title(), Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.link() < b.link();
    });
}

/// Fails if \a link belongs to a channel other than \a channel or to a message. Messages are told from
/// channels by their links.
Result<void> checkLink(const Channels &channels, StorePrivate &store, const FeedChannel &channel,
                       const QString &link)
{
    const auto inUse = [](const QString &reason) { return Failure(Error(Error::LinkInUse, {}, reason)); };
    const Result<QString> owner = channels.uri(link);
    if (!owner)
        return Failure(owner.error());
    if (!owner->isEmpty() && *owner != channel.uri())
        return inUse(
            QStringLiteral("is the link of another channel, %1").arg(channels.title(link).value_or(*owner)));
    const auto messages =
        store.texts(Statements::messageWithLink(QUrl(link)), "look up the link in the store");
    if (!messages)
        return Failure(messages.error());
    return messages->isEmpty() ? Result<void>() : inUse(QStringLiteral("is the link of a message"));
}

Error alreadyStored() { return Error(Error::AlreadyStored, {}, QStringLiteral("is subscribed already")); }
/// The piece of an update that gives the channel \a uri the icon \a icon; empty if there is no icon.
Result<QString> insertionOfIcon(StorePrivate &store, const FeedEnclosure &icon, const QString &uri,
                                const char *attempt)
{
    const QString address = icon.remoteUrl();
    if (address.isEmpty())
        return QString();
    return store.texts(Statements::knownRemoteLinks({address}), attempt).map([&](const QStringList &known) {
        const QString insertion = known.isEmpty()
            ? Statements::insertEnclosure(icon, store.connection.createUrn().toString())
            : QString();
        return insertion + Statements::linkEnclosure(address, uri);
    });
}

} // namespace

Channels::Channels(const Store &store) : m_store(store) { }

Result<QList<FeedChannel>> Channels::all() const
{
    return StorePrivate::of(m_store)
        .run(Statements::channels(), "read the channels from the store")
        .map([](const Answer &answer) {
            QList<FeedChannel> channels = eachOnce(answer, extractChannel);
            sortByTitle(channels);
            return channels;
        });
}

Result<FeedChannel> Channels::find(const QList<FeedChannel> &channels, const QString &name)
{
    const QString link = Link::encoded(documentUrl(name));
    const QString shownLink = withoutPasswords(link);
    const QString title = name.simplified();
    QList<FeedChannel> shownAsName;
    QList<FeedChannel> sameTitle;
    for (const FeedChannel &channel : channels) {
        if (channel.uri() == name || channel.link() == name || channel.link() == link)
            return channel;
        const bool isSameButUser = channel.link().contains(QLatin1Char('@'))
            && Link::encoded(QUrl(channel.link()).adjusted(QUrl::RemoveUserInfo)) == link;
        if (isSameButUser || withoutPasswords(channel.link()) == link || channel.link() == shownLink)
            shownAsName.append(channel);
        if (channel.title() == title)
            sameTitle.append(channel);
    }
    if (shownAsName.size() == 1)
        return shownAsName.first();
    if (!shownAsName.isEmpty())
        return Failure(Error(Error::Ambiguous, {},
                             QStringLiteral("%1 channels differ from it in their users or passwords alone")
                                 .arg(shownAsName.size())));
    if (sameTitle.size() == 1)
        return sameTitle.first();
    if (sameTitle.isEmpty())
        return Failure(Error(Error::NotFound, {}, QStringLiteral("no such channel")));
    return Failure(
        Error(Error::Ambiguous, {}, QStringLiteral("%1 channels have this title").arg(sameTitle.size())));
}

QList<FeedChannel> Channels::titled(const QList<FeedChannel> &channels, const QString &name)
{
    const QString title = name.simplified();
    QList<FeedChannel> same;
    QList<FeedChannel> others;
    for (const FeedChannel &channel : channels) {
        if (channel.title().compare(title, Qt::CaseInsensitive) == 0)
            same.append(channel);
        else if (!title.isEmpty() && channel.title().contains(title, Qt::CaseInsensitive))
            others.append(channel);
    }
    return same.isEmpty() ? others : same;
}

QString Channels::titleWithoutFeed(const QString &link)
{
    return QUrl(link).toDisplayString(QUrl::RemovePassword);
}

Result<QString> Channels::uri(const QString &link) const
{
    return StorePrivate::of(m_store)
        .texts(Statements::channelWithLink(link), "look up the channel in the store")
        .map([](const QStringList &uris) { return uris.value(0); });
}

Result<QString> Channels::title(const QString &link) const
{
    return StorePrivate::of(m_store)
        .texts(Statements::titleOfLink(link), "read the title of the channel from the store")
        .and_then([](const QStringList &titles) -> Result<QString> {
            if (titles.isEmpty())
                return Failure(Error(Error::NotFound, {}, QStringLiteral("no such channel")));
            return titles.first();
        });
}

Result<QHash<QString, ChannelDetails>> Channels::details(const QStringList &uris) const
{
    return readDetails<ChannelDetails>(StorePrivate::of(m_store), uris,
                                       "read the details of channels from the store");
}

// To count messages by their class would take several times as long.
Result<QHash<QString, int>> Channels::messageCounts() const
{
    StorePrivate &store = StorePrivate::of(m_store);
    const char *const attempt = "count the messages in the store";
    return store.counts(Statements::partCounts(), attempt).and_then([&](QHash<QString, int> counts) {
        return store.counts(Statements::imageCounts(), attempt).map([&](const QHash<QString, int> &images) {
            subtract(&counts, images);
            return counts;
        });
    });
}

Result<QHash<QString, QString>> Channels::images() const
{
    return StorePrivate::of(m_store)
        .run(Statements::imagesOfChannels(), "read the images of the channels from the store")
        .map([](const Answer &answer) {
            QHash<QString, QString> images;
            while (answer->next()) {
                const QString file = answer->value(2).toString();
                images.insert(answer->value(0).toString(),
                              file.isEmpty() ? answer->value(1).toString() : file);
            }
            return images;
        });
}

Result<QString> Channels::add(const FeedChannel &channel)
{
    StorePrivate &store = StorePrivate::of(m_store);
    const char *const attempt = "add the channel to the store";
    const Result<QString> known = uri(channel.link());
    if (!known)
        return known;
    if (!known->isEmpty())
        return Failure(alreadyStored());

    const QString newUri = store.connection.createUrn().toString();
    return insertionOfIcon(store, channel.icon(), newUri, attempt).and_then([&](const QString &icon) {
        const Result<void> added =
            store.update(Statements::update(Statements::insertChannel(channel, newUri) + icon), attempt);
        if (added)
            return Result<QString>(newUri);
        const bool isOutOfDate = added.error().kind() == Error::StoreRefused
            && !this->uri(channel.link()).value_or(QString()).isEmpty();
        return Result<QString>(Failure(isOutOfDate ? alreadyStored() : added.error()));
    });
}

Result<void> Channels::describe(const QString &uri, const FeedChannel &feed)
{
    StorePrivate &store = StorePrivate::of(m_store);
    const char *const attempt = "describe the channel in the store";
    const Result<QString> icon = insertionOfIcon(store, feed.icon(), uri, attempt);
    if (!icon)
        return Failure(icon.error());
    QString changes = Statements::replaceType(uri, feed.type()) + *icon;
    if (title(feed.link()) == titleWithoutFeed(feed.link()))
        changes += Statements::replaceTitle(uri, feed.title());
    return store.updateLoosely(Statements::update(changes), attempt);
}

Result<void> Channels::edit(const FeedChannel &channel, const QString &title, const QString &link)
{
    StorePrivate &store = StorePrivate::of(m_store);
    QString changes;
    if (link != channel.link()) {
        const Result<void> isFree = checkLink(*this, store, channel, link);
        if (!isFree)
            return isFree;
        changes += Statements::replaceLink(channel.uri(), channel.link(), link)
            + Statements::replaceNotes(channel.uri(), detailNames<FeedNotes>(), {});
    }
    if (title != channel.title())
        changes += Statements::replaceTitle(channel.uri(), title);
    return store.update(Statements::update(changes), "change the channel in the store");
}

Result<void> Channels::setInterval(const QString &uri, int seconds)
{
    return StorePrivate::of(m_store).update(Statements::update(Statements::replaceInterval(uri, seconds)),
                                            "change in the store how often the channel is asked for");
}

namespace {

/// Deletes \a channel, which has no messages, with its image.
Result<void> removeEmptied(StorePrivate &store, const FeedChannel &channel, const RemovalStep &step)
{
    const auto images =
        readFiles(store, Statements::enclosuresOfOwners({channel.uri()}), "find the image of the channel");
    if (!images)
        return Failure(images.error());
    return updateAndRelease(store, Statements::deleteChannel(channel.uri(), channel.link()), *images,
                            "delete the channel from the store")
        .map([&](const QList<FeedEnclosure> &deleted) { step(0, deleted); });
}

/// Takes \a messages out of the channel, and deletes those that no other channel holds, except favorites.
Result<void> removeButFavorites(StorePrivate &store, const QString &channelUri, QStringList messages,
                                const RemovalStep &step)
{
    const auto favorites =
        store.texts(Statements::favoritesAmong(messages), "find the favorites of the channel");
    if (!favorites)
        return Failure(favorites.error());
    QString removal = Statements::forgetValidators(channelUri);
    for (const QString &favorite : *favorites)
        messages.removeAll(favorite);
    if (!favorites->isEmpty())
        removal += Statements::release(*favorites, channelUri);
    // The next turn finds what has become a favorite since.
    removal += Statements::dropMessages(messages, channelUri, Statements::Spared::Favorites);
    return removeMessages(store, channelUri, messages, removal, step);
}

} // namespace

// Each turn asks again, because between two turns a refresh can add messages.
Result<void> Channels::remove(const FeedChannel &channel, const RemovalStep &step, Favorites favorites)
{
    StorePrivate &store = StorePrivate::of(m_store);
    while (true) {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        const auto messages = store.texts(Statements::messageUrisOf(channel.uri(), chunkSize),
                                          "find the messages of the channel");
        if (!messages)
            return Failure(messages.error());
        if (messages->isEmpty())
            return removeEmptied(store, channel, step);
        // If this is interrupted, a refresh brings back what the feed shows.
        const QString removal = Statements::forgetValidators(channel.uri())
            + Statements::removeMessages(*messages, channel.uri());
        const Result<void> removed = favorites == KeepFavorites
            ? removeButFavorites(store, channel.uri(), *messages, step)
            : removeMessages(store, channel.uri(), *messages, removal, step);
        if (!removed)
            return removed;
    }
}

} // namespace Tidel
