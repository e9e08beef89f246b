// SPDX-License-Identifier: LGPL-2.1-or-later
#include "iconcache.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace Tidel {

namespace {

constexpr qint64 daysBetweenLooks = 7;

QString pathOf(const QString &uri)
{
    const QByteArray name = QCryptographicHash::hash(uri.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        + QStringLiteral("/tidel/icons/") + QString::fromLatin1(name) + QStringLiteral(".png");
}

} // namespace

QImage IconCache::icon(const QString &uri) { return QImage(pathOf(uri), "PNG"); }

bool IconCache::isDue(const QString &uri)
{
    const QFileInfo file(pathOf(uri));
    const QDateTime now = QDateTime::currentDateTimeUtc();
    // A time in the future comes from a clock that was wrong.
    return !file.exists() || file.lastModified() > now.addDays(1)
        || file.lastModified() < now.addDays(-daysBetweenLooks);
}

void IconCache::keep(const QString &uri, const QImage &icon)
{
    QFile file(pathOf(uri));
    QDir().mkpath(QFileInfo(file).path());
    // What cannot be written is looked for again.
    if (!icon.isNull() && file.open(QIODevice::WriteOnly))
        icon.save(&file, "PNG");
    else if (file.open(QIODevice::ReadWrite))
        file.setFileTime(QDateTime::currentDateTimeUtc(), QFileDevice::FileModificationTime);
}

void IconCache::remove(const QString &uri) { QFile::remove(pathOf(uri)); }

} // namespace Tidel
