// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TESTSTORE_H
#define TESTSTORE_H

#include <QSparqlResultRow>
#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <vector>

class QSparqlConnection;

/**
 * A new and empty store in a folder of its own, with the real database. It sets `XDG_DATA_HOME` to the
 * folder. Its destructor releases FeedTrackerSparql's instance and deletes the instance's connection.
 */
class TestStore
{
public:
    TestStore();
    ~TestStore();

    /// Returns the data folder of the user. The store is in `tidel/store` below it.
    QString dataFolder() const;

    /// Executes an update on a connection of its own. Fails the test if the store refuses it.
    void update(const QString &statement) const;
    /// Executes a query on a connection of its own and returns its rows. Fails the test if the store refuses
    /// it.
    std::vector<QSparqlResultRow> select(const QString &statement) const;
    /// Returns the rows of a query as texts, with a blank between the columns.
    QStringList texts(const QString &statement) const;
    /// Returns the number of rows that match \a pattern, the inside of a WHERE clause.
    int count(const QString &pattern) const;

private:
    QSparqlConnection *beside() const;

    QTemporaryDir m_folder;
    mutable std::unique_ptr<QSparqlConnection> m_beside;
};

#endif
