// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef QSPARQLCONNECTIONOPTIONS_H
#define QSPARQLCONNECTIONOPTIONS_H

#include "qsparql.h"

#include <QMap>
#include <QSharedDataPointer>
#include <QString>
#include <QVariant>

class QSparqlConnectionOptionsPrivate;

/**
 * The named options of a connection. The driver uses its default for an option that is not set.
 *
 * The class is implicitly shared.
 */
class Q_SPARQL_EXPORT QSparqlConnectionOptions
{
public:
    /// Constructs an object without options.
    QSparqlConnectionOptions();
    /// Constructs a copy of \a other.
    QSparqlConnectionOptions(const QSparqlConnectionOptions &other);
    /// Moves \a other, which is empty afterwards.
    QSparqlConnectionOptions(QSparqlConnectionOptions &&other) noexcept;
    ~QSparqlConnectionOptions();
    /// Assigns \a other.
    QSparqlConnectionOptions &operator=(const QSparqlConnectionOptions &other);
    /// Moves \a other.
    QSparqlConnectionOptions &operator=(QSparqlConnectionOptions &&other) noexcept;
    /// Exchanges these options with \a other.
    void swap(QSparqlConnectionOptions &other) noexcept { d.swap(other.d); }

    /**
     * Sets the option \a name to \a value. An invalid value removes the option.
     *
     * The driver knows these options:
     * - "patience": how many milliseconds the opening of the store and an update wait for other programs,
     *   30,000 by default. Connections of one thread share a store with the patience of the first one.
     * - "durable": if it is true, an update is on the disk when its result has finished. By default a power
     *   loss, but not the end of a program, can undo the last updates.
     */
    void setOption(const QString &name, const QVariant &value);
    /// Returns the value of the option \a name. It is invalid if the option is not set.
    QVariant option(const QString &name) const;

    /**
     * Sets the folder of the store to \a databaseName. If the name is empty, which is the default, the
     * connection opens the store of the user: the folder `tidel/store` in
     * QStandardPaths::GenericDataLocation. All programs of the user share that store.
     */
    void setDatabaseName(const QString &databaseName);
    /// Returns the folder of the store.
    QString databaseName() const;

    /// Returns true if the same options have equal values; otherwise returns false.
    bool operator==(const QSparqlConnectionOptions &other) const;
    /// Returns true if the options differ; otherwise returns false.
    bool operator!=(const QSparqlConnectionOptions &other) const { return !(*this == other); }

private:
    QSharedDataPointer<QSparqlConnectionOptionsPrivate> d;
};

Q_DECLARE_SHARED(QSparqlConnectionOptions)

#endif
