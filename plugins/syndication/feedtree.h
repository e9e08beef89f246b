// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDTREE_H
#define TIDEL_FEEDTREE_H

#include <QByteArray>
#include <QDomDocument>

#include <Syndication/Feed>

#include <optional>

namespace Tidel {

/// A parsed feed document.
struct FeedTree
{
    Syndication::FeedPtr feed; ///< The feed.
    QDomDocument elements; ///< The elements that the feed was made from.
};

/// Parses \a document. Returns nothing on failure, and sets \a error to the reason.
std::optional<FeedTree> parseFeedTree(const QByteArray &document, QString *error);

} // namespace Tidel

#endif
