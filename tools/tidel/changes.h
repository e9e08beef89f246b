// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANGES_H
#define TIDEL_CHANGES_H

#include "messagetext.h"

namespace Tidel {

/// What the last change of the message has removed and added, in lines of at most \a width columns. \a
/// versions is what it said before, the newest first. Paragraphs that did not change are left out.
QStringList changeLines(const WholeMessage &whole, const QList<EarlierVersion> &versions, int width);

} // namespace Tidel

#endif
