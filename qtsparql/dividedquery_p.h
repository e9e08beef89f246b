// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef DIVIDEDQUERY_P_H
#define DIVIDEDQUERY_P_H

#include <QString>
#include <QStringList>

#include <optional>

/**
 * A query with FILTER NOT EXISTS in two: one for the rows without the filter, and one for those of their
 * resources that the filter excludes.
 *
 * Tracker reads all values of a property that a query names twice. In each of the two queries it is named
 * once.
 */
class DividedQuery
{
public:
    /// Divides \a query, a result of withNotExists(). Returns nothing unless the filter repeats a property of
    /// the query, all that they share is the first column, and nothing follows the filter.
    static std::optional<DividedQuery> of(const QString &query);

    /// Returns the query without its filter.
    QString candidates() const { return m_candidates; }
    /// Returns the query for those of \a resources that the filter excludes. Returns an empty text if a name
    /// is not fit to stand in a query.
    QString excluded(const QStringList &resources) const;

private:
    QString m_candidates;
    QString m_variable;
    QString m_pattern; // without its first brace
};

#endif
