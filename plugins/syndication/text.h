// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TEXT_H
#define TIDEL_TEXT_H

#include <QString>

namespace Tidel {

/// Returns \a text without lone surrogates, noncharacters and control characters except tabs and line breaks.
QString cleanText(const QString &text);

/// Returns \a html, such as a title, as one line of plain text: entities are resolved, tags are removed,
/// white space is simplified. Only the first 4000 characters of \a html are used.
QString plainText(const QString &html);

} // namespace Tidel

#endif
