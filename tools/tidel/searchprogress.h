// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEARCHPROGRESS_H
#define TIDEL_SEARCHPROGRESS_H

#include "output.h"
#include "phrases.h"

#include <functional>

namespace Tidel {

/// Tells the user once why the first search takes long, also where no progress is shown.
inline std::function<void(int, int)> searchProgress(Output &output)
{
    bool isTold = false;
    return [&output, isTold](int done, int all) mutable {
        if (!isTold)
            output.note(QStringLiteral("tidel: adding %1 to the index for searches, which takes a while once")
                            .arg(countedMessages(all - done)));
        isTold = true;
        output.progress(shownProgress(done, all, "messages"));
    };
}

} // namespace Tidel

#endif
