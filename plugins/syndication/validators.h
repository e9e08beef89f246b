// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_VALIDATORS_H
#define TIDEL_VALIDATORS_H

#include <QString>

namespace Tidel {

/// What tells whether a document has changed since it was read: what its server said of it, as it said it.
struct Validators
{
    QString entityTag;
    QString lastModified;
};

} // namespace Tidel

#endif
