// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CLEANTEXT_H
#define TIDEL_CLEANTEXT_H

#include "tidelreaderglobal.h"

#include <QString>

namespace Tidel {

/// Returns \a text without lone surrogates, noncharacters and control characters except tabs and line breaks.
TIDELREADER_EXPORT QString cleanText(const QString &text);

} // namespace Tidel

#endif
