// SPDX-License-Identifier: LGPL-2.1-or-later
#include "htmltext.h"

namespace Tidel {

QString plainText(const QString &html) { return html.simplified(); }

} // namespace Tidel
