// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedfile.h"

#include "transfer.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace Tidel {

namespace {

Outcome unreadable(const QFile &file)
{
    return {FeedDownloadNotFound, QStringLiteral("could not read the file: ") + file.errorString()};
}

/// The reason why \a path cannot be read; fine if there is none.
Outcome obstacle(const QString &path, qint64 maximumSize)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {FeedDownloadNotFound,
                info.isSymLink() ? QStringLiteral("the file is a link to a file that does not exist")
                                 : QStringLiteral("no such file")};
    if (info.isDir())
        return {FeedDownloadNotAFeed, QStringLiteral("the path is a directory, not a feed")};
    if (!info.isFile())
        return {FeedDownloadNotAFeed, QStringLiteral("the file is not a regular file")};
    if (info.size() > maximumSize)
        return {FeedDownloadTooLarge, tooLarge(maximumSize)};
    return {};
}

/// The resolution of file times in milliseconds, for a file system that stores \a time.
int timeStep(const QDateTime &time)
{
    const bool countsSeconds = time.time().msec() == 0;
    return countsSeconds ? 2000 : 100;
}

} // namespace

std::optional<QByteArray> readDocument(const QString &path, qint64 maximumSize, Outcome *outcome)
{
    *outcome = obstacle(path, maximumSize);
    if (!outcome->isFine())
        return std::nullopt;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *outcome = unreadable(file);
        return std::nullopt;
    }
    QByteArray document = file.read(maximumSize + 1);
    // It has space for the largest one.
    document.squeeze();
    if (file.error() != QFileDevice::NoError)
        *outcome = unreadable(file);
    else if (document.size() > maximumSize)
        *outcome = {FeedDownloadTooLarge, tooLarge(maximumSize)};
    return outcome->isFine() ? std::make_optional(document) : std::nullopt;
}

Validators fileValidators(const QString &path)
{
    const QFileInfo info(path);
    const QDateTime changed = info.lastModified();
    if (!info.isFile() || changed.msecsTo(QDateTime::currentDateTime()) < timeStep(changed))
        return {};
    return {QStringLiteral("file:%1:%2").arg(changed.toMSecsSinceEpoch()).arg(info.size()), QString()};
}

} // namespace Tidel
