// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedlinks.h"

namespace Tidel {

QVector<FeedLink> feedLinksOfPage(const QByteArray &, const QUrl &, const QByteArray &) { return {}; }

QVector<FeedLink> feedLinksOfHeader(const QByteArray &, const QUrl &) { return {}; }

QVector<QUrl> commonFeedPlaces(const QUrl &) { return {}; }

} // namespace Tidel
