// SPDX-License-Identifier: LGPL-2.1-or-later
#include "notesfile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

using namespace Tidel;

namespace {

// So that a file is read and stored at once, without holding up the event loop.
constexpr int maximumSize = 64 * 1024;

} // namespace

Outcome readNotes(const QUrl &address, const QString &base, QList<StorableMessage> *messages)
{
    const QString path = address.path();
    if (address.scheme() != QLatin1String("notes") || !address.host().isEmpty())
        return {FeedDownloadBadAddress,
                QStringLiteral("the address is not of the form notes:///FOLDER/FILE")};
    // To open a pipe would wait for its writer.
    if (!QFileInfo(path).isFile())
        return {FeedDownloadNotFound, QStringLiteral("no such file")};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {FeedDownloadNotFound, QStringLiteral("could not read the file: ") + file.errorString()};
    const QByteArray text = file.read(maximumSize + 1);
    if (text.size() > maximumSize)
        return {FeedDownloadTooLarge, QStringLiteral("the file has more than 64 KiB")};

    const QStringList lines = QString::fromUtf8(text).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QDate date = QDate::fromString(line.left(10), Qt::ISODate);
        const QString title = line.mid(10).trimmed();
        if (!date.isValid() || title.isEmpty())
            continue;
        FeedMessage message;
        message.setTitle(title);
        message.setPublishedDate(date.startOfDay());
        messages->append(StorableMessage(Link::ofItem(base, line.trimmed()), message));
    }
    if (messages->isEmpty())
        return {FeedDownloadNotAFeed, QStringLiteral("no line has a date and a text")};
    return {};
}
