// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HTMLTEXT_H
#define TIDEL_HTMLTEXT_H

#include "tidelreaderglobal.h"

#include <QString>

namespace Tidel {

/// Returns what a person reads of \a html, as one line of plain text: entities are resolved; tags, scripts,
/// styles and comments are left out; white space is simplified; blocks are separated by a space.
///
/// A "<" that begins no tag is text.
TIDELREADER_EXPORT QString plainText(const QString &html);

/// Returns the beginning of what a person reads of \a html: all of it if it has at most 80 characters,
/// otherwise whole words and "…", which together have at most 80 characters. Reads at most 20,000 characters
/// of \a html.
TIDELREADER_EXPORT QString firstWords(const QString &html);

} // namespace Tidel

#endif
