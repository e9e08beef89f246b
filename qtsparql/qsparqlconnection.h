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

class TrackerStore;

/**
 * A connection to an RDF store.
 *
 * The one driver is "QTRACKER_DIRECT": a Tracker database inside this process, in the folder that
 * QSparqlConnectionOptions::databaseName() names. The database is opened, and created where there is none, by
 * the constructor. Several processes may use one database at once. A connection belongs to the thread that
 * made it.
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
    explicit QSparqlConnection(const QString &driverName = QString(),
                               const QSparqlConnectionOptions &options = QSparqlConnectionOptions(),
                               QObject *parent = nullptr);
    ~QSparqlConnection() override;

    /// The drivers that there are.
    static QStringList drivers();
    QString driverName() const;
    QSparqlConnectionOptions options() const;

    /// True when the driver is known and the store is open. Whether it can be written to shows at the first
    /// update.
    bool isValid() const;
    bool hasError() const;
    /// Why the connection is not valid. The error of a statement is its result's.
    QSparqlError lastError() const;

    /**
     * Runs \a query to its end and returns what came of it, for the caller to delete; never null. A failure
     * is the result's error; on a connection that is not valid that is the connection's own. Blocks until the
     * store has answered. An update of several operations takes effect as a whole or not at all.
     */
    QSparqlResult *exec(const QSparqlQuery &query);

    /// A new URN, `urn:uuid:...`, that no other resource has; later ones sort after earlier ones.
    QUrl createUrn() const;

private:
    const QString m_driverName;
    const QSparqlConnectionOptions m_options;
    QSparqlError m_error;
    std::shared_ptr<TrackerStore> m_store;
};

#endif
