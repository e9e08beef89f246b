// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RESUMEPOINT_H
#define TIDEL_RESUMEPOINT_H

#include "answerhead.h"

#include <QUrl>

namespace Tidel {

/// Where an unfinished file ends, and which file it is the beginning of.
struct ResumePoint
{
    QUrl address; ///< Where it comes from, without user, query and fragment.
    QByteArray validator; ///< A strong ETag or a date, as the server wrote it; empty if there is none.
    qint64 total = -1; ///< The size of the complete file in bytes.
    qint64 offset = 0; ///< The number of bytes that are there.

    /// The beginning of the file that \a head, an answer from \a address, announces. It has no validator if
    /// the rest of the file could not be recognized later.
    static ResumePoint of(const AnswerHead &head, const QUrl &address);

    /// Returns true if a server can be asked for the rest; otherwise returns false.
    bool isValid() const { return !validator.isEmpty() && offset > 0 && offset < total; }
    /// Returns true if \a url is the address of the file; otherwise returns false. Queries do not count,
    /// because many servers sign them anew for each request.
    bool isOf(const QUrl &url) const;
    /// Returns true if \a head announces exactly the rest of the same file; otherwise returns false.
    bool isContinuedBy(const AnswerHead &head) const;
};

} // namespace Tidel

#endif
