// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storefolder_p.h"

#include "boundedwait_p.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

Q_LOGGING_CATEGORY(lcStore, "tidel.sparql.store")

namespace {

/// Locks \a lock. QLockFile's own waiting gets slower and slower; one of eight programs would wait six
/// seconds.
bool waitFor(QLockFile *lock)
{
    return waitUntil([lock] { return lock->tryLock(0) || lock->error() != QLockFile::LockFailedError; })
        && lock->isLocked();
}

const QString creationMark = QStringLiteral("creating");
const QString ontologyCopy = QStringLiteral("ontologies.gvdb");
const QString damageMark = QStringLiteral("damaged");

bool touch(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly);
}

/// Writes the file or folder to the disk. Returns false if that fails; otherwise returns true.
bool isSynced(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool isDone = fsync(descriptor) == 0;
    ::close(descriptor);
    return isDone;
}

QSparqlError connectionError(const QString &message)
{
    return QSparqlError(message, QSparqlError::ConnectionError);
}

} // namespace

StoreFolder::StoreFolder(const QString &path) : m_dir(path), m_lock(path + QLatin1String("/opening.lock")) { }

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

bool StoreFolder::isMade() const
{
    return m_dir.exists(QStringLiteral("meta.db")) && !m_dir.exists(creationMark);
}

bool StoreFolder::isDamaged() const { return m_dir.exists(damageMark); }

void StoreFolder::noteDamage() const { touch(m_dir.filePath(damageMark)); }

void StoreFolder::requestCheck() const
{
    // Tracker leaves this file when its program does not end well.
    touch(m_dir.filePath(QStringLiteral(".meta.isrunning")));
}

void StoreFolder::forgetDamage() { m_dir.remove(damageMark); }

QSparqlError StoreFolder::refuseReadOnly() const
{
    const QStringList names = databaseFiles();
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

bool StoreFolder::removeOntologyCopy() { return m_dir.remove(ontologyCopy) || !m_dir.exists(ontologyCopy); }

bool StoreFolder::beginMaking() { return touch(m_dir.filePath(creationMark)) && isSynced(m_dir.path()); }

bool StoreFolder::sync() const
{
    // The folder above may be one that only others can read.
    isSynced(m_dir.filePath(QStringLiteral("..")));
    const QStringList files = databaseFiles() + QStringList(ontologyCopy);
    return std::all_of(files.cbegin(), files.cend(),
                       [this](const QString &name) { return isSynced(m_dir.filePath(name)); })
        && isSynced(m_dir.path());
}

bool StoreFolder::endMaking() { return m_dir.remove(creationMark); }

bool StoreFolder::holdsData() const
{
    // The third file is an index of the second one.
    return QFileInfo(m_dir.filePath(QStringLiteral("meta.db"))).size() > 0
        || QFileInfo(m_dir.filePath(QStringLiteral("meta.db-wal"))).size() > 0;
}

QStringList StoreFolder::databaseFiles() const
{
    return m_dir.entryList({QStringLiteral("meta.db*")}, QDir::Files);
}

bool StoreFolder::setAside()
{
    const QString aside =
        QDateTime::currentDateTime().toString(QStringLiteral("'aside'-yyyy-MM-dd-hhmmss-zzz"));
    const QStringList names = databaseFiles();
    const bool isDone =
        m_dir.mkdir(aside) && std::all_of(names.cbegin(), names.cend(), [&](const QString &name) {
            return m_dir.rename(name, aside + QLatin1Char('/') + name);
        });
    if (isDone)
        qCWarning(lcStore).noquote().nospace()
            << "The database in " << m_dir.path()
            << " cannot be opened and was moved away, because its creation had not been completed. An empty "
               "one takes its place. If you miss anything, look into "
            << m_dir.filePath(aside);
    return isDone;
}

void StoreFolder::removeDatabase()
{
    const QStringList names = databaseFiles();
    for (const QString &name : names)
        m_dir.remove(name);
}
