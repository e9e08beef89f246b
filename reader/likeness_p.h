// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LIKENESS_P_H
#define TIDEL_LIKENESS_P_H

#include <QString>

class FeedMessage;

namespace Tidel {

/// A hash of the texts of \a message and the addresses of its enclosures.
QString digest(const FeedMessage &message, const QString &channelUri);

/// Returns true if a person reads the same in \a a and \a b; otherwise returns false. The addresses of links
/// and images, markup, counters such as "12 comments", and the queries of the addresses of enclosures do not
/// count.
bool readAlike(const FeedMessage &a, const FeedMessage &b);

} // namespace Tidel

#endif
