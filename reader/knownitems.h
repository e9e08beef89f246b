// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_KNOWNITEMS_H
#define TIDEL_KNOWNITEMS_H

#include "error.h"
#include "link.h"
#include "store.h"

#include <QSharedDataPointer>
#include <QStringList>

namespace Tidel {

class KnownItemsPrivate;
struct KnownMessage;

/// The items of a feed that the store knows by their keys.
class TIDELREADER_EXPORT KnownItems
{
public:
    /// Asks \a store which items with \a keys are messages of the channel \a channelUri, with one question
    /// for each hundred.
    static Result<KnownItems> of(const Store &store, const QStringList &keys, const QString &channelUri);

    /// Knows no items.
    KnownItems();
    /// Shares the value of \a other.
    KnownItems(const KnownItems &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    KnownItems(KnownItems &&other) noexcept;
    /// Shares the value of \a other.
    KnownItems &operator=(const KnownItems &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    KnownItems &operator=(KnownItems &&other) noexcept;
    /// Releases the value.
    ~KnownItems();

    /// The link under which the item is stored, which need not be the one that it has now. Null if the store
    /// does not know \a key.
    Link link(const QString &key) const;

private:
    friend class MessageWriter;
    /// Null if the store does not know \a key.
    Q_DECL_HIDDEN const KnownMessage *message(const QString &key) const;

    QSharedDataPointer<KnownItemsPrivate> d;
};

} // namespace Tidel

#endif
