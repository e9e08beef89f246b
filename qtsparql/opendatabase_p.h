// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef OPENDATABASE_P_H
#define OPENDATABASE_P_H

#include "closingcleanup_p.h"
#include "preparedqueries_p.h"
#include "propertyranges_p.h"
#include "qsparqlerror.h"
#include "tracker_p.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <vector>

class StoreFolder;

/// A connection of Tracker to the database in a folder. It is closed with the object.
class OpenDatabase
{
public:
    using Pointer = std::unique_ptr<OpenDatabase>;

    /// Opens the database in \a place without waiting for anybody. Returns null if that fails or something
    /// has to be done to the database first.
    static Pointer openForReading(StoreFolder *place);
    /// Opens the database in \a place for writing and creates it if it does not exist. On failure, sets
    /// \a error and returns null.
    static Pointer openForWriting(StoreFolder *place, QSparqlError *error);
    /// Opens a copy of the database in \a place. On failure, sets \a error and returns null.
    static Pointer openCopy(const StoreFolder &place, QSparqlError *error);
    ~OpenDatabase();

    TrackerSparqlConnection *connection() const { return m_connection.get(); }
    PreparedQueries &prepared() { return *m_prepared; }
    PropertyRanges &ranges() { return *m_ranges; }

private:
    enum class Access { Reading, Writing };

    explicit OpenDatabase(const QString &path);
    /// For writing, the compiled-in ontology is used. On failure, sets \a error and returns null.
    static Pointer connect(const StoreFolder &place, Access access, QSparqlError *error);
    static bool make(StoreFolder *place, QSparqlError *error);
    void quickenQueries() const;
    /// Returns the answer to the ASK statement \a question; false if there is none.
    bool ask(const QByteArray &question) const;
    /// Returns true if the store has the compiled-in ontology; otherwise returns false.
    bool hasOurOntology() const;
    /// Returns true if the store says that Tracker has a full-text index of titles; otherwise returns false.
    bool indexesTitles() const;
    /// Makes the store say that there is no such index. Returns false if that fails; otherwise returns true.
    bool forgetTitleIndex() const;

    const QString m_folder;
    std::unique_ptr<QTemporaryDir> m_copy; // if the folder is one
    std::vector<std::unique_ptr<ClosingCleanup>> m_cleanups; // for writing
    GObjectPtr<TrackerSparqlConnection> m_connection;
    std::optional<PropertyRanges> m_ranges;
    std::optional<PreparedQueries> m_prepared;
};

#endif
