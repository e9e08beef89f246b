// SPDX-License-Identifier: LGPL-2.1-or-later
#include "downloadfolder.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace Tidel {

QString DownloadFolder::path()
{
    return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + QLatin1String("/tidel");
}

QString DownloadFolder::fileOf(const FeedEnclosure &enclosure)
{
    const QFileInfo file(QUrl(enclosure.localUrl()).toLocalFile());
    // The link is what would be removed.
    if (!file.isAbsolute() || !(file.isFile() || file.isSymLink()))
        return QString();
    const QString folder = QFileInfo(path()).canonicalFilePath();
    const QString place = QFileInfo(file.path()).canonicalFilePath();
    const bool isInside =
        !folder.isEmpty() && (place + QLatin1Char('/')).startsWith(folder + QLatin1Char('/'));
    return isInside ? file.filePath() : QString();
}

QString DownloadFolder::partName(const QString &address)
{
    const QByteArray hash = QCryptographicHash::hash(address.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QStringLiteral(".tidel-%1.part").arg(QLatin1String(hash));
}

QString DownloadFolder::noteOfPart(const QString &path) { return path + QLatin1String(".json"); }

int DownloadFolder::removeFiles(const QList<FeedEnclosure> &enclosures, QStringList *failed)
{
    int removed = 0;
    for (const FeedEnclosure &enclosure : enclosures) {
        const QString part = DownloadFolder::path() + QLatin1Char('/') + partName(enclosure.remoteUrl());
        QFile::remove(noteOfPart(part));
        QFile::remove(part);
        const QString path = fileOf(enclosure);
        if (path.isEmpty())
            continue;
        if (QFile::remove(path))
            ++removed;
        else
            failed->append(path);
    }
    return removed;
}

} // namespace Tidel
