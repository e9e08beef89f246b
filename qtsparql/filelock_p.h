// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FILELOCK_P_H
#define FILELOCK_P_H

#include "patientwait_p.h"

/**
 * A lock between processes and threads: a file that says who had the lock last, and stays when it is
 * released. The lock ends with the object or with the process.
 *
 * QLockFile is not used: it writes to the disk each time, and takes a lock that was held for long as left
 * over.
 */
class FileLock
{
public:
    /// Opens the file \a path, and creates it if it does not exist.
    explicit FileLock(const QString &path);
    /// Releases the lock.
    ~FileLock();

    /// Returns the path of the file.
    QString path() const { return m_path; }
    /// Returns 0 if the file is open; otherwise returns the error number of the system.
    int error() const { return m_error; }

    /// Returns true if this object has got the lock; otherwise returns false.
    bool tryLock();
    /// Writes into the file that this process has the lock from now on.
    void note() const;
    /// Returns who had the lock last.
    Holder holder() const;

private:
    Q_DISABLE_COPY(FileLock)

    void open();
    bool isRemoved() const;

    const QString m_path;
    int m_descriptor = -1;
    int m_error = 0;
};

#endif
