// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LIMITEDHTML_H
#define TIDEL_LIMITEDHTML_H

#include <QString>

namespace Tidel {

/// Returns \a html, or its beginning if it has more than \a size bytes in UTF-8. The beginning does not end
/// within a character, tag, comment or entity. End tags follow for the elements that are open there.
QString limitedHtml(const QString &html, int size);

} // namespace Tidel

#endif
