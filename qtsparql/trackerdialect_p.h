// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TRACKERDIALECT_P_H
#define TRACKERDIALECT_P_H

#include <QString>

/**
 * The differences between SPARQL 1.1 and what Tracker 3 takes, bridged on the level of tokens: nothing inside
 * a literal, an IRI or a comment is touched.
 *
 * - A variable whose name begins with an underscore is sent as `$_name`: after a property Tracker takes the
 * question mark for a path operator.
 * - The empty IRI, `<>`, is sent as one fixed IRI: Tracker makes a new blank node of each.
 * - A typed date-time with an offset, or without a zone, is sent as the same instant in UTC: Tracker orders
 *   date-times by their text.
 */
namespace TrackerDialect {

/// \a statement as Tracker takes it.
QString toTracker(const QString &statement);

/// Returns \a update without the triples of its templates that have the empty IRI as their subject. The
/// empty IRI names no resource, but Tracker stores or refuses such triples. A template can become empty.
QString withoutEmptySubjects(const QString &update);

/// The resource \a iri as the caller knows it.
QString iriFromTracker(const QString &iri);

/// True for a statement of white space and comments alone, which SPARQL allows as an update and Tracker does
/// not.
bool isBlank(const QString &statement);

} // namespace TrackerDialect

#endif
