// SPDX-License-Identifier: LGPL-2.1-or-later
#include "preparedqueries_p.h"

#include "absence_p.h"
#include "ontology_p.h"
#include "queryparameters_p.h"
#include "trackerdialect_p.h"

namespace {

// The texts of a program are few. One that composes texts of its own must not fill the memory.
constexpr int mostQueries = 64;

} // namespace

PreparedQueries::PreparedQueries(TrackerSparqlConnection *connection)
    : m_connection(connection), m_prepared(mostQueries)
{
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
        if (!parameter.property.isEmpty() && !comparesText(parameter.property))
            return nullptr;
    }
    const QByteArray text = TrackerDialect::toTracker(withNotExists(query.text())).toUtf8();
    return GObjectPtr<TrackerSparqlStatement>(
        tracker_sparql_connection_query_statement(m_connection, text.constData(), nullptr, nullptr));
}

/// Returns true if the values of \a property are resources or texts; otherwise returns false. Tracker
/// converts a literal to the type of other properties, but takes a parameter as it is.
bool PreparedQueries::comparesText(const QString &property)
{
    const auto known = m_comparesText.constFind(property);
    if (known != m_comparesText.cend())
        return *known;
    const QString range = rangeOf(property);
    const bool isText = range == QLatin1String(TRACKER_PREFIX_XSD "string");
    const bool isLiteral = range.startsWith(QLatin1String(TRACKER_PREFIX_XSD))
        || range == QLatin1String(TRACKER_PREFIX_RDF "langString");
    const bool comparesText = isText || (!range.isEmpty() && !isLiteral);
    m_comparesText.insert(property, comparesText);
    return comparesText;
}

/// Returns the range of \a property; empty if the store does not know the property.
QString PreparedQueries::rangeOf(const QString &property) const
{
    const std::unique_ptr<char, decltype(&g_free)> uri(
        tracker_namespace_manager_expand_uri(tracker_sparql_connection_get_namespace_manager(m_connection),
                                             property.toUtf8().constData()),
        g_free);
    const GObjectPtr<TrackerSparqlStatement> question(
        tracker_sparql_connection_query_statement(m_connection, rangeQuestion, nullptr, nullptr));
    if (!question)
        return QString();
    tracker_sparql_statement_bind_string(question.get(), "property", uri.get());
    const GObjectPtr<TrackerSparqlCursor> answer(
        tracker_sparql_statement_execute(question.get(), nullptr, nullptr));
    const bool isKnown = answer && tracker_sparql_cursor_next(answer.get(), nullptr, nullptr);
    return isKnown ? QString::fromUtf8(tracker_sparql_cursor_get_string(answer.get(), 0, nullptr))
                   : QString();
}
