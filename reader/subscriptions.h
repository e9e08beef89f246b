// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SUBSCRIPTIONS_H
#define TIDEL_SUBSCRIPTIONS_H

#include "error.h"
#include "link.h"
#include "store.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <feedchannel.h>

namespace Tidel {

/// A feed as lists of subscriptions have it.
struct Subscription
{
    Link link; ///< The address of the feed.
    QString title; ///< The title that the user gave it, plain text; may be empty.
    Link website; ///< Null if there is none.
    QStringList folder; ///< The names of its folder, the outermost first; empty if it is in none.
};

/// What the user is subscribed to, as one list that other programs can be given.
class TIDELREADER_EXPORT Subscriptions
{
public:
    /// Works on \a store.
    explicit Subscriptions(const Store &store);

    /// The subscriptions by folder and title. Those outside folders come first.
    Result<QList<Subscription>> all() const;
    /// Those of \a wanted that no channel has the link of, each link once.
    Result<QList<Subscription>> missing(const QList<Subscription> &wanted) const;
    /// Stores channels for those of \a wanted that are missing, and returns them. They have no messages until
    /// they are refreshed. Takes a WriteTurn for each hundred; what was stored before a failure stays.
    Result<QList<FeedChannel>> add(const QList<Subscription> &wanted);

private:
    Store m_store;
};

} // namespace Tidel

#endif
