// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STOREFOLDER_P_H
#define STOREFOLDER_P_H

#include "qsparqlerror.h"

#include <QDir>
#include <QFile>
#include <QLockFile>

/**
 * The folder of a store while a program opens the database in it.
 *
 * Only one object of all processes can be in a folder. Two processes that create the same database at the
 * same time would damage it.
 */
class StoreFolder
{
public:
    /// Constructs an object for the folder \a path, which need not exist.
    explicit StoreFolder(const QString &path);

    /// Returns the path of the folder.
    QString path() const { return m_dir.path(); }

    /// Creates the folder if it does not exist and waits until no other object is in it. The object leaves
    /// the folder when it is destroyed.
    QSparqlError enter();

    /// Returns true if there is a complete database that was not found damaged; otherwise returns false.
    bool hasDatabase() const;

    /// Marks the database as damaged. As long as the mark is there, prepareCheck() makes Tracker check the
    /// whole database before it opens it for writing.
    void noteDamage() const;
    /// Makes Tracker check a database that is marked as damaged.
    void prepareCheck() const;
    /// Removes the mark of damage, if there is one.
    void forgetDamage();

    /// Returns an error if there is a file of the database that this process may not write.
    ///
    /// Tracker opens such a database for writing. It reports success of updates that it does not store.
    QSparqlError refuseReadOnly() const;

    /// Removes the copy of the ontology that Tracker keeps beside the database. Returns false if it is still
    /// there; otherwise returns true.
    ///
    /// Tracker crashes when it reads a copy that a power loss has cut. Without the copy it opens a store in
    /// the same time.
    bool removeOntologyCopy();

    /// Marks the folder while a database is created in it, unless there is a complete database. Returns false
    /// if the folder is not writable; otherwise returns true.
    ///
    /// Tracker cannot open a database whose creation was interrupted. Such a database contains no data, and
    /// it is removed if the mark is found.
    bool beginMaking();
    /// Removes the mark. Returns false if it could not be removed or another object removed it; otherwise
    /// returns true.
    bool endMaking();

private:
    QString lockFailure() const;

    QDir m_dir;
    QLockFile m_lock;
    QFile m_mark;
};

#endif
