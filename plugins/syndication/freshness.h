// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FRESHNESS_H
#define TIDEL_FRESHNESS_H

#include "answerhead.h"

namespace Tidel {

/// The date \a text of a header, in seconds since 1970; -1 if it is none.
qint64 dateOf(const QByteArray &text);

/// For how many seconds the server of \a head wants not to be asked again, at \a now, in seconds since 1970.
/// A document stays fresh so long; after a refusal it is the `Retry-After` header. 0 if the server does not
/// say, and at most FeedAnswer::longestWait.
qint64 secondsToWait(const AnswerHead &head, qint64 now);

} // namespace Tidel

#endif
