// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HTMLTEXT_H
#define TIDEL_HTMLTEXT_H

#include "tidelreaderglobal.h"

#include <QString>

namespace Tidel {

/// Returns what a person reads of \a html, as one line of plain text: entities are resolved; tags, scripts,
/// styles and comments are left out; white space is simplified; blocks are separated by a space.
TIDELREADER_EXPORT QString plainText(const QString &html);

} // namespace Tidel

#endif
