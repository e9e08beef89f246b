// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_WEBLINKS_H
#define TIDEL_DESKTOP_WEBLINKS_H

#include <QUrl>

namespace Tidel {

/// Returns true if \a link leads to a web server; otherwise returns false.
inline bool isWebLink(const QUrl &link)
{
    return link.isValid() && !link.host().isEmpty()
        && (link.scheme() == QLatin1String("http") || link.scheme() == QLatin1String("https"));
}

/// Returns true if \a link may leave an article: to a web server or into a letter. Otherwise returns false.
inline bool mayFollow(const QUrl &link)
{
    return isWebLink(link) || link.scheme() == QLatin1String("mailto");
}

} // namespace Tidel

#endif
