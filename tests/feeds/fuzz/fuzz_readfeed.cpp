// SPDX-License-Identifier: LGPL-2.1-or-later
// Reads any bytes as a feed, as a download does: from the document to the messages, or to the feeds of a web
// page.
#include <feedparser.h>
#include <webpage.h>

#include <iterator>

using namespace Tidel;

namespace {

/// A character set that a server may name. Most servers name none or UTF-8.
QByteArray charsetFor(size_t size)
{
    static constexpr const char *charsets[] = {"",           "",       "",          "utf-8",
                                               "iso-8859-1", "utf-16", "shift_jis", "x-unknown"};
    return charsets[size % std::size(charsets)];
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FeedDocument document;
    document.bytes = QByteArray(reinterpret_cast<const char *>(data), int(size));
    document.address = QUrl(QStringLiteral("https://example.org/feed"));
    document.charset = charsetFor(size);
    const auto feed = ParsedFeed::parse(document, document.address);
    if (!feed) {
        WebPage page(document);
        while (!page.takePlace().isEmpty()) { }
        return 0;
    }
    feed->channel();
    feed->channelDetails();
    for (const ClaimedItem &claimed : feed->claimedItems())
        feed->message(claimed);
    return 0;
}
