// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "downloads.h"
#include "feedstore.h"
#include "orphans.h"
#include "output.h"
#include "phrases.h"

#include <feedtrackersparql.h>

namespace Tidel {

void clean(FeedStore &store, const Arguments &, Output &output)
{
    const int before = orphanMessages(store);
    const DownloadRemover remover(store, output);
    store.library().deleteOrphans();
    const int left = orphanMessages(store);
    const bool isLeft = left > 0 || orphanEnclosures(store) > 0;
    if (isLeft)
        output.error(QStringLiteral("the store did not delete all that belongs to nothing"));
    // Where the store does not count, what it said is told by whoever called.
    if (!store.failure().isEmpty())
        return;
    if (before > left || remover.enclosures() > 0)
        output.line(QStringLiteral("Deleted: %1, %2, %3")
                        .arg(countedMessages(before - left), countedEnclosures(remover.enclosures()),
                             countedFiles(remover.files())));
    else if (!isLeft)
        output.line(QStringLiteral("Nothing to clean"));
}

} // namespace Tidel
