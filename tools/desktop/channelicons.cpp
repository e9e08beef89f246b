// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelicons.h"

#include "answer.h"
#include "iconcache.h"
#include "paintedicon.h"

#include <TidelReader/archive.h>
#include <TidelReader/channels.h>

namespace Tidel {

namespace {

using Places = QHash<QString, IconPlaces>;

bool isOnWeb(const QUrl &address)
{
    return address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
}

/// Adds what the feeds say of themselves to \a places.
Result<Places> withDetails(const Store &store, Places places)
{
    const Channels channels(store);
    return channels.images().and_then([&](const QHash<QString, QString> &images) {
        return channels.details(places.keys()).map([&](const QHash<QString, ChannelDetails> &details) {
            for (auto place = places.begin(); place != places.end(); ++place) {
                const ChannelDetails said = details.value(place.key());
                place->named = {QUrl(images.value(place.key())), said.image.toUrl()};
                place->website = said.website.toUrl();
            }
            return places;
        });
    });
}

/// The places of the icons that are due, without those of the channels \a except.
Result<Places> duePlaces(const Store &store, const QSet<QString> &except)
{
    const Result<QList<FeedChannel>> channels = Channels(store).all();
    if (!channels)
        return Failure(channels.error());
    Places places;
    for (const FeedChannel &channel : *channels) {
        const QUrl feed(channel.link());
        if (isOnWeb(feed) && !except.contains(channel.uri()) && IconCache::isDue(channel.uri()))
            places.insert(channel.uri(), {feed, {}, {}});
    }
    return places.isEmpty() ? Result<Places>(places) : withDetails(store, places);
}

} // namespace

ChannelIcons::ChannelIcons(Archive *archive, QObject *parent) : QObject(parent), m_archive(archive)
{
    connect(&m_fetcher, &IconFetcher::ended, this, &ChannelIcons::keep);
    connect(archive, &Archive::channelsRemoved, this, &ChannelIcons::forget);
}

void ChannelIcons::setEnabled(bool isEnabled)
{
    m_isEnabled = isEnabled;
    if (!isEnabled)
        m_fetcher.stop();
    Q_EMIT changed();
}

QIcon ChannelIcons::icon(const QString &uri) const
{
    if (!m_isEnabled)
        return {};
    const auto known = m_icons.constFind(uri);
    return known == m_icons.cend() ? *m_icons.insert(uri, pictureIcon(IconCache::icon(uri))) : *known;
}

void ChannelIcons::look()
{
    if (!m_isEnabled)
        return;
    const auto due = [except = m_unanswered](const Store &store) { return duePlaces(store, except); };
    whenAnswered(m_archive->read(due), this, [this](const Result<Places> &places) {
        // Without the store, the letters remain.
        if (!places || !m_isEnabled)
            return;
        for (auto place = places->cbegin(); place != places->cend(); ++place)
            m_fetcher.fetch(place.key(), place.value());
    });
}

void ChannelIcons::keep(const QString &uri, const QImage &icon, bool isAnswered)
{
    if (!isAnswered) {
        m_unanswered.insert(uri);
        return;
    }
    IconCache::keep(uri, icon);
    if (icon.isNull())
        return;
    m_icons.insert(uri, pictureIcon(icon));
    Q_EMIT changed();
}

void ChannelIcons::forget(const QStringList &uris)
{
    for (const QString &uri : uris) {
        IconCache::remove(uri);
        m_icons.remove(uri);
    }
}

} // namespace Tidel
