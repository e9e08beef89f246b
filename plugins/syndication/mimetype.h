// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MIMETYPE_H
#define TIDEL_MIMETYPE_H

#include <QString>

namespace Tidel {

/// \a text as "type/subtype", without parameters; empty when it is none.
QString cleanMimeType(const QString &text);

} // namespace Tidel

#endif
