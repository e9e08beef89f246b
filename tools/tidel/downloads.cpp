// SPDX-License-Identifier: LGPL-2.1-or-later
#include "downloads.h"

#include "feedstore.h"
#include "output.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

#include <feedtrackersparql.h>

namespace Tidel {

namespace {

/// The path of the file that \a localUrl names, when it is a file in the download folder; else empty.
QString downloadedFile(const QString &localUrl)
{
    const QFileInfo file(QUrl(localUrl).toLocalFile());
    // Of a link only the link itself is looked at, which is what would be removed.
    if (!file.isAbsolute() || !(file.isFile() || file.isSymLink()))
        return QString();
    const QString folder = QFileInfo(downloadFolder()).canonicalFilePath();
    const QString place = QFileInfo(file.path()).canonicalFilePath();
    const bool isInside =
        !folder.isEmpty() && (place + QLatin1Char('/')).startsWith(folder + QLatin1Char('/'));
    return isInside ? file.filePath() : QString();
}

} // namespace

QString downloadFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + QLatin1String("/tidel");
}

DownloadRemover::DownloadRemover(FeedStore &store, Output &output) : m_output(output)
{
    QObject::connect(&store.library(), &FeedTrackerSparql::enclosuresToBeDeleted, &m_receiver,
                     [this](const QList<FeedEnclosure> &enclosures) { remove(enclosures); });
}

void DownloadRemover::remove(const QList<FeedEnclosure> &enclosures)
{
    m_enclosures += enclosures.size();
    for (const FeedEnclosure &enclosure : enclosures) {
        const QString path = downloadedFile(enclosure.localUrl());
        if (path.isEmpty())
            continue;
        if (QFile::remove(path))
            ++m_files;
        else
            m_output.error(QStringLiteral("%1: the file cannot be removed").arg(path));
    }
}

} // namespace Tidel
