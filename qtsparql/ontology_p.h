// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef ONTOLOGY_P_H
#define ONTOLOGY_P_H

#include <QByteArray>

/// The path of the compiled-in ontology files among GLib's resources.
extern const char *const ontologyPath;

/// Returns an ASK statement whether a store has this ontology. It compares the dates of all parts. A store
/// that does not know a part refuses the statement.
QByteArray ontologyQuestion();

/// A query for the range of the property ~property.
extern const char *const rangeQuestion;

#endif
