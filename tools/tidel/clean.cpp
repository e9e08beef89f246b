// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "output.h"
#include "phrases.h"
#include "removalreport.h"

#include <TidelReader/orphans.h>

namespace Tidel {

namespace {

void clean(const Store &store, const Arguments &, Output &output)
{
    RemovalReport report(output);
    const Result<void> removed = Orphans(store).remove(report.step());
    if (report.messages() > 0 || report.enclosures() > 0)
        output.report(QStringLiteral("Deleted: %1, %2, %3")
                          .arg(countedMessages(report.messages()), countedEnclosures(report.enclosures()),
                               countedFiles(report.files())),
                      report.json());
    else if (removed)
        output.report(QStringLiteral("Nothing to clean"), report.json());
    if (!removed)
        output.failure(removed.error());
}

} // namespace

const Command cleanCommand = {"clean",
                              "",
                              "Delete messages without a channel and enclosures without a message.",
                              "",
                              0,
                              0,
                              {},
                              {"tidel clean"},
                              clean};

} // namespace Tidel
