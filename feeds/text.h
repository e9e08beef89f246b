// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TEXT_H
#define TIDEL_TEXT_H

#include <QString>

namespace Tidel {

/// Returns \a text without lone surrogates, noncharacters and control characters except tabs and line breaks.
QString cleanText(const QString &text);

} // namespace Tidel

#endif
