// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_JSONFEED_H
#define TIDEL_JSONFEED_H

#include "feedreader.h"

namespace Tidel {

/// Reads \a document, a JSON Feed 1.0 or 1.1 in UTF-8. A member of a wrong type counts as missing.
tl::expected<FeedRecord, FeedRefusal> readJsonFeed(const QByteArray &document);

} // namespace Tidel

#endif
