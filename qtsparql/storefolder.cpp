// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storefolder_p.h"

#include "obstacle_p.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

Q_LOGGING_CATEGORY(lcStore, "tidel.sparql.store")

namespace {

const QString creationMark = QStringLiteral("creating");
const QString ontologyCopy = QStringLiteral("ontologies.gvdb");
const QString damageMark = QStringLiteral("damaged");

bool touch(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly);
}

/// Writes the file or folder \a path to the disk with \a sync. Returns 0, or the error number of the system.
int syncFile(const QString &path, int (*sync)(int))
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    const int error = sync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    return error;
}

bool isSynced(const QString &path) { return syncFile(path, fsync) == 0; }

QSparqlError connectionError(const QString &message)
{
    return QSparqlError(message, QSparqlError::ConnectionError);
}

} // namespace

StoreFolder::StoreFolder(const QString &path) : m_dir(path) { }

QSparqlError StoreFolder::enter(int milliseconds)
{
    const QString cannotOpen = QStringLiteral("Cannot open the store in %1: ").arg(m_dir.path());
    if (!create())
        return connectionError(cannotOpen + QLatin1String("cannot create the folder: ") + obstacle(errno));
    if (const QSparqlError refusal = refuseReadOnly(); refusal.isValid())
        return refusal;
    m_lock = std::make_unique<FileLock>(m_dir.filePath(QStringLiteral("opening.lock")));
    if (m_lock->error() != 0)
        return connectionError(cannotOpen
                               + QStringLiteral("cannot write %1: ").arg(QFileInfo(m_lock->path()).fileName())
                               + obstacle(m_lock->error()));
    PatientWait wait(milliseconds, "opening it");
    while (!m_lock->tryLock()) {
        if (!wait.goOn([this] { return m_lock->holder(); }))
            return connectionError(cannotOpen + wait.failure(m_lock->holder()));
    }
    m_lock->note();
    return QSparqlError();
}

/// Creates the folder for this user alone. Returns false and sets errno if that fails; otherwise returns
/// true.
bool StoreFolder::create() const
{
    m_dir.mkpath(QStringLiteral(".."));
    return mkdir(QFile::encodeName(m_dir.path()).constData(), 0700) == 0
        || (errno == EEXIST && m_dir.exists());
}

// Tracker opens a database for writing that it cannot write, and reports success of updates that it does not
// store.
QSparqlError StoreFolder::refuseReadOnly() const
{
    const QStringList names = databaseFiles() << QStringLiteral(".");
    for (const QString &name : names) {
        const QString path = QDir::cleanPath(m_dir.filePath(name));
        // QFileInfo asks for the user who started the program, SQLite for the one as whom it runs.
        // Another program may have removed the file meanwhile.
        if (faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) != 0
            && errno != ENOENT)
            return connectionError(QStringLiteral("Cannot write to the store in %1: cannot write %2: %3")
                                       .arg(m_dir.path(), path, obstacle(errno)));
    }
    return QSparqlError();
}

void StoreFolder::tighten() const
{
    const QStringList names = m_dir.entryList(QDir::Files | QDir::Hidden) << QStringLiteral(".");
    for (const QString &name : names) {
        const QByteArray path = QFile::encodeName(m_dir.filePath(name));
        struct stat status;
        if (lstat(path.constData(), &status) != 0 || (status.st_mode & 077) == 0)
            continue;
        // A folder that everybody may use, like /tmp, stays what it is.
        if (status.st_uid == geteuid() && (status.st_mode & S_ISVTX) == 0)
            chmod(path.constData(), status.st_mode & 0700);
    }
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

/// Returns what changes when somebody opens or changes the database.
QString StoreFolder::states() const
{
    QString states;
    const QStringList names = databaseFiles();
    for (const QString &name : names) {
        const QFileInfo file(m_dir.filePath(name));
        states += QStringLiteral("%1 %2 %3\n")
                      .arg(name)
                      .arg(file.size())
                      .arg(file.lastModified().toMSecsSinceEpoch());
    }
    return states;
}

bool StoreFolder::copyTo(const QString &folder) const
{
    for (const QString &name : {QStringLiteral("meta.db"), QStringLiteral("meta.db-wal")}) {
        const QString copy = folder + QLatin1Char('/') + name;
        QFile::remove(copy);
        if (!m_dir.exists(name))
            continue;
        if (!QFile::copy(m_dir.filePath(name), copy)
            || !QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner))
            return false;
    }
    return true;
}

std::unique_ptr<QTemporaryDir> StoreFolder::copy() const
{
    // The second one is in memory, where there is space if the disk is full.
    for (const QString &place : {QDir::tempPath(), qEnvironmentVariable("XDG_RUNTIME_DIR")}) {
        auto folder = std::make_unique<QTemporaryDir>(place + QLatin1String("/tidel-XXXXXX"));
        const QString before = states();
        if (folder->isValid() && copyTo(folder->path()) && states() == before)
            return folder;
    }
    return nullptr;
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

// SQLite locks other files, so that closing this one takes no lock from it. Without the log, everything is in
// the database, which SQLite has written to the disk before it removed the log.
int StoreFolder::syncUpdates() const
{
    const int error = syncFile(m_dir.filePath(QStringLiteral("meta.db-wal")), fdatasync);
    if (error == ENOENT)
        return 0;
    return error == 0 ? syncFile(m_dir.path(), fsync) : error;
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
    const bool isDone = mkdir(QFile::encodeName(m_dir.filePath(aside)).constData(), 0700) == 0
        && std::all_of(names.cbegin(), names.cend(), [&](const QString &name) {
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
