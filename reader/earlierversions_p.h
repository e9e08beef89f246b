// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_EARLIERVERSIONS_P_H
#define TIDEL_EARLIERVERSIONS_P_H

#include "details.h"

#include <QList>

namespace Tidel {

/// The versions in \a text, as the store keeps them.
QList<EarlierVersion> versionsIn(const QString &text);

/// The text \a versions with \a newest, without the oldest if there are too many.
QString withVersion(const EarlierVersion &newest, const QString &versions);

} // namespace Tidel

#endif
