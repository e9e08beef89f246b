// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FILTEREDVALUE_P_H
#define FILTEREDVALUE_P_H

#include <QString>

#include <optional>

/**
 * A query that lets one value of a variable through: `SELECT ?m ?l { ?m nie:links ?l FILTER(?l = ?:link) }`.
 *
 * It is the same as `SELECT ?m (1 AS ?l) { ?m nie:links ?:link }` if the value is a resource and each column
 * of the variable is given the value. Tracker does not parse that one anew for each value.
 */
struct FilteredValue
{
    /// Reads \a query. Returns nothing unless it is such a query, and nothing but triples and filters.
    static std::optional<FilteredValue> of(const QString &query);

    QString text; ///< the query without the filter
    QString placeholder; ///< the name of the value
    int column = -1; ///< that of the variable; -1 if there is none
};

#endif
