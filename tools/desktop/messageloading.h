// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_MESSAGELOADING_H
#define TIDEL_DESKTOP_MESSAGELOADING_H

#include "shownmessage.h"

#include <TidelReader/error.h>
#include <TidelReader/store.h>

namespace Tidel {

/// Reads all that is shown of the message \a uri.
Result<ShownMessage> loadMessage(const Store &store, const QString &uri);

} // namespace Tidel

#endif
