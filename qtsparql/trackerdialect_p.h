// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TRACKERDIALECT_P_H
#define TRACKERDIALECT_P_H

#include <QString>

/**
 * Translates SPARQL 1.1 into what Tracker 3 accepts. Text in literals, IRIs and comments stays as it is.
 *
 * - A variable whose name begins with an underscore becomes `$_name`. After a property, Tracker reads the
 *   question mark as a path operator.
 * - The empty IRI, `<>`, becomes a fixed IRI. Tracker would make a new blank node of each empty IRI.
 * - A typed date-time with an offset or without a time zone becomes the same instant in UTC. Tracker sorts
 *   date-times by their text.
 */
namespace TrackerDialect {

/// Returns \a statement in the form that Tracker accepts.
QString toTracker(const QString &statement);

/// Returns \a update without the triples of its templates that have the empty IRI as their subject. The
/// empty IRI names no resource, but Tracker stores or refuses such triples. A template can become empty.
QString withoutEmptySubjects(const QString &update);

/// Returns the IRI that the caller knows for the IRI \a iri in the store.
QString iriFromTracker(const QString &iri);

/// Returns true if \a statement has only white space and comments; otherwise returns false. In SPARQL this is
/// an update without effect, but Tracker refuses it.
bool isBlank(const QString &statement);

} // namespace TrackerDialect

#endif
