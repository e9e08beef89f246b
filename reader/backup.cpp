// SPDX-License-Identifier: LGPL-2.1-or-later
#include "backup.h"

#include "../qtsparql/filelock_p.h"
#include "archivemerge_p.h"
#include "statements_p.h"
#include "store_p.h"
#include "storedatabase.h"
#include "writeturn.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>

#include <sparqlturtle.h>

namespace Tidel {

namespace {

Failure failure(Error::Kind kind, const char *attempt, const QString &reason)
{
    return Failure(Error(kind, QString::fromLatin1(attempt), reason));
}

Failure storeFailure(const char *attempt, const QSparqlError &error)
{
    return failure(Error::StoreFailed, attempt, error.message().section(QLatin1Char('\n'), 0, 0));
}

Failure fileFailure(const char *attempt, const QString &fileName, const QString &reason)
{
    return failure(Error::FileFailed, attempt, fileName + QLatin1String(": ") + reason);
}

} // namespace

Backup::Backup(const Store &store) : m_store(store) { }

Result<Backup::Size> Backup::size() const
{
    return StorePrivate::of(m_store)
        .run(Statements::archiveSize(), "count what the store holds")
        .map([](const Answer &answer) {
            QHash<QString, int> counts;
            while (answer->next())
                counts.insert(answer->value(0).toString().section(QLatin1Char('#'), 1),
                              answer->value(1).toInt());
            return Size{counts.value(QStringLiteral("FeedChannel")),
                        counts.value(QStringLiteral("FeedMessage")),
                        counts.value(QStringLiteral("Enclosure"))};
        });
}

Result<Backup::Size> Backup::write(const QString &fileName) const
{
    const char *const attempt = "write the backup";
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile())
        return fileFailure(attempt, fileName, QStringLiteral("this is not a file; give the name of a file"));
    const Result<Size> size = this->size();
    if (!size)
        return size;
    QSaveFile file(fileName);
    // The addresses of feeds can hold passwords.
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner))
        return fileFailure(attempt, fileName, file.errorString());
    const QSparqlError error =
        SparqlTurtle::write(StorePrivate::of(m_store).connection.options(), Statements::archive(), &file);
    if (file.error() != QFile::NoError)
        return fileFailure(attempt, fileName, file.errorString());
    if (error.isValid())
        return storeFailure(attempt, error);
    if (!file.commit())
        return fileFailure(attempt, fileName, file.errorString());
    return size;
}

namespace {

/// Reads \a fileName into \a store.
Result<void> read(StorePrivate &store, const QString &fileName, const char *attempt)
{
    const QFileInfo info(fileName);
    if (!info.isFile() || !info.isReadable())
        return fileFailure(attempt, fileName,
                           QStringLiteral("the file does not exist or cannot be read; check its name"));
    const QSparqlError error = SparqlTurtle::read(store.connection.options(), info.absoluteFilePath());
    if (error.type() == QSparqlError::StatementError || error.type() == QSparqlError::TransactionError)
        return fileFailure(attempt, fileName,
                           QStringLiteral("the file is damaged or is not a backup; try another copy (%1)")
                               .arg(error.message()));
    return error.isValid() ? storeFailure(attempt, error) : Result<void>();
}

/// A folder for one program at a time. What a killed program has left in it is removed.
class MergeFolder
{
public:
    MergeFolder()
        : m_path(QDir::cleanPath(StoreDatabase::folder() + QLatin1String("/../merging"))),
          m_lock(m_path + QLatin1String(".lock"))
    {
        m_isOwn = m_lock.tryLock();
        if (m_isOwn)
            QDir(m_path).removeRecursively();
    }
    ~MergeFolder()
    {
        if (m_isOwn)
            QDir(m_path).removeRecursively();
    }
    Q_DISABLE_COPY(MergeFolder)

    bool isOwn() const { return m_isOwn; }
    QString path() const { return m_path; }

private:
    const QString m_path;
    FileLock m_lock;
    bool m_isOwn = false;
};

} // namespace

Result<Backup::Size> Backup::merge(const QString &fileName)
{
    const char *const attempt = "merge the backup";
    const MergeFolder folder;
    if (!folder.isOwn())
        return failure(Error::StoreFailed, attempt,
                       QStringLiteral("another program is merging a backup; wait until it has finished"));
    StorePrivate other(folder.path());
    if (!other.connection.isValid())
        return storeFailure(attempt, other.connection.lastError());
    const Result<Size> before = size();
    if (!before)
        return before;
    return read(other, fileName, attempt)
        .and_then([&] { return mergeArchive(other, StorePrivate::of(m_store)); })
        .and_then([this] { return size(); })
        .map([&](const Size &after) {
            return Size{after.channels - before->channels, after.messages - before->messages,
                        after.enclosures - before->enclosures};
        });
}

Result<Backup::Size> Backup::restore(const QString &fileName)
{
    const char *const attempt = "restore the backup";
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn)
        return Failure(turn.error());
    const Result<Size> before = size();
    if (!before)
        return before;
    if (before->channels + before->messages + before->enclosures > 0)
        return failure(Error::NotEmpty, attempt, QStringLiteral("the archive is not empty"));
    return read(StorePrivate::of(m_store), fileName, attempt).and_then([this] { return size(); });
}

} // namespace Tidel
