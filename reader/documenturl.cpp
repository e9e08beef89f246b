// SPDX-License-Identifier: LGPL-2.1-or-later
#include "documenturl.h"

#include <QDir>
#include <QFileInfo>

namespace Tidel {

namespace {

QUrl fileUrl(const QString &path)
{
    // QFileInfo does not make such a path absolute.
    if (path.contains(QChar(u'\0')))
        return QUrl();
    // Qt takes a path that begins with a colon for that of a resource in the program.
    const QString inFolder = path.startsWith(QLatin1Char(':')) ? QLatin1String("./") + path : path;
    return QUrl::fromLocalFile(QDir::cleanPath(QFileInfo(inFolder).absoluteFilePath()));
}

bool isFileUrl(const QString &argument)
{
    return argument.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
}

QString withoutLocalHost(QUrl url)
{
    if (url.host() == QLatin1String("localhost"))
        url.setHost(QString());
    return url.toLocalFile();
}

} // namespace

QUrl documentUrl(const QString &argument)
{
    if (isFileUrl(argument))
        return fileUrl(withoutLocalHost(QUrl(argument)));
    if (argument.contains(QLatin1String("://")) && !QFileInfo::exists(argument))
        return QUrl(argument);
    return fileUrl(argument);
}

bool isDocumentUrl(const QUrl &address)
{
    const bool isOfWeb =
        address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
    return address.isValid()
        && (isOfWeb ? !address.host().isEmpty() : address.isLocalFile() && !address.path().isEmpty());
}

} // namespace Tidel
