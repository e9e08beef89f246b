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
 * A new, empty user's store in a folder of its own, for as long as it lives: the real database. It points
 * `XDG_DATA_HOME` there, and releases FeedTrackerSparql's instance and frees its connection when it goes.
 */
class TestStore
{
public:
    TestStore();
    ~TestStore();

    /// The folder that stands for the user's data folder; the store is in `tidel/store` below it.
    QString dataFolder() const;

    /// Runs an update beside the library; fails the running test when the store refuses it.
    void update(const QString &statement) const;
    /// The rows of a query beside the library; fails the running test when the store refuses it.
    std::vector<QSparqlResultRow> select(const QString &statement) const;
    /// Those rows as text, the columns separated by a blank.
    QStringList texts(const QString &statement) const;
    /// The number of rows that \a pattern, the inside of a WHERE clause, matches.
    int count(const QString &pattern) const;

private:
    QSparqlConnection *beside() const;

    QTemporaryDir m_folder;
    mutable std::unique_ptr<QSparqlConnection> m_beside;
};

#endif
