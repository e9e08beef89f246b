// SPDX-License-Identifier: LGPL-2.1-or-later
#include "propertyranges_p.h"

#include "ontology_p.h"

namespace {

PropertyRanges::Range rangeFor(const QString &iri)
{
    static const QHash<QString, PropertyRanges::Range> ranges = {
        {QStringLiteral(TRACKER_PREFIX_XSD "string"), PropertyRanges::Text},
        {QStringLiteral(TRACKER_PREFIX_XSD "boolean"), PropertyRanges::Boolean},
        {QStringLiteral(TRACKER_PREFIX_XSD "integer"), PropertyRanges::Integer},
        {QStringLiteral(TRACKER_PREFIX_XSD "dateTime"), PropertyRanges::DateTime},
        {QStringLiteral(TRACKER_PREFIX_RDF "langString"), PropertyRanges::Other},
        {QString(), PropertyRanges::Unknown},
    };
    const bool isOfSchema = iri.startsWith(QLatin1String(TRACKER_PREFIX_XSD));
    return ranges.value(iri, isOfSchema ? PropertyRanges::Other : PropertyRanges::Resource);
}

} // namespace

PropertyRanges::Range PropertyRanges::of(const QString &property)
{
    const auto known = m_known.constFind(property);
    return known != m_known.cend() ? *known : *m_known.insert(property, rangeFor(ask(property)));
}

QString PropertyRanges::expanded(const QString &name) const
{
    const std::unique_ptr<char, decltype(&g_free)> iri(
        tracker_namespace_manager_expand_uri(tracker_sparql_connection_get_namespace_manager(m_connection),
                                             name.toUtf8().constData()),
        g_free);
    return QString::fromUtf8(iri.get());
}

/// Returns the range of \a property; empty if the store does not know the property.
QString PropertyRanges::ask(const QString &property) const
{
    const GObjectPtr<TrackerSparqlStatement> question(
        tracker_sparql_connection_query_statement(m_connection, rangeQuestion, nullptr, nullptr));
    if (!question)
        return QString();
    tracker_sparql_statement_bind_string(question.get(), "property", expanded(property).toUtf8().constData());
    const GObjectPtr<TrackerSparqlCursor> answer(
        tracker_sparql_statement_execute(question.get(), nullptr, nullptr));
    const bool isKnown = answer && tracker_sparql_cursor_next(answer.get(), nullptr, nullptr);
    return isKnown ? QString::fromUtf8(tracker_sparql_cursor_get_string(answer.get(), 0, nullptr))
                   : QString();
}
