// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedreader.h"

#include "encoding.h"
#include "jsonfeed.h"
#include "xmlfeed.h"

#include <algorithm>

namespace Tidel {

namespace {

/// How a kind of document begins that is no feed.
struct Signature
{
    QByteArray start;
    const char *reason;
};

/// Why \a document is refused without being read; empty if it is not.
QString obviousObstacle(const QByteArray &document)
{
    static const Signature signatures[] = {
        {"-----BEGIN PGP MESSAGE", "the document is encrypted; decrypt it first"},
        {"Salted__", "the document is encrypted; decrypt it first"},
        {"\x1f\x8b", "the document is compressed with gzip; unpack it first"},
        {"PK\x03\x04", "the document is a ZIP archive; unpack it first"},
        {"%PDF-", "the document is a PDF document, not a feed"},
        {"\x89PNG", "the document is a picture, not a feed"},
        {"\xff\xd8\xff", "the document is a picture, not a feed"},
        {"GIF8", "the document is a picture, not a feed"},
    };
    const QByteArray start = document.left(4096).trimmed();
    const auto found =
        std::find_if(std::begin(signatures), std::end(signatures),
                     [&](const Signature &signature) { return start.startsWith(signature.start); });
    return found == std::end(signatures) ? QString() : QLatin1String(found->reason);
}

} // namespace

tl::expected<FeedRecord, FeedRefusal> readFeed(const QByteArray &document, const QByteArray &charset,
                                               const QSet<QByteArray> &known)
{
    const QString obstacle = obviousObstacle(document);
    if (!obstacle.isEmpty())
        return tl::make_unexpected(FeedRefusal{obstacle});
    const DecodedText text = toUtf8(document, charset);
    const QByteArray start = text.utf8.left(1024).trimmed();
    if (start.isEmpty() && text.utf8.trimmed().isEmpty())
        return tl::make_unexpected(FeedRefusal{QStringLiteral("the document is empty")});
    const bool isJson = start.startsWith('{') || start.startsWith('[');
    auto feed = isJson ? readJsonFeed(text.utf8) : readXmlFeed(text.utf8, known);
    if (feed)
        feed->notes = text.notes + feed->notes;
    return feed;
}

} // namespace Tidel
