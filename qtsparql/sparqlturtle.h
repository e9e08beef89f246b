// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SPARQLTURTLE_H
#define SPARQLTURTLE_H

#include "qsparqlconnectionoptions.h"
#include "qsparqlerror.h"
#include "qsparqlquery.h"

class QIODevice;

/**
 * Copies of a store as Turtle, the text format of RDF. This is an addition to the QtSparql API.
 *
 * The functions work on the store that QSparqlConnection opens with the same options, and block until they
 * have finished.
 */
namespace SparqlTurtle {

/// Writes the resources that the DESCRIBE query \a description describes to \a device, compressed with gzip.
/// The text shows the store at one moment, also if other programs write at the same time.
Q_SPARQL_EXPORT QSparqlError write(const QSparqlConnectionOptions &options, const QSparqlQuery &description,
                                   QIODevice *device);

/// Adds the resources of the file \a fileName, which is Turtle or Turtle that is compressed with gzip. If the
/// file has an error, nothing is added. What was added is on the disk when the function returns.
Q_SPARQL_EXPORT QSparqlError read(const QSparqlConnectionOptions &options, const QString &fileName);

} // namespace SparqlTurtle

#endif
