// SPDX-License-Identifier: LGPL-2.1-or-later
#include "filecheck_p.h"

#include "downloadfolder.h"
#include "statements_p.h"
#include "writeturn.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QUrl>

namespace Tidel {

namespace {

struct LocalFile
{
    QString enclosureUri;
    QString path;
};

Result<QList<LocalFile>> localFiles(StorePrivate &store)
{
    return store.run(Statements::localFiles(), "find the downloaded files").map([](const Answer &answer) {
        QList<LocalFile> files;
        while (answer->next()) {
            const QString path = QUrl(answer->value(1).toString()).toLocalFile();
            if (!path.isEmpty())
                files.append({answer->value(0).toString(), path});
        }
        return files;
    });
}

bool isMissing(const LocalFile &file)
{
    const QFileInfo info(file.path);
    return !info.exists() && !info.isSymLink() && QFileInfo(info.path()).isDir();
}

const QString namesOfParts = QStringLiteral(".tidel-*.part");

// How long a part that can be continued is left alone, and another one, in days.
constexpr int patience = 7;
constexpr int shortPatience = 1;

/// The files in the download folder whose names match \a pattern.
QFileInfoList downloads(const QString &pattern, QDir::Filters hidden = {})
{
    return QDir(DownloadFolder::path()).entryInfoList({pattern}, QDir::Files | hidden, QDir::Name);
}

/// The parts in the download folder, and the notes without a part.
QFileInfoList partsAndLoneNotes()
{
    QFileInfoList files = downloads(namesOfParts, QDir::Hidden);
    const QFileInfoList notes = downloads(DownloadFolder::noteOfPart(namesOfParts), QDir::Hidden);
    for (const QFileInfo &note : notes) {
        if (!QFile::exists(note.path() + QLatin1Char('/') + note.completeBaseName()))
            files.append(note);
    }
    return files;
}

bool isAbandoned(const QFileInfo &part)
{
    const bool hasNote = QFile::exists(DownloadFolder::noteOfPart(part.absoluteFilePath()));
    return part.lastModified() < QDateTime::currentDateTime().addDays(hasNote ? -patience : -shortPatience);
}

} // namespace

Result<QStringList> findMissingFiles(StorePrivate &store)
{
    return localFiles(store).map([](const QList<LocalFile> &files) {
        QStringList paths;
        for (const LocalFile &file : files) {
            if (isMissing(file))
                paths.append(file.path);
        }
        return paths;
    });
}

Result<void> forgetMissingFiles(StorePrivate &store)
{
    return localFiles(store).and_then([&](const QList<LocalFile> &files) {
        return inChunks(files, [&](const QList<LocalFile> &some) -> Result<void> {
            const Result<WriteTurn> turn = WriteTurn::take();
            if (!turn)
                return Failure(turn.error());
            QString text;
            for (const LocalFile &file : some) {
                if (isMissing(file))
                    text += Statements::forgetFile(file.enclosureUri);
            }
            return text.isEmpty() ? Result<void>()
                                  : store.update(Statements::update(text), "forget missing files");
        });
    });
}

Result<QStringList> findUnfinishedFiles(StorePrivate &store)
{
    return store.texts(Statements::queuedAddresses(), "read the queue of downloads from the store")
        .map([](const QStringList &addresses) {
            QSet<QString> wanted;
            for (const QString &address : addresses)
                wanted.insert(DownloadFolder::partName(address));
            QStringList paths;
            const QFileInfoList parts = partsAndLoneNotes();
            for (const QFileInfo &part : parts) {
                if (isAbandoned(part) && !wanted.contains(part.fileName()))
                    paths.append(part.absoluteFilePath());
            }
            return paths;
        });
}

Result<QStringList> findUnknownFiles(StorePrivate &store)
{
    return localFiles(store).map([](const QList<LocalFile> &files) {
        QSet<QString> known;
        for (const LocalFile &file : files)
            known.insert(QFileInfo(file.path).canonicalFilePath());
        QStringList paths;
        const QFileInfoList found = downloads(QStringLiteral("*"));
        for (const QFileInfo &file : found) {
            if (!known.contains(file.canonicalFilePath()))
                paths.append(file.absoluteFilePath());
        }
        return paths;
    });
}

Result<void> removeUnfinishedFiles(const QStringList &paths)
{
    for (const QString &path : paths) {
        QFile::remove(DownloadFolder::noteOfPart(path));
        QFile file(path);
        if (!file.remove() && file.exists())
            return Failure(
                Error(Error::StoreFailed, QStringLiteral("remove %1").arg(path), file.errorString()));
    }
    return {};
}

} // namespace Tidel
