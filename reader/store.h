// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STORE_H
#define TIDEL_STORE_H

#include "error.h"
#include "tidelreaderglobal.h"

#include <QExplicitlySharedDataPointer>

namespace Tidel {

class StorePrivate;

/**
 * The user's open store. Channels, Messages, Enclosures and the other classes of the archive work on it.
 *
 * \code
 * const Result<Store> store = Store::open();
 * if (!store)
 *     return fail(store.error());
 * const Result<QList<FeedChannel>> channels = Channels(*store).all();
 * \endcode
 *
 * A store is a handle: copies refer to the same connection, which is closed when the last copy goes. All
 * copies and what works on them belong to the thread that opened the store. Every operation blocks until the
 * store has answered. Several processes may use one store; see WriteTurn.
 */
class TIDELREADER_EXPORT Store
{
public:
    /// Opens the folder `tidel/store` below the user's data folder, and creates the store if there is none.
    /// Fails with Error::StoreUnavailable.
    static Result<Store> open();

    /// Refers to the same connection as \a other.
    Store(const Store &other);
    /// Refers to the same connection as \a other from now on.
    Store &operator=(const Store &other);
    /// Closes the connection if no other handle refers to it.
    ~Store();

private:
    friend class StorePrivate;
    Q_DECL_HIDDEN explicit Store(StorePrivate *d);

    QExplicitlySharedDataPointer<StorePrivate> d;
};

} // namespace Tidel

#endif
