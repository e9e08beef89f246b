// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STOREFILES_P_H
#define TIDEL_STOREFILES_P_H

#include <QFileSystemWatcher>
#include <QObject>

namespace Tidel {

/**
 * Tells that a program has written to the files of the store, which must be open. The files are not opened:
 * closing one would end the locks that SQLite has on it.
 */
class StoreFiles : public QObject
{
    Q_OBJECT

public:
    StoreFiles();

Q_SIGNALS:
    void written();

private:
    void watch();

    QFileSystemWatcher m_watcher;
};

} // namespace Tidel

#endif
