// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ITEMDIGESTS_H
#define TIDEL_ITEMDIGESTS_H

#include <QByteArray>
#include <QSet>
#include <QString>

namespace Tidel {

/// The digests of those items of a document whose messages the store has as the document says them.
struct ItemDigests
{
    /// Reads \a note. Is empty if another version of this plug-in wrote it.
    static ItemDigests fromNote(const QString &note);
    /// The text to be noted with the channel; empty if there are no digests or too many.
    QString note() const;

    QByteArray context; ///< What the messages depend on beside the items, see ParsedFeed::context().
    QSet<QByteArray> digests;
};

} // namespace Tidel

#endif
