// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DETAILFIELDS_P_H
#define TIDEL_DETAILFIELDS_P_H

#include "details.h"
#include "feedanswer.h"
#include "store_p.h"

#include <QHash>
#include <QPair>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace Tidel {

/// The name of a property and one of its values.
using DetailValue = QPair<QString, QVariant>;

/// \name What the store has of details
/// \a Details is MessageDetails, EnclosureDetails, ChannelDetails or FeedNotes.
/// @{
/// The names of the properties that details have.
template <typename Details> QStringList detailNames();
/// The values of \a details within the limits of the store. What is empty has no value.
template <typename Details> QVector<DetailValue> detailValues(const Details &details);
/// Gives \a details the value of a property. Returns false if they have no such property.
template <typename Details> bool addDetail(Details &details, const QString &name, const QVariant &value);
/// The details of those of \a uris that have some.
template <typename Details>
Result<QHash<QString, Details>> readDetails(StorePrivate &store, const QStringList &uris,
                                            const char *attempt);
/// @}

} // namespace Tidel

#endif
