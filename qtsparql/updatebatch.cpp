// SPDX-License-Identifier: LGPL-2.1-or-later
#include "updatebatch_p.h"

#include "propertyranges_p.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

struct DateTimeDeleter
{
    void operator()(GDateTime *time) const { g_date_time_unref(time); }
};

/// Returns the time \a text in UTC. Returns null if the text has another form.
std::unique_ptr<GDateTime, DateTimeDeleter> utcTime(const QString &text)
{
    static const QRegularExpression utc(QStringLiteral("\\A\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ\\z"));
    if (!utc.match(text).hasMatch())
        return nullptr;
    return std::unique_ptr<GDateTime, DateTimeDeleter>(
        g_date_time_new_from_iso8601(text.toLatin1().constData(), nullptr));
}

} // namespace

UpdateBatch::UpdateBatch(const QString &update, PropertyRanges *ranges)
    : m_ranges(ranges), m_parts(groundInserts(update))
{
    const bool isStorable = std::all_of(m_parts.cbegin(), m_parts.cend(), [this](const UpdatePart &part) {
        return std::all_of(part.triples.cbegin(), part.triples.cend(),
                           [this](const GroundTriple &triple) { return canStore(triple); });
    });
    if (!isStorable)
        m_parts.clear();
}

/// Returns true if Tracker stores \a triple as it stores the text; otherwise returns false. Of a text it
/// converts the object to the type of the property.
bool UpdateBatch::canStore(const GroundTriple &triple) const
{
    if (triple.kind == GroundTriple::Name && m_ranges->expanded(triple.object) == triple.object)
        return false;
    const bool isResource = triple.kind == GroundTriple::Iri || triple.kind == GroundTriple::Name;
    switch (m_ranges->of(triple.property)) {
    case PropertyRanges::Resource: return isResource;
    case PropertyRanges::Text: return triple.kind == GroundTriple::Literal;
    case PropertyRanges::Boolean:
        return triple.object == QLatin1String("true") || triple.object == QLatin1String("false");
    case PropertyRanges::Integer: {
        bool isNumber = false;
        return QString::number(triple.object.toLongLong(&isNumber)) == triple.object && isNumber;
    }
    case PropertyRanges::DateTime: return utcTime(triple.object) != nullptr;
    default: return false;
    }
}

void UpdateBatch::add(TrackerResource *resource, const GroundTriple &triple) const
{
    const QByteArray property = triple.property.toUtf8();
    const QByteArray object = triple.object.toUtf8();
    switch (m_ranges->of(triple.property)) {
    case PropertyRanges::Resource:
        tracker_resource_add_uri(resource, property.constData(), object.constData());
        break;
    case PropertyRanges::Boolean:
        // Tracker compares booleans as the numbers that it stores.
        tracker_resource_add_int64(resource, property.constData(), object == "true");
        break;
    case PropertyRanges::Integer:
        tracker_resource_add_int64(resource, property.constData(), object.toLongLong());
        break;
    case PropertyRanges::DateTime:
        tracker_resource_add_datetime(resource, property.constData(), utcTime(triple.object).get());
        break;
    default: tracker_resource_add_string(resource, property.constData(), object.constData());
    }
}

void UpdateBatch::run(TrackerSparqlConnection *connection, GError **error) const
{
    const GObjectPtr<TrackerBatch> batch(tracker_sparql_connection_create_batch(connection));
    for (const UpdatePart &part : m_parts) {
        if (part.triples.isEmpty())
            tracker_batch_add_sparql(batch.get(), part.text.toUtf8().constData());
        GObjectPtr<TrackerResource> resource;
        QString subject;
        for (const GroundTriple &triple : part.triples) {
            const bool isNext = triple.subject != subject;
            if (isNext) {
                subject = triple.subject;
                resource.reset(tracker_resource_new(subject.toUtf8().constData()));
            }
            add(resource.get(), triple);
            if (isNext)
                tracker_batch_add_resource(batch.get(), nullptr, resource.get());
        }
    }
    tracker_batch_execute(batch.get(), nullptr, error);
}
