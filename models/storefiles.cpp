// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storefiles_p.h"

#include <TidelReader/storedatabase.h>

#include <QFile>

namespace Tidel {

StoreFiles::StoreFiles()
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &StoreFiles::written);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        watch();
        Q_EMIT written();
    });
    watch();
}

/// A file that has replaced another one of its name is watched only when it is added again.
void StoreFiles::watch()
{
    const QStringList watched = m_watcher.files();
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
    const QString folder = StoreDatabase::folder();
    for (const char *name : {"", "/meta.db", "/meta.db-wal"}) {
        const QString path = folder + QLatin1String(name);
        if (QFile::exists(path))
            m_watcher.addPath(path);
    }
}

} // namespace Tidel
