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
    return {FeedDownloadNotFound, QStringLiteral("cannot be read: ") + file.errorString()};
}

/// Why \a path cannot be a document.
Outcome obstacle(const QString &path, qint64 maximumSize)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {FeedDownloadNotFound,
                info.isSymLink() ? QStringLiteral("leads to a file that does not exist")
                                 : QStringLiteral("no such file")};
    if (info.isDir())
        return {FeedDownloadNotAFeed, QStringLiteral("is a directory, not a feed file")};
    if (!info.isFile())
        return {FeedDownloadNotAFeed, QStringLiteral("is not a regular file")};
    if (info.size() > maximumSize)
        return {FeedDownloadTooLarge, tooLarge(maximumSize)};
    return {};
}

/// The steps, in milliseconds, in which the file system of a file that was changed at \a time counts.
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
    const QByteArray document = file.read(maximumSize + 1);
    if (file.error() != QFileDevice::NoError)
        *outcome = unreadable(file);
    else if (document.size() > maximumSize)
        *outcome = {FeedDownloadTooLarge, tooLarge(maximumSize)};
    else if (document.isEmpty())
        *outcome = {FeedDownloadNotAFeed, QStringLiteral("is empty")};
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
