// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storedatabase.h"

#include "../qtsparql/filelock_p.h"
#include "../qtsparql/obstacle_p.h"
#include "damagedtables_p.h"
#include "databasefiles_p.h"
#include "salvage_p.h"
#include "statements_p.h"
#include "store_p.h"
#include "writeturn.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QStandardPaths>

#include <algorithm>

namespace Tidel {

namespace {

const char *const attempt = "check the database";

/// Keeps other programs from opening the store as long as the lock lives.
Result<std::unique_ptr<FileLock>> lockOpening(const QString &folder)
{
    const auto failure = [](const QString &reason) {
        return Failure(Error(Error::StoreFailed, QStringLiteral("lock the store"), reason));
    };
    auto lock = std::make_unique<FileLock>(folder + QLatin1String("/opening.lock"));
    if (lock->error() != 0)
        return failure(lock->path() + QLatin1String(": ") + obstacle(lock->error()));
    PatientWait wait(usualPatience, "opening it");
    while (!lock->tryLock()) {
        if (!wait.goOn([&lock] { return lock->holder(); }))
            return failure(wait.failure(lock->holder()));
    }
    lock->note();
    return lock;
}

/// Returns true if the list of tables can be read; otherwise returns false.
bool isReadable(SqliteFile &file)
{
    const QVector<Table> tables = tablesOf(file);
    return std::any_of(tables.cbegin(), tables.cend(),
                       [](const Table &table) { return table.name == namesTable().name; });
}

/// Returns true if \a file describes the ontology as \a sound does; otherwise returns false. Then the same
/// version of the library has made both, and their tables begin in the same places.
bool isOfSameVersion(SqliteFile &file, SqliteFile &sound)
{
    const auto namesIn = [](SqliteFile &database) {
        QHash<qlonglong, QString> names;
        readRows(database, namesTable(), [&](const QVariantList &row) {
            names.insert(row.first().toLongLong(), row.last().toString());
        });
        return names;
    };
    const QHash<qlonglong, QString> names = namesIn(file);
    const QHash<qlonglong, QString> expected = namesIn(sound);
    int found = 0;
    for (auto name = expected.cbegin(); name != expected.cend(); ++name) {
        const QString other = names.value(name.key(), *name);
        if (other != *name)
            return false;
        found += names.contains(name.key());
    }
    return found > expected.size() / 2;
}

/// The damaged database, or a copy with a sound beginning, in \a newFolder. Null if nothing helps.
Result<std::unique_ptr<SqliteFile>> openDamaged(const QString &folder, const QString &newFolder)
{
    auto file = std::make_unique<SqliteFile>(databaseIn(folder), SqliteFile::Tolerant);
    if (isReadable(*file))
        return file;
    constexpr int header = 100;
    constexpr int firstPage = 8192; // in which the tables are listed
    const QString copy = newFolder + QLatin1String("/damaged.db");
    for (int size : {header, firstPage}) {
        const Result<void> copied = copyWithBeginning(databaseIn(folder), databaseIn(newFolder), size, copy);
        if (!copied)
            return Failure(copied.error());
        file = std::make_unique<SqliteFile>(copy, SqliteFile::Tolerant);
        SqliteFile sound(databaseIn(newFolder), SqliteFile::Strict);
        if (isReadable(*file) && (size == header || isOfSameVersion(*file, sound)))
            return file;
    }
    return Failure(
        Error(Error::StoreUnavailable, QStringLiteral("salvage the database in %1").arg(folder),
              QStringLiteral("nothing in it can be read; put back a copy of the folder, or move the "
                             "folder away to start with an empty store")));
}

/// Fills the new store in \a newFolder with what can be read in \a folder.
Result<SavedContents> fill(const QString &folder, const QString &newFolder,
                           const StoreDatabase::Progress &progress)
{
    StorePrivate target(newFolder);
    return target.number(Statements::countOf(Statements::Kind::Message), "create a new store")
        .and_then([&](int) { return openDamaged(folder, newFolder); })
        .and_then(
            [&](const std::unique_ptr<SqliteFile> &file) { return copyResources(*file, target, progress); })
        .and_then([&] { return adoptMessages(target); })
        .and_then([&] { return requestWholeReading(target); })
        .and_then([&] { return countContents(target); });
}

} // namespace

QString StoreDatabase::folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QLatin1String("/tidel/store");
}

bool StoreDatabase::exists() { return QFile::exists(databaseIn(folder())); }

Result<QStringList> StoreDatabase::damage()
{
    SqliteFile file(databaseIn(folder()), SqliteFile::Strict);
    QStringList findings;
    const SqliteFile::Outcome outcome = file.check(&findings);
    if (outcome == SqliteFile::Failed)
        return Failure(Error(Error::StoreUnavailable, QString::fromLatin1(attempt),
                             QStringLiteral("%1: %2").arg(databaseIn(folder()), file.error())));
    if (outcome == SqliteFile::Damaged && findings.isEmpty())
        findings.append(file.error());
    if (findings.isEmpty() && !isReadable(file))
        findings.append(QStringLiteral("the tables of the store are missing"));
    return findings;
}

Result<SavedContents> StoreDatabase::salvage(const Progress &progress)
{
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn)
        return Failure(turn.error());
    const Result<std::unique_ptr<FileLock>> lock = lockOpening(folder());
    if (!lock)
        return Failure(lock.error());
    const QString newFolder = folder() + QLatin1String("/salvaged");
    QDir(newFolder).removeRecursively();
    const Result<SavedContents> saved =
        fill(folder(), newFolder, progress).and_then([&](SavedContents contents) {
            return replaceDatabase(folder(), newFolder).map([&](const QString &damagedFolder) {
                contents.damagedFolder = damagedFolder;
                return contents;
            });
        });
    QDir(newFolder).removeRecursively();
    return saved;
}

} // namespace Tidel
