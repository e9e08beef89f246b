// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedfile.h"

#include <QFile>
#include <QFileInfo>

namespace Tidel {

namespace {

/// Why \a path cannot be a document; empty when it may be one.
QString obstacle(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return info.isSymLink() ? QStringLiteral("leads to a file that does not exist")
                                : QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a directory, not a feed file");
    if (!info.isFile())
        return QStringLiteral("is not a regular file");
    if (info.size() > maximumDocumentSize)
        return QStringLiteral("is too large: more than %1 MiB").arg(maximumDocumentSize >> 20);
    return QString();
}

} // namespace

std::optional<QByteArray> readDocument(const QUrl &url, QString *error)
{
    if (!url.isLocalFile()) {
        *error = QStringLiteral("only files can be read for now; save the feed and give the file's name");
        return std::nullopt;
    }
    const QString path = url.toLocalFile();
    *error = obstacle(path);
    if (!error->isEmpty())
        return std::nullopt;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot be read: ") + file.errorString();
        return std::nullopt;
    }
    const QByteArray document = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        *error = QStringLiteral("cannot be read: ") + file.errorString();
        return std::nullopt;
    }
    if (document.isEmpty()) {
        *error = QStringLiteral("is empty");
        return std::nullopt;
    }
    return document;
}

} // namespace Tidel
