// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef PROPERTYRANGES_P_H
#define PROPERTYRANGES_P_H

#include "tracker_p.h"

#include <QHash>
#include <QString>

/// What the ontology of an open database says of the values of properties.
class PropertyRanges
{
public:
    /// The kinds of values.
    enum Range { Unknown, Resource, Text, Boolean, Integer, DateTime, Other };

    explicit PropertyRanges(TrackerSparqlConnection *connection) : m_connection(connection) { }

    /// Returns the kind of values of \a property, which is an IRI or a name with a prefix.
    Range of(const QString &property);
    /// Returns \a name, which can have a prefix, as an IRI.
    QString expanded(const QString &name) const;

private:
    QString ask(const QString &property) const;

    TrackerSparqlConnection *const m_connection;
    QHash<QString, Range> m_known;
};

#endif
