// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef PREPAREDQUERIES_P_H
#define PREPAREDQUERIES_P_H

#include "tracker_p.h"

#include <QCache>
#include <QHash>

class QueryParameters;

/// The queries with parameters that Tracker has parsed for a connection. They must not outlive it.
class PreparedQueries
{
public:
    explicit PreparedQueries(TrackerSparqlConnection *connection);

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
    bool comparesText(const QString &property);
    QString rangeOf(const QString &property) const;

    TrackerSparqlConnection *const m_connection;
    QCache<QString, Prepared> m_prepared;
    QHash<QString, bool> m_comparesText; // by property
};

#endif
