// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HTMLTAGS_P_H
#define TIDEL_HTMLTAGS_P_H

#include "tidelreaderglobal.h"

#include <QByteArray>

namespace Tidel {

/// A part of an HTML text that is not read: a tag, a comment, or a script from its start tag to its end tag.
struct HtmlTag
{
    QByteArray name; ///< In lower case, without a slash; empty for a comment.
    int from; ///< Where it begins.
    int end; ///< Where the tag itself ends, which may be a start tag.
    int to; ///< Where the text after it begins.
};

/// Returns the first tag of \a html that begins at \a from or later; if there is none, an empty one at the
/// end.
///
/// Builds no tree. The time of building one grows with the square of the nesting, which is up to strangers.
TIDELREADER_EXPORT HtmlTag nextTag(const QByteArray &html, int from);

/// Returns true if what elements of this name contain is either not HTML or not shown. nextTag() passes it
/// with the start tag, unless that ends in "/>". Otherwise returns false.
bool isUnread(const QByteArray &name);

/// Returns false if elements of this name are empty, or if the next element can end them; otherwise returns
/// true. Only elements that need an end tag can nest in each other without limit.
TIDELREADER_EXPORT bool needsEndTag(const QByteArray &name);

} // namespace Tidel

#endif
