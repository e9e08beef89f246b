// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLCONNECTION_H
#define QSPARQLCONNECTION_H

#include "qsparql.h"
#include "qsparqlconnectionoptions.h"
#include "qsparqlerror.h"
#include "qsparqlquery.h"
#include "qsparqlresult.h"

#include <QObject>
#include <QStringList>
#include <QUrl>

#include <memory>

class QSparqlConnectionPrivate;

/**
 * A connection to an RDF store.
 *
 * The only driver is "QTRACKER_DIRECT": a Tracker database inside this process, in the folder
 * QSparqlConnectionOptions::databaseName(). The constructor opens the database and creates it if it does not
 * exist. If nothing can be written beside the database, the connection reads a copy in a temporary folder.
 * Several processes can use one database at the same time. An update waits for those that write. A connection
 * must only be used in the thread that created it.
 *
 * \code
 * QSparqlConnection connection("QTRACKER_DIRECT");
 * if (!connection.isValid())
 *     qWarning() << connection.lastError();
 * \endcode
 */
class Q_SPARQL_EXPORT QSparqlConnection : public QObject
{
    Q_OBJECT

public:
    /// Opens a connection through the driver \a driverName.
    explicit QSparqlConnection(const QString &driverName = QString(),
                               const QSparqlConnectionOptions &options = QSparqlConnectionOptions(),
                               QObject *parent = nullptr);
    ~QSparqlConnection() override;

    /// Returns the names of the drivers.
    static QStringList drivers();
    /// Returns the name of this connection's driver.
    QString driverName() const;
    /// Returns the options of this connection.
    QSparqlConnectionOptions options() const;

    /// Returns true if the store is open; otherwise returns false. The first update opens it for writing and
    /// can still fail.
    bool isValid() const;
    /// Returns true if the store could not be opened; otherwise returns false.
    bool hasError() const;
    /// Returns the reason why the store could not be opened. A failed statement is reported by its result.
    QSparqlError lastError() const;

    /**
     * Runs \a query and returns its result, which the caller deletes. Never returns null. Blocks until the
     * statement has finished. A failure is reported by the result; if the connection is not valid, that is
     * lastError(). If one operation of an update fails, the whole update has no effect.
     */
    QSparqlResult *exec(const QSparqlQuery &query);

    /// Returns a new, unique URN, `urn:uuid:...`. Later URNs are sorted after earlier ones.
    QUrl createUrn() const;

private:
    const std::unique_ptr<QSparqlConnectionPrivate> d;
};

#endif
