// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELS_H
#define TIDEL_CHANNELS_H

#include "details.h"
#include "error.h"
#include "removal.h"
#include "store.h"

#include <QHash>
#include <QList>
#include <QString>

#include <feedchannel.h>

namespace Tidel {

/// The channels of a store.
class TIDELREADER_EXPORT Channels
{
public:
    /// Works on \a store.
    explicit Channels(const Store &store);

    /// All channels by title, each once, without their messages, icons and descriptions.
    Result<QList<FeedChannel>> all() const;
    /// The one of \a channels that the user calls \a name: its URI, its link, the path of its file, or its
    /// title if no other channel has the same one. Fails with Error::NotFound or Error::Ambiguous.
    static Result<FeedChannel> find(const QList<FeedChannel> &channels, const QString &name);
    /// Those of \a channels that the user may call \a name: those with this title in any case, or those whose
    /// titles contain it if no title is it.
    static QList<FeedChannel> titled(const QList<FeedChannel> &channels, const QString &name);
    /// The title of a channel that nobody has given one, until its feed is read: \a link without password.
    static QString titleWithoutFeed(const QString &link);
    /// The URI of the channel with the link \a link; empty if there is none.
    Result<QString> uri(const QString &link) const;
    /// The title of the channel with the link \a link. Fails with Error::NotFound.
    Result<QString> title(const QString &link) const;
    /// What the feeds of the channels \a uris say of themselves. Channels without details are left out.
    Result<QHash<QString, ChannelDetails>> details(const QStringList &uris) const;
    /// The number of messages of each channel by its URI. A channel without messages is left out.
    Result<QHash<QString, int>> messageCounts() const;
    /// The address of the image of each channel by its URI: that of its file, if it has one. A channel
    /// without an image is left out.
    Result<QHash<QString, QString>> images() const;

    /// Stores \a channel without its messages, with its icon as an enclosure, and returns its new URI. Fails
    /// with Error::AlreadyStored if a channel has the link. The caller has its WriteTurn.
    Result<QString> add(const FeedChannel &channel);
    /// Gives the channel \a uri, whose feed is read for the first time, the type and the icon of \a feed, and
    /// its title if it has none but titleWithoutFeed(). The caller has its WriteTurn.
    Result<void> describe(const QString &uri, const FeedChannel &feed);
    /// Gives the stored channel \a channel another title and another link in one update. What is known of the
    /// old document is forgotten, so that the next refresh reads the new one. Fails with Error::LinkInUse if
    /// another channel or a message has \a link.
    Result<void> edit(const FeedChannel &channel, const QString &title, const QString &link);
    /// Lets the channel \a uri be asked for at most every \a seconds; 0 leaves it to its server. It is due
    /// then.
    Result<void> setInterval(const QString &uri, int seconds);
    /// What becomes of the favorites of a channel that is deleted.
    enum Favorites {
        DeleteFavorites, ///< They are deleted with the channel.
        KeepFavorites ///< They stay, and belong to no channel if no other channel holds them.
    };
    /// Deletes \a channel with its messages, which stay with the other channels that hold them. \a step is
    /// called after each update. Takes a WriteTurn for each hundred messages.
    Result<void> remove(const FeedChannel &channel, const RemovalStep &step,
                        Favorites favorites = DeleteFavorites);

private:
    Store m_store;
};

} // namespace Tidel

#endif
