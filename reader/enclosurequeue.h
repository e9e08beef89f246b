// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCLOSUREQUEUE_H
#define TIDEL_ENCLOSUREQUEUE_H

#include "error.h"
#include "store.h"

#include <QDateTime>
#include <QHash>
#include <QStringList>

namespace Tidel {

/// The enclosures of a store that wait to be downloaded. They wait until remove(), or until the store does
/// not have them any more; backups and merges take them along. DownloadQueue downloads what it is given, and
/// knows nothing of them.
class TIDELREADER_EXPORT EnclosureQueue
{
public:
    /// Works on \a store.
    explicit EnclosureQueue(const Store &store);

    /// The URIs of the enclosures that wait, in the order in which they were added. The time depends on their
    /// number.
    Result<QStringList> uris() const;
    /// When those of the enclosures \a uris that wait were added.
    Result<QHash<QString, QDateTime>> times(const QStringList &uris) const;

    /// Adds the enclosures \a uris in this order. One that waits keeps its place.
    Result<void> add(const QStringList &uris);
    /// Takes out those of the enclosures \a uris that wait. A host calls it when it has their files.
    Result<void> remove(const QStringList &uris);

private:
    Store m_store;
};

} // namespace Tidel

#endif
