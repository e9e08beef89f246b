// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "output.h"
#include "phrases.h"

#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

#include <TidelReader/backup.h>

namespace Tidel {

namespace {

QString shown(const Backup::Size &size)
{
    return QStringLiteral("%1, %2, %3")
        .arg(countedChannels(size.channels), countedMessages(size.messages),
             countedEnclosures(size.enclosures));
}

QJsonObject json(const Backup::Size &size)
{
    return {{QStringLiteral("channels"), size.channels},
            {QStringLiteral("messages"), size.messages},
            {QStringLiteral("enclosures"), size.enclosures}};
}

QString advice(const Error &error)
{
    if (error.kind() != Error::NotEmpty)
        return {};
    return QStringLiteral(
               "; add --merge to keep both, or move the folder %1/tidel away to start with an empty one")
        .arg(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}

void backup(const Store &store, const Arguments &arguments, Output &output)
{
    const QString fileName = arguments.names.first();
    output.progress(QStringLiteral("Writing %1...").arg(fileName));
    const Result<Backup::Size> size = Backup(store).write(fileName);
    if (!size) {
        output.failure(size.error());
        return;
    }
    const qint64 length = QFileInfo(fileName).size();
    QJsonObject object = json(*size);
    object.insert(QStringLiteral("file"), fileName);
    object.insert(QStringLiteral("length"), length);
    output.report(
        QStringLiteral("%1: %2 in %3").arg(fileName, shown(*size), QLocale::c().formattedDataSize(length)),
        object);
}

void restore(const Store &store, const Arguments &arguments, Output &output)
{
    const QString fileName = arguments.names.first();
    const bool isMerge = arguments.isSet("merge");
    output.progress(QStringLiteral("Restoring %1...").arg(fileName));
    const Result<Backup::Size> size =
        isMerge ? Backup(store).merge(fileName) : Backup(store).restore(fileName);
    if (size)
        output.report(QStringLiteral("%1: %2").arg(isMerge ? "Added" : "Restored", shown(*size)),
                      json(*size));
    else
        output.failure(size.error(), advice(size.error()));
}

} // namespace

const Command backupCommand = {
    "backup",
    "FILE",
    "Copy the whole archive, without downloaded files, into one file.",
    "The name of the copy, such as archive.ttl.gz: compressed Turtle. A file of this name is replaced.",
    1,
    1,
    {},
    {"tidel backup archive.ttl.gz"},
    backup};

const Command restoreCommand = {"restore",
                                "FILE",
                                "Fill an empty archive from a backup, or merge a backup into an archive.",
                                "A file that \"tidel backup\" has written.",
                                1,
                                1,
                                {{"merge", nullptr,
                                  "Adds what an archive that is not empty lacks. Nothing is deleted. The "
                                  "later mark as read or favorite counts."}},
                                {"tidel restore archive.ttl.gz", "tidel restore --merge laptop.ttl.gz"},
                                restore};

} // namespace Tidel
