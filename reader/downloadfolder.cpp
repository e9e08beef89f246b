// SPDX-License-Identifier: LGPL-2.1-or-later
#include "downloadfolder.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace Tidel {

namespace {

/// The path of the file \a localUrl if it is in the download folder; otherwise empty.
QString downloadedFile(const QString &localUrl)
{
    const QFileInfo file(QUrl(localUrl).toLocalFile());
    // For a symbolic link, its own place counts: the link is what would be removed.
    if (!file.isAbsolute() || !(file.isFile() || file.isSymLink()))
        return QString();
    const QString folder = QFileInfo(DownloadFolder::path()).canonicalFilePath();
    const QString place = QFileInfo(file.path()).canonicalFilePath();
    const bool isInside =
        !folder.isEmpty() && (place + QLatin1Char('/')).startsWith(folder + QLatin1Char('/'));
    return isInside ? file.filePath() : QString();
}

} // namespace

QString DownloadFolder::path()
{
    return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + QLatin1String("/tidel");
}

int DownloadFolder::removeFiles(const QList<FeedEnclosure> &enclosures, QStringList *failed)
{
    int removed = 0;
    for (const FeedEnclosure &enclosure : enclosures) {
        const QString path = downloadedFile(enclosure.localUrl());
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
