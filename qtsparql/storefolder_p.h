// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STOREFOLDER_P_H
#define STOREFOLDER_P_H

#include "filelock_p.h"
#include "qsparqlerror.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>

/**
 * The folder of a store while a program opens the database in it.
 *
 * Only one object of all processes can enter a folder. Two processes that create the same database at the
 * same time would damage it. Nothing has to be entered to read a complete database.
 */
class StoreFolder
{
public:
    /// Constructs an object for the folder \a path, which need not exist.
    explicit StoreFolder(const QString &path);

    /// Returns the path of the folder.
    QString path() const { return m_dir.path(); }

    /// Creates the folder if it does not exist and waits until no other object is in it, for at most
    /// \a milliseconds. The object leaves the folder when it is destroyed. Fails if this process may not
    /// write the folder or a file of the database.
    QSparqlError enter(int milliseconds);
    /// Takes the permissions of the folder and its files from all but their owner.
    void tighten() const;

    /// Returns true if there is a complete database; otherwise returns false.
    bool isMade() const;
    /// Returns true if the database is marked as damaged; otherwise returns false.
    bool isDamaged() const;

    /// Marks the database as damaged.
    void noteDamage() const;
    /// Makes Tracker check the whole database before it opens it for writing.
    void requestCheck() const;
    /// Removes the mark of damage, if there is one.
    void forgetDamage();

    /// Returns an error if this process may not write the folder or a file of the database.
    QSparqlError refuseReadOnly() const;
    /// Returns a folder with a copy of the database, which other programs do not change while it is copied.
    /// Returns null if that fails.
    std::unique_ptr<QTemporaryDir> copy() const;

    /// Removes the copy of the ontology that Tracker keeps beside the database. Returns false if it is still
    /// there; otherwise returns true.
    ///
    /// Tracker crashes when it reads a copy that a power loss has cut. Without the copy it opens a store in
    /// the same time.
    bool removeOntologyCopy();

    /// Marks the folder while a database is created in it. Returns false if the folder is not writable;
    /// otherwise returns true.
    ///
    /// Tracker cannot open a database whose creation was interrupted.
    bool beginMaking();
    /// Writes all files to the disk, so that a power loss cannot undo the creation after its mark has gone.
    /// The database must be closed. Returns false if that fails; otherwise returns true.
    bool sync() const;
    /// Writes the updates that are complete to the disk. Returns 0, or the error number of the system.
    int syncUpdates() const;
    /// Removes the mark. Returns false if that fails; otherwise returns true.
    bool endMaking();

    /// Returns true if the files of the database are not all empty; otherwise returns false.
    bool holdsData() const;
    /// Moves the database into a folder of its own and warns of it. Returns false if that fails; otherwise
    /// returns true.
    bool setAside();
    /// Removes the database.
    void removeDatabase();

private:
    bool create() const;
    QStringList databaseFiles() const;
    QString states() const;
    bool copyTo(const QString &folder) const;

    QDir m_dir;
    std::unique_ptr<FileLock> m_lock;
};

#endif
