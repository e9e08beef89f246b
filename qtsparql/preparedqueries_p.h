// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef PREPAREDQUERIES_P_H
#define PREPAREDQUERIES_P_H

#include "tracker_p.h"

#include <QCache>

class PropertyRanges;
class QueryParameters;

/// The queries with parameters that Tracker has parsed for a connection. They must not outlive it.
class PreparedQueries
{
public:
    PreparedQueries(TrackerSparqlConnection *connection, PropertyRanges *ranges);

    /// Returns true if Tracker has parsed \a query; otherwise returns false.
    bool knows(const QueryParameters &query) const;
    /// Runs \a query. Returns null if it has no parameters or Tracker does not take them; the query has to be
    /// run as a text then, which also gives its error.
    GObjectPtr<TrackerSparqlCursor> run(const QueryParameters &query);

private:
    /// No statement if the query has to be run as a text.
    struct Prepared
    {
        GObjectPtr<TrackerSparqlStatement> statement;
    };

    GObjectPtr<TrackerSparqlStatement> prepare(const QueryParameters &query);

    TrackerSparqlConnection *const m_connection;
    PropertyRanges *const m_ranges;
    QCache<QString, Prepared> m_prepared;
};

#endif
