// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLCONNECTIONOPTIONS_H
#define QSPARQLCONNECTIONOPTIONS_H

#include "qsparql.h"

#include <QMap>
#include <QString>
#include <QVariant>

/// Named settings of a connection. An option that is not set is an invalid value and leaves the driver's
/// default.
class Q_SPARQL_EXPORT QSparqlConnectionOptions
{
public:
    QSparqlConnectionOptions();

    void setOption(const QString &name, const QVariant &value);
    QVariant option(const QString &name) const;

    /**
     * The folder of the store. Empty, the default, means the user's own store: the folder `tidel/store` below
     * QStandardPaths::GenericDataLocation, which all programs of that user share.
     */
    void setDatabaseName(const QString &databaseName);
    QString databaseName() const;

    bool operator==(const QSparqlConnectionOptions &other) const;
    bool operator!=(const QSparqlConnectionOptions &other) const { return !(*this == other); }

private:
    QMap<QString, QVariant> m_options;
};

#endif
