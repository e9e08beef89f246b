// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FILEMAPPING_H
#define TIDEL_FILEMAPPING_H

#include "element.h"

namespace Tidel {

/// The files of \a item, each address once. Of several forms of one file the best is taken.
QVector<FileRecord> filesOf(const Element &item);

/// The largest picture that stands for \a item.
Address thumbnailOf(const Element &item);

} // namespace Tidel

#endif
