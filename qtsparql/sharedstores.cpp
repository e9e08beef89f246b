// SPDX-License-Identifier: LGPL-2.1-or-later
#include "sharedstores_p.h"

#include "patientwait_p.h"
#include "qsparqlconnectionoptions.h"
#include "trackerstore_p.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QStandardPaths>

#include <sys/stat.h>

namespace {

QString storeFolder(const QSparqlConnectionOptions &options)
{
    QString folder = options.databaseName();
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
            + QLatin1String("/tidel/store");
    // The first update opens the store again. The current folder can be another one then.
    return QDir(folder).absolutePath();
}

int patience(const QSparqlConnectionOptions &options)
{
    const QVariant value = options.option(QStringLiteral("patience"));
    return value.isValid() ? value.toInt() : usualPatience;
}

/// Distinguishes a database from another one that replaced it. The file system does not reuse the number of
/// an open file.
struct FileIdentity
{
    dev_t device = 0;
    ino_t number = 0;

    bool operator==(const FileIdentity &other) const
    {
        return device == other.device && number == other.number;
    }
};

FileIdentity databaseIn(const QString &folder)
{
    struct stat status;
    const QByteArray path = QFile::encodeName(folder + QLatin1String("/meta.db"));
    return stat(path.constData(), &status) == 0 ? FileIdentity{status.st_dev, status.st_ino} : FileIdentity();
}

struct OpenStore
{
    std::weak_ptr<TrackerStore> store;
    FileIdentity database;
};

} // namespace

std::shared_ptr<TrackerStore> sharedStore(const QSparqlConnectionOptions &options, QSparqlError *error)
{
    const QString folder = storeFolder(options);
    thread_local QHash<QString, OpenStore> openStores;
    OpenStore &known = openStores[folder];
    if (auto store = known.store.lock(); store && known.database == databaseIn(folder))
        return store;
    const std::shared_ptr<TrackerStore> store = TrackerStore::open(folder, patience(options), error);
    known = {store, databaseIn(folder)};
    return store;
}
