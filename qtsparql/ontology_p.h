// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef ONTOLOGY_P_H
#define ONTOLOGY_P_H

#include <QByteArray>

/// Where GLib finds the files of the ontology that is compiled in.
extern const char *const ontologyPath;

/// A statement that asks whether a store has this ontology, by the dates of its parts. Where a part is
/// unknown it is refused.
QByteArray ontologyQuestion();

#endif
