// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SHOWNADDRESS_P_H
#define TIDEL_SHOWNADDRESS_P_H

#include "store.h"

#include <QUrl>
#include <QVector>

namespace Tidel {

/// Returns the addresses that are shown as \a address, which may lack its password: itself, and with the
/// passwords of the channels on its server. Older versions stored links with the password of their channel.
Result<QVector<QUrl>> addressesShownAs(const Store &store, const QUrl &address);

} // namespace Tidel

#endif
