// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_VALIDATORS_H
#define TIDEL_VALIDATORS_H

#include <QString>

namespace Tidel {

/// The values by which a server recognises whether a document has changed, as the server wrote them.
struct Validators
{
    QString entityTag; ///< The ETag header.
    QString lastModified; ///< The Last-Modified header.
};

} // namespace Tidel

#endif
