// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef UPDATEBATCH_P_H
#define UPDATEBATCH_P_H

#include "groundinserts_p.h"
#include "tracker_p.h"

class PropertyRanges;

/**
 * An update whose ground INSERTs Tracker gets as resources, not as text that it has to parse. All parts have
 * their effect in order and in one transaction, like the operations of the text.
 */
class UpdateBatch
{
public:
    /// Reads \a update, a statement that Tracker accepts.
    UpdateBatch(const QString &update, PropertyRanges *ranges);

    /// Returns true if the update has to be run as a text; otherwise returns false.
    bool isEmpty() const { return m_parts.isEmpty(); }
    /// Runs the update. On failure nothing is changed, and \a error is set.
    void run(TrackerSparqlConnection *connection, GError **error) const;

private:
    bool canStore(const GroundTriple &triple) const;
    void add(TrackerResource *resource, const GroundTriple &triple) const;

    PropertyRanges *const m_ranges;
    QVector<UpdatePart> m_parts;
};

#endif
