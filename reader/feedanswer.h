// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDANSWER_H
#define TIDEL_FEEDANSWER_H

#include "details.h"

#include <QDateTime>
#include <QString>

namespace Tidel {

/// How the server of a feed answered, or why the feed could not be read.
struct FeedAnswer
{
    /// A longer wait is shortened to this: a week. A server that mistakes the unit must not silence a feed.
    static constexpr qint64 longestWait = 7LL * 24 * 60 * 60;

    int error = 0; ///< A FeedDownloadError or an HTTP status; FeedDownloadNoError if the feed was read.
    QString reason; ///< Why it was not, for the user.
    qint64 wait = 0; ///< How long the server wants to be left alone, in seconds; 0 if it does not say.
    QString host; ///< Who answered; empty if the feed is a file, which may be read at any time.
    Link movedTo; ///< Where the document has moved permanently; null if it has not.
};

/// What the store keeps of the answers to a channel. Times are in UTC.
struct FeedNotes
{
    QDateTime notBefore; ///< When the document may have changed; invalid if it may at any time.
    QDateTime retryAfter; ///< Until when the server has refused to answer; invalid if it has not.
    QString heldHost; ///< The host that refuses all requests until then; empty if there is none.
    QString error; ///< Why the last attempt failed; empty if it did not.
    int failures = 0; ///< How many attempts have failed in a row.
    int status = 0; ///< A FeedDownloadError or the HTTP status of the last failure; 0 if there was none.
    Link movedTo; ///< Where the document has moved permanently; null if it has not.
    int timesMoved = 0; ///< How many answers in a row have said so; at most 4.
};

/// What decides when a feed is asked for again.
struct FeedPlan
{
    FeedNotes notes;
    ChannelDetails details; ///< Only when the feed changes, as it says.
    int interval = 0; ///< How often the user wants to know what is new, in seconds; 0 if it does not matter.
};

} // namespace Tidel

#endif
