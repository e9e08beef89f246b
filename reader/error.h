// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ERROR_H
#define TIDEL_ERROR_H

#include "tidelreaderglobal.h"

#include <QSharedDataPointer>
#include <QString>

#include <tl/expected.hpp>

namespace Tidel {

class ErrorPrivate;

/**
 * Why an operation failed: its kind for the program, and texts for the user.
 *
 * \code
 * const Result<QList<FeedMessage>> messages = Messages(store).ofChannel(channel.uri());
 * if (!messages)
 *     qWarning().noquote() << channel.title() + ": " + messages.error().text();
 * // Garden Notes: could not read its messages from the store: database is locked
 * \endcode
 */
class TIDELREADER_EXPORT Error
{
public:
    /// What kind of failure it is.
    enum Kind {
        StoreUnavailable, ///< The store could not be opened.
        StoreFailed, ///< A statement failed. The store is as it was before the statement, or the reason says
                     ///< that its change may not be on the disk.
        StoreRefused, ///< As StoreFailed, because of a value in the statement. Trying again does not help.
        NotFound, ///< The store has no channel, message or enclosure of this name.
        Ambiguous, ///< Several channels have this name.
        AlreadyStored, ///< The store has a channel with this link.
        LinkInUse, ///< Another channel or a message has this link.
        PluginUnusable, ///< A file is not a usable download plug-in, or there is none.
        FileFailed, ///< A file of the user cannot be read or written, or holds something else.
        NotEmpty, ///< The archive already holds something.
        QueryRefused ///< A query of the user is not valid.
    };

    /// An error of \a kind. \a attempt completes the sentence "could not ...", and may be empty. \a reason
    /// says why it failed, for errors of the store in the store's own words. shownReason() makes it fit to be
    /// shown.
    Error(Kind kind, const QString &attempt, const QString &reason);
    /// Shares the value of \a other.
    Error(const Error &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    Error(Error &&other) noexcept;
    /// Shares the value of \a other.
    Error &operator=(const Error &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    Error &operator=(Error &&other) noexcept;
    /// Releases the value.
    ~Error();

    /// The kind of the error.
    Kind kind() const;
    /// What was tried, such as "read the channels from the store"; may be empty.
    QString attempt() const;
    /// Why it failed.
    QString reason() const;
    /// One line for the user: "could not", attempt() and reason(), or reason() alone if attempt() is empty.
    QString text() const;

private:
    QSharedDataPointer<ErrorPrivate> d;
};

/// The value of an operation that may fail, or its error.
template <typename T> using Result = tl::expected<T, Error>;

/// Makes the Result of an operation that failed.
using Failure = tl::unexpected<Error>;

} // namespace Tidel

#endif
