// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageorder.h"

#include <algorithm>

namespace Tidel {

void sortNewestFirst(QList<FeedMessage> &messages)
{
    std::reverse(messages.begin(), messages.end());
    std::stable_sort(messages.begin(), messages.end(), [](const FeedMessage &a, const FeedMessage &b) {
        const QDateTime dateOfA = a.publishedDate();
        const QDateTime dateOfB = b.publishedDate();
        return dateOfA.isValid() && (!dateOfB.isValid() || dateOfA > dateOfB);
    });
}

} // namespace Tidel
