// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDREADER_H
#define TIDEL_FEEDREADER_H

#include "feedrecord.h"

#include <QByteArray>
#include <QSet>

#include <tl/expected.hpp>

namespace Tidel {

/// Why a document was refused.
struct FeedRefusal
{
    QString reason; ///< For the user.
    bool isWebPage = false; ///< True if the document is HTML, which may name its feeds.
};

/// Reads the feed in \a document. \a charset is the character set that the server named; it may be empty.
///
/// Reads RSS 0.90 to 2.0, RDF, Atom 0.3 and 1.0 and JSON Feed 1.0 and 1.1. A document that is not well-formed
/// is read as far as possible, and FeedRecord::notes say what was mended. The function is reentrant, and
/// opens neither files nor connections. Of items with one of the digests \a known it reads the identifier
/// only.
tl::expected<FeedRecord, FeedRefusal> readFeed(const QByteArray &document,
                                               const QByteArray &charset = QByteArray(),
                                               const QSet<QByteArray> &known = {});

} // namespace Tidel

#endif
