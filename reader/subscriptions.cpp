// SPDX-License-Identifier: LGPL-2.1-or-later
#include "subscriptions.h"

#include "channels.h"
#include "detailfields_p.h"
#include "folders.h"
#include "statements_p.h"
#include "writeturn.h"

#include <QSet>

#include <algorithm>

namespace Tidel {

namespace {

QString insertionOf(const Subscription &subscription, const FeedChannel &channel)
{
    ChannelDetails details;
    details.website = subscription.website;
    QVector<DetailValue> values = detailValues(details);
    const QString folder = Folders::path(subscription.folder);
    if (!folder.isEmpty())
        values.append({Statements::folder, folder});
    return Statements::insertChannel(channel, channel.uri())
        + Statements::insertDetails(channel.uri(), values);
}

/// Stores channels for \a some, which are few, and appends them to \a added.
Result<void> addSome(const Store &store, const QList<Subscription> &some, QList<FeedChannel> *added)
{
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn)
        return Failure(turn.error());
    return Subscriptions(store).missing(some).and_then([&](const QList<Subscription> &missing) {
        QString insertion;
        QList<FeedChannel> channels;
        for (const Subscription &subscription : missing) {
            const QString link = subscription.link.toString();
            FeedChannel channel;
            channel.setUri(StorePrivate::of(store).connection.createUrn().toString());
            channel.setLink(link);
            channel.setTitle(subscription.title.isEmpty() ? Channels::titleWithoutFeed(link)
                                                          : subscription.title);
            insertion += insertionOf(subscription, channel);
            channels.append(channel);
        }
        const Result<void> stored = channels.isEmpty()
            ? Result<void>()
            : StorePrivate::of(store).update(Statements::update(insertion), "add the channels to the store");
        return stored.map([&] { *added += channels; });
    });
}

} // namespace

Subscriptions::Subscriptions(const Store &store) : m_store(store) { }

Result<QList<Subscription>> Subscriptions::all() const
{
    const Result<QList<FeedChannel>> channels = Channels(m_store).all();
    if (!channels)
        return Failure(channels.error());
    const Result<QHash<QString, QString>> folders = Folders(m_store).all();
    if (!folders)
        return Failure(folders.error());
    return StorePrivate::of(m_store)
        .values(Statements::everyDetail(Statements::website),
                "read the websites of the channels from the store")
        .map([&](const QHash<QString, QString> &websites) {
            QList<Subscription> subscriptions;
            for (const FeedChannel &channel : *channels) {
                const Link link = Link::fromEncoded(channel.link());
                if (!link.isNull())
                    subscriptions.append({link, channel.title(),
                                          Link::fromEncoded(websites.value(channel.uri())),
                                          Folders::names(folders->value(channel.uri()))});
            }
            std::stable_sort(
                subscriptions.begin(), subscriptions.end(),
                [](const Subscription &a, const Subscription &b) { return a.folder < b.folder; });
            return subscriptions;
        });
}

Result<QList<Subscription>> Subscriptions::missing(const QList<Subscription> &wanted) const
{
    QList<Subscription> missing;
    QSet<QString> known;
    const Result<void> asked = inChunks(wanted, [&](const QList<Subscription> &some) {
        QStringList links;
        for (const Subscription &subscription : some)
            links.append(subscription.link.toString());
        return StorePrivate::of(m_store)
            .texts(Statements::linksOfChannels(links), "look up the channels in the store")
            .map([&](const QStringList &stored) {
                for (const QString &link : stored)
                    known.insert(link);
                for (const Subscription &subscription : some) {
                    const QString link = subscription.link.toString();
                    if (!known.contains(link))
                        missing.append(subscription);
                    known.insert(link);
                }
            });
    });
    return asked.map([&] { return missing; });
}

Result<QList<FeedChannel>> Subscriptions::add(const QList<Subscription> &wanted)
{
    QList<FeedChannel> added;
    return inChunks(wanted, [&](const QList<Subscription> &some) { return addSome(m_store, some, &added); })
        .map([&] { return added; });
}

} // namespace Tidel
