// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FOLDERS_H
#define TIDEL_FOLDERS_H

#include "error.h"
#include "store.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace Tidel {

/**
 * The folders that the user has put channels into. A folder is named by its path, such as "News/World". It
 * exists as long as a channel is in it or below it.
 */
class TIDELREADER_EXPORT Folders
{
public:
    /// A folder is within fewer other folders than this.
    static constexpr int maximumDepth = 20;

    /// Works on \a store.
    explicit Folders(const Store &store);

    /// The path of the folder with the names \a names, the outermost first. Blanks are simplified, names are
    /// cut after 200 characters, "/" within a name becomes "-", and empty names and those beyond the maximum
    /// depth are left out.
    static QString path(const QStringList &names);
    /// The names of the folder that a user calls \a path; empty if it has none.
    static QStringList names(const QString &path);

    /// The path of the folder of each channel by its URI. A channel in no folder is left out.
    Result<QHash<QString, QString>> all() const;
    /// Puts the stored channel \a channelUri into the folder \a path alone; into none if it is empty. Fails
    /// with Error::StoreRefused if there is no such channel.
    Result<void> move(const QString &channelUri, const QString &path);

private:
    Store m_store;
};

} // namespace Tidel

#endif
