// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDLINKS_H
#define TIDEL_FEEDLINKS_H

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QVector>

namespace Tidel {

/// A feed that a web page names.
struct FeedLink
{
    QString title; ///< Plain text; may be empty.
    QUrl address; ///< Absolute, without a fragment: http or https, or a file if the page is one.
};

/// The feeds that the web page \a html names in `<link rel="alternate">`, each once, 50 at most. \a page is
/// its address, \a charset the character set that its server named.
QVector<FeedLink> feedLinksOfPage(const QByteArray &html, const QUrl &page, const QByteArray &charset);

/// The feeds that the `Link:` header \a header names, each once, 50 at most. \a page is the address that it
/// belongs to.
QVector<FeedLink> feedLinksOfHeader(const QByteArray &header, const QUrl &page);

/// Eight addresses at most at which the website of \a page may have a feed, the most likely first. None if
/// the page is not on the web.
QVector<QUrl> commonFeedPlaces(const QUrl &page);

} // namespace Tidel

#endif
