// SPDX-License-Identifier: LGPL-2.1-or-later
#include "iconplaces.h"

namespace Tidel {

namespace {

const QString http = QStringLiteral("http");
const QString https = QStringLiteral("https");

/// The host of \a address without the name that most websites have.
QString siteOf(const QUrl &address)
{
    const QString host = address.host();
    return host.startsWith(QLatin1String("www.")) ? host.mid(4) : host;
}

bool isWithin(const QString &host, const QString &site)
{
    return host == site || host.endsWith(QLatin1Char('.') + site);
}

} // namespace

bool IconPlaces::mayAsk(const QUrl &address) const
{
    const bool isSafe = address.scheme() == https || (address.scheme() == http && feed.scheme() == http);
    const QString site = siteOf(feed);
    const QString other = siteOf(address);
    return isSafe && !site.isEmpty() && !other.isEmpty() && (isWithin(site, other) || isWithin(other, site));
}

QUrl IconPlaces::page() const { return mayAsk(website) ? website : QUrl(); }

QUrl IconPlaces::usualIcon() const
{
    const QUrl base = page().isEmpty() ? feed : page();
    return base.resolved(QUrl(QStringLiteral("/favicon.ico")));
}

} // namespace Tidel
