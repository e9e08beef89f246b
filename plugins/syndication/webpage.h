// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_WEBPAGE_H
#define TIDEL_WEBPAGE_H

#include "feeddocument.h"
#include "feedlinks.h"
#include "outcome.h"

namespace Tidel {

/// A web page in place of a feed, and where its feed may be: at the only address that the page and its server
/// name, or at usual places if they name none.
class WebPage
{
public:
    /// Looks for the feeds of \a page.
    explicit WebPage(const FeedDocument &page);

    /// The feeds that the page and its server name, each once. Only a page in a local file names local files.
    const QVector<FeedLink> &feeds() const { return m_feeds; }
    /// Returns the next address at which the feed may be; empty if no other is left.
    QUrl takePlace();
    /// The outcome of a subscription when no place is left. The last one failed with \a outcome.
    Outcome conclusion(const Outcome &outcome) const;

private:
    QVector<FeedLink> m_feeds;
    QVector<QUrl> m_places;
};

} // namespace Tidel

#endif
