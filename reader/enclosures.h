// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCLOSURES_H
#define TIDEL_ENCLOSURES_H

#include "details.h"
#include "error.h"
#include "store.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <feedenclosure.h>

namespace Tidel {

/// The enclosures of a store.
class TIDELREADER_EXPORT Enclosures
{
public:
    /// Works on \a store.
    explicit Enclosures(const Store &store);

    /// The enclosures of the message \a messageUri, with all fields but the source namespace.
    Result<QList<FeedEnclosure>> ofMessage(const QString &messageUri) const;
    /// The enclosure \a uri. Fails with Error::NotFound.
    Result<FeedEnclosure> get(const QString &uri) const;
    /// What the feeds say in addition of the enclosures \a uris. Enclosures without details are left out.
    Result<QHash<QString, EnclosureDetails>> details(const QStringList &uris) const;
    /// The URIs of the enclosures that the user calls \a name: the link or URI of a message, whose enclosures
    /// are meant and may be none, or the remote URL or URI of an enclosure. Fails with Error::NotFound.
    Result<QStringList> uris(const QString &name) const;

    /// The URIs of the newest enclosures that were never downloaded, at most \a count: those of the newest
    /// messages of the channels \a channelUris, or of all channels if it is empty.
    Result<QStringList> newest(int count, const QStringList &channelUris) const;

    /// Stores local URL, length and MIME type of \a enclosure, which is stored under its URI.
    Result<void> setFile(const FeedEnclosure &enclosure);

private:
    Store m_store;
};

} // namespace Tidel

#endif
