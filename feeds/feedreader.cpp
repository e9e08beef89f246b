// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedreader.h"

#include "encoding.h"
#include "jsonfeed.h"
#include "xmlfeed.h"

namespace Tidel {

tl::expected<FeedRecord, FeedRefusal> readFeed(const QByteArray &document, const QByteArray &charset)
{
    const DecodedText text = toUtf8(document, charset);
    const bool isJson = text.utf8.trimmed().startsWith('{');
    auto feed = isJson ? readJsonFeed(text.utf8) : readXmlFeed(text.utf8);
    if (feed)
        feed->notes = text.notes + feed->notes;
    return feed;
}

} // namespace Tidel
