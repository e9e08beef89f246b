// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MANUAL_H
#define TIDEL_MANUAL_H

#include <QString>

namespace Tidel {

/// The manual page tidel(1) in the language of man(7).
QString manualPage(const QString &version);

} // namespace Tidel

#endif
