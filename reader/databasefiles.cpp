// SPDX-License-Identifier: LGPL-2.1-or-later
#include "databasefiles_p.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace Tidel {

namespace {

Failure failure(const QString &attempt, const QString &reason)
{
    return Failure(Error(Error::StoreFailed, attempt, reason));
}

QStringList databaseFiles(const QString &folder)
{
    return QDir(folder).entryList({QStringLiteral("meta.db*")}, QDir::Files);
}

bool sync(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    const bool isDone = descriptor >= 0 && fsync(descriptor) == 0;
    if (descriptor >= 0)
        ::close(descriptor);
    return isDone;
}

bool link(const QString &from, const QString &to)
{
    return ::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0
        || QFile::copy(from, to);
}

/// Replaces \a to, if it exists.
bool rename(const QString &from, const QString &to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

} // namespace

QString databaseIn(const QString &folder) { return folder + QLatin1String("/meta.db"); }

Result<void> copyWithBeginning(const QString &damaged, const QString &sound, int size, const QString &path)
{
    const QString attempt = QStringLiteral("copy %1 to %2").arg(damaged, path);
    QFile::remove(path);
    QFile source(sound);
    QFile target(path);
    if (!QFile::copy(damaged, path))
        return failure(attempt, QStringLiteral("check the free space and the permissions"));
    if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::ReadWrite))
        return failure(attempt, source.errorString() + target.errorString());
    QByteArray beginning = source.read(size);
    constexpr int pageCount = 28;
    constexpr int freePages = 32;
    constexpr int pageSizeAt = 16;
    if (beginning.size() < 100)
        return failure(attempt, QStringLiteral("the new database is too short"));
    const auto pageSize = qFromBigEndian<quint16>(beginning.constData() + pageSizeAt);
    if (pageSize == 0)
        return failure(attempt, QStringLiteral("the new database has no size of pages"));
    const quint32 pages = qToBigEndian(quint32(target.size() / pageSize));
    beginning.replace(pageCount, sizeof pages, reinterpret_cast<const char *>(&pages), sizeof pages);
    beginning.replace(freePages, 8, QByteArray(8, '\0'));
    return target.write(beginning) == beginning.size() && target.flush()
        ? Result<void>()
        : Result<void>(failure(attempt, target.errorString()));
}

Result<QString> replaceDatabase(const QString &folder, const QString &newFolder)
{
    const QString attempt = QStringLiteral("put the new database into %1").arg(folder);
    const QString damaged =
        folder + QDateTime::currentDateTime().toString(QStringLiteral("'/damaged'-yyyy-MM-dd-hhmmss-zzz"));
    const auto reason = [] { return QString::fromLocal8Bit(strerror(errno)); };
    if (!QDir().mkpath(damaged))
        return failure(attempt, reason());
    const QStringList oldFiles = databaseFiles(folder);
    for (const QString &name : oldFiles) {
        if (!link(folder + QLatin1Char('/') + name, damaged + QLatin1Char('/') + name))
            return failure(attempt, reason());
    }
    const QStringList newFiles = databaseFiles(newFolder);
    for (const QString &name : newFiles)
        sync(newFolder + QLatin1Char('/') + name);
    if (!sync(damaged))
        return failure(attempt, reason());
    // The log of the old database must not be taken for one of the new.
    for (const QString &name : oldFiles) {
        if (name != QLatin1String("meta.db"))
            QFile::remove(folder + QLatin1Char('/') + name);
    }
    for (const QString &name : newFiles) {
        if (!rename(newFolder + QLatin1Char('/') + name, folder + QLatin1Char('/') + name))
            return failure(attempt, reason());
    }
    sync(folder);
    for (const char *mark : {"/creating", "/damaged"})
        QFile::remove(folder + QLatin1String(mark));
    return damaged;
}

} // namespace Tidel
