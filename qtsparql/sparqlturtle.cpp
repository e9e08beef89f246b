// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sparqlturtle.h"

#include "sharedstores_p.h"
#include "trackerstore_p.h"

QSparqlError SparqlTurtle::write(const QSparqlConnectionOptions &options, const QSparqlQuery &description,
                                 QIODevice *device)
{
    QSparqlError error;
    const std::shared_ptr<TrackerStore> store = sharedStore(options, &error);
    return store ? store->writeTurtle(description.preparedQueryText(), device) : error;
}

QSparqlError SparqlTurtle::read(const QSparqlConnectionOptions &options, const QString &fileName)
{
    QSparqlError error;
    const std::shared_ptr<TrackerStore> store = sharedStore(options, &error);
    return store ? store->readTurtle(fileName) : error;
}
