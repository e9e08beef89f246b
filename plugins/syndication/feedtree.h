// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDTREE_H
#define TIDEL_FEEDTREE_H

#include <QByteArray>
#include <QDomDocument>

#include <Syndication/Feed>

#include <optional>

namespace Tidel {

/// A feed document as it was parsed: the feed, and the elements that it was made of.
struct FeedTree
{
    Syndication::FeedPtr feed;
    QDomDocument elements;
};

/// Parses \a document; on failure nothing, and \a error says why.
std::optional<FeedTree> parseFeedTree(const QByteArray &document, QString *error);

} // namespace Tidel

#endif
