// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storefolder_p.h"

#include "boundedwait_p.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Locks \a lock. QLockFile's own waiting gets slower and slower; one of eight programs would wait six
/// seconds.
bool waitFor(QLockFile *lock)
{
    return waitUntil([lock] { return lock->tryLock(0) || lock->error() != QLockFile::LockFailedError; })
        && lock->isLocked();
}

const QString damageMark = QStringLiteral("damaged");

void touch(const QString &fileName)
{
    QFile file(fileName);
    file.open(QIODevice::WriteOnly);
}

QSparqlError connectionError(const QString &message)
{
    return QSparqlError(message, QSparqlError::ConnectionError);
}

} // namespace

StoreFolder::StoreFolder(const QString &path)
    : m_dir(path), m_lock(path + QLatin1String("/opening.lock")), m_mark(path + QLatin1String("/creating"))
{
}

QSparqlError StoreFolder::enter()
{
    if (!m_dir.mkpath(QStringLiteral(".")))
        return connectionError(
            QStringLiteral("Cannot create the folder of the store, %1; check the permissions above it")
                .arg(m_dir.path()));
    if (!waitFor(&m_lock))
        return connectionError(lockFailure().arg(m_dir.path()));
    return QSparqlError();
}

/// Returns the message with a place for the path of the folder.
QString StoreFolder::lockFailure() const
{
    return m_lock.error() == QLockFile::LockFailedError
        ? QStringLiteral("Cannot lock the store in %1: another program keeps it locked; end that program or "
                         "try again later")
        : QStringLiteral("Cannot lock the store in %1: a file cannot be written there; check the permissions "
                         "and the free space");
}

bool StoreFolder::hasDatabase() const
{
    return m_dir.exists(QStringLiteral("meta.db")) && !m_mark.exists() && !m_dir.exists(damageMark);
}

void StoreFolder::noteDamage() const { touch(m_dir.filePath(damageMark)); }

void StoreFolder::prepareCheck() const
{
    // Tracker checks a database if it finds this file, and removes it even if the database fails.
    if (m_dir.exists(damageMark))
        touch(m_dir.filePath(QStringLiteral(".meta.isrunning")));
}

void StoreFolder::forgetDamage() { m_dir.remove(damageMark); }

QSparqlError StoreFolder::refuseReadOnly() const
{
    const QStringList names = m_dir.entryList({QStringLiteral("meta.db*")}, QDir::Files);
    for (const QString &name : names) {
        // QFileInfo asks for the user who started the program, SQLite for the one as whom it runs.
        if (faccessat(AT_FDCWD, QFile::encodeName(m_dir.filePath(name)).constData(), W_OK, AT_EACCESS) != 0)
            return connectionError(
                QStringLiteral("Cannot write to the store in %1: its file %2 is read-only for this program; "
                               "check the owner and the permissions of the file, and the file system")
                    .arg(m_dir.path(), name));
    }
    return QSparqlError();
}

bool StoreFolder::removeOntologyCopy()
{
    const QString copy = QStringLiteral("ontologies.gvdb");
    return m_dir.remove(copy) || !m_dir.exists(copy);
}

bool StoreFolder::beginMaking()
{
    if (m_mark.exists()) {
        const QStringList remains = m_dir.entryList({QStringLiteral("meta.db*")}, QDir::Files);
        for (const QString &name : remains)
            m_dir.remove(name);
    }
    return m_dir.exists(QStringLiteral("meta.db")) || m_mark.open(QIODevice::WriteOnly);
}

bool StoreFolder::endMaking() { return !m_mark.isOpen() || m_mark.remove(); }
