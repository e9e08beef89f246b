// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef ABSENCE_P_H
#define ABSENCE_P_H

#include <QString>

/**
 * Returns \a query with the same meaning in a form that Tracker answers without reading whole tables.
 *
 * SPARQL 1.0 had only one way to ask for what has no match: `OPTIONAL { PATTERN } FILTER(!bound(?v))`. It
 * becomes `FILTER NOT EXISTS { PATTERN }`, for which Tracker uses its indexes.
 *
 * A query that is not certain to keep its meaning stays as it is.
 */
QString withNotExists(const QString &query);

#endif
