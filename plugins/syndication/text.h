// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TEXT_H
#define TIDEL_TEXT_H

#include <QString>

namespace Tidel {

/// \a text without what no text should carry: control characters other than tab and line break, lone
/// surrogates and non-characters.
QString cleanText(const QString &text);

/// \a html, such as a title, as one line of plain text: entities resolved, tags removed, white space
/// simplified. Of a text of many thousand characters only the beginning.
QString plainText(const QString &html);

} // namespace Tidel

#endif
