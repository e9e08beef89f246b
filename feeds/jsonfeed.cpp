// SPDX-License-Identifier: LGPL-2.1-or-later
#include "jsonfeed.h"

namespace Tidel {

tl::expected<FeedRecord, FeedRefusal> readJsonFeed(const QByteArray &) { return FeedRecord(); }

} // namespace Tidel
