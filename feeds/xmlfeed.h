// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_XMLFEED_H
#define TIDEL_XMLFEED_H

#include "feedreader.h"

namespace Tidel {

/// Reads \a document, an RSS, RDF or Atom feed in UTF-8, whatever encoding it declares. Of items with one of
/// the digests \a known it reads the identifier only.
tl::expected<FeedRecord, FeedRefusal> readXmlFeed(const QByteArray &document,
                                                  const QSet<QByteArray> &known = {});

} // namespace Tidel

#endif
