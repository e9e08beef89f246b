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

/// The files in the download folder whose names match \a pattern.
QFileInfoList downloads(const QString &pattern, QDir::Filters hidden = {})
{
    return QDir(DownloadFolder::path()).entryInfoList({pattern}, QDir::Files | hidden, QDir::Name);
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

Result<QStringList> findUnfinishedFiles(StorePrivate &)
{
    const QDateTime yesterday = QDateTime::currentDateTime().addDays(-1);
    QStringList paths;
    const QFileInfoList parts = downloads(namesOfParts, QDir::Hidden);
    for (const QFileInfo &part : parts) {
        if (part.lastModified() < yesterday)
            paths.append(part.absoluteFilePath());
    }
    return paths;
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

Result<void> removeFiles(const QStringList &paths)
{
    for (const QString &path : paths) {
        QFile file(path);
        if (!file.remove() && file.exists())
            return Failure(
                Error(Error::StoreFailed, QStringLiteral("remove %1").arg(path), file.errorString()));
    }
    return {};
}

} // namespace Tidel
