// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storefolder_p.h"

#include <QDeadlineTimer>

namespace {

constexpr int lockTimeoutMs = 30000;

bool waitFor(QLockFile *lock)
{
    // Left to itself QLockFile looks ever more rarely: the last of eight programs would start after six
    // seconds.
    constexpr int intervalMs = 10;
    const QDeadlineTimer deadline(lockTimeoutMs);
    while (!lock->tryLock(intervalMs)) {
        if (lock->error() != QLockFile::LockFailedError || deadline.hasExpired())
            return false;
    }
    return true;
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
        return connectionError(QStringLiteral("Cannot create the folder of the store, %1").arg(m_dir.path()));
    if (!waitFor(&m_lock))
        return connectionError(QStringLiteral("Cannot lock the store in %1").arg(m_dir.path()));
    return QSparqlError();
}

bool StoreFolder::hasDatabase() const { return m_dir.exists(QStringLiteral("meta.db")) && !m_mark.exists(); }

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
