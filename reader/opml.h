// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_OPML_H
#define TIDEL_OPML_H

#include "subscriptions.h"

#include <QByteArray>

namespace Tidel::Opml {

/// What an OPML document says.
struct Content
{
    QList<Subscription> subscriptions; ///< Each address once, in the order of the document.
    QStringList problems; ///< A line for each feed that is left out, such as "line 7: ...".
};

/**
 * The content of \a document, OPML 1.0 to 2.0 in UTF-8, UTF-16 or ISO-8859-1. An outline without an address
 * is a folder. A feed outside folders is in the first one of its attribute "category", such as "/News/World".
 *
 * Fails with Error::FileFailed, whose reason names the line, if the document is no such list or is larger
 * than this: 10 MiB, 10,000 feeds, Folders::maximumDepth, 100 attributes of an element, 100 problems.
 */
TIDELREADER_EXPORT Result<Content> read(const QByteArray &document);

/// The size in bytes beyond which a document is refused.
constexpr int maximumSize = 10 * 1024 * 1024;

/// An OPML 2.0 document in UTF-8 that says \a subscriptions, which are sorted by folder.
TIDELREADER_EXPORT QByteArray write(const QList<Subscription> &subscriptions);

} // namespace Tidel::Opml

#endif
