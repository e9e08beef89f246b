// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HEADLINES_P_H
#define TIDEL_HEADLINES_P_H

#include "store_p.h"

#include <QStringList>

#include <feedmessage.h>

namespace Tidel {

/// The messages \a keys in their order, with links, titles and dates only. \a query returns the statement for
/// some of the keys, whose columns are key, link, title and date. Keys without a message are left out.
Result<QList<FeedMessage>> readHeadlines(StorePrivate &store, const QStringList &keys,
                                         QSparqlQuery (*query)(const QStringList &), const char *attempt);

} // namespace Tidel

#endif
