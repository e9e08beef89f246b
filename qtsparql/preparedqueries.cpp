// SPDX-License-Identifier: LGPL-2.1-or-later
#include "preparedqueries_p.h"

#include "absence_p.h"
#include "propertyranges_p.h"
#include "queryparameters_p.h"
#include "trackerdialect_p.h"

namespace {

// The texts of a program are few. One that composes texts of its own must not fill the memory.
constexpr int mostQueries = 64;

} // namespace

PreparedQueries::PreparedQueries(TrackerSparqlConnection *connection, PropertyRanges *ranges)
    : m_connection(connection), m_ranges(ranges), m_prepared(mostQueries)
{
}

bool PreparedQueries::knows(const QueryParameters &query) const
{
    const Prepared *known = query.parameters().isEmpty() ? nullptr : m_prepared.object(query.text());
    return known && known->statement;
}

GObjectPtr<TrackerSparqlCursor> PreparedQueries::run(const QueryParameters &query)
{
    if (query.parameters().isEmpty())
        return nullptr;
    Prepared *known = m_prepared.object(query.text());
    if (!known) {
        known = new Prepared{prepare(query)};
        m_prepared.insert(query.text(), known);
    }
    TrackerSparqlStatement *statement = known->statement.get();
    if (!statement)
        return nullptr;
    for (int i = 0; i < query.parameters().size(); ++i)
        tracker_sparql_statement_bind_string(statement, QueryParameters::name(i).constData(),
                                             query.parameters().at(i).value.constData());
    GObjectPtr<TrackerSparqlCursor> cursor(tracker_sparql_statement_execute(statement, nullptr, nullptr));
    if (!cursor)
        known->statement.reset();
    return cursor;
}

GObjectPtr<TrackerSparqlStatement> PreparedQueries::prepare(const QueryParameters &query)
{
    for (const QueryParameters::Parameter &parameter : query.parameters()) {
        // Tracker converts a literal to the type of other properties, but takes a parameter as it is.
        const PropertyRanges::Range range = m_ranges->of(parameter.property);
        const bool isComparable =
            range == PropertyRanges::Resource || (range == PropertyRanges::Text && !parameter.isFiltered);
        if (!parameter.property.isEmpty() && !isComparable)
            return nullptr;
    }
    const QByteArray text = TrackerDialect::toTracker(withNotExists(query.text())).toUtf8();
    return GObjectPtr<TrackerSparqlStatement>(
        tracker_sparql_connection_query_statement(m_connection, text.constData(), nullptr, nullptr));
}
