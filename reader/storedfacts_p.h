// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STOREDFACTS_P_H
#define TIDEL_STOREDFACTS_P_H

#include "store_p.h"

#include <QHash>
#include <QStringList>

#include <initializer_list>

namespace Tidel {

/// What a store says of a resource: values by the full names of properties, as they stand in a statement.
/// What the store itself writes, such as the class, is left out.
using StoredFacts = QHash<QString, QStringList>;

/// What \a store says of the resources \a uris, of each by its URI.
Result<QHash<QString, StoredFacts>> storedFacts(StorePrivate &store, const QStringList &uris,
                                                const char *attempt);

/// The values of the property \a name, which is not a full name.
QStringList valuesNamed(const StoredFacts &facts, const char *name);
/// Removes the values of the properties \a names.
void removeNamed(StoredFacts *facts, std::initializer_list<const char *> names);

/// Adds facts of \a others to the resource \a uri, whose facts in the store are \a own: all values of a list,
/// and another value if the store has none or an empty one. Returns the pieces of the update, and adds the
/// values to \a own.
QString takeOver(const QString &uri, StoredFacts *own, const StoredFacts &others);

} // namespace Tidel

#endif
