// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ICONPLACES_H
#define TIDEL_DESKTOP_ICONPLACES_H

#include <QList>
#include <QUrl>

namespace Tidel {

/// Where the icon of a channel may be.
struct IconPlaces
{
    QUrl feed; ///< The address of the feed.
    QList<QUrl> named; ///< The images that the feed names, the best first.
    QUrl website; ///< The website that the feed names; empty if there is none.

    /// Returns true if \a address may be asked for: it is on the web, on the server of the feed or one of the
    /// same site, which know the reader already, and not less safe than the feed. Otherwise returns false.
    bool mayAsk(const QUrl &address) const;
    /// The page whose icon is that of the website, which mayAsk(); empty if there is none.
    QUrl page() const;
    /// Where a website has its icon if no page names it.
    QUrl usualIcon() const;
};

} // namespace Tidel

#endif
