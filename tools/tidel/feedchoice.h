// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDCHOICE_H
#define TIDEL_FEEDCHOICE_H

#include "arguments.h"

#include <TidelReader/downloadresult.h>

namespace Tidel {

class Output;

/// Returns those feeds of the web page \a page that the user wants. \a arguments say which, or the user is
/// asked. Otherwise lists the feeds of \a result, and reports to \a output how to choose.
QVector<FoundFeed> chosenFeeds(const QString &page, const DownloadResult &result, const Arguments &arguments,
                               Output &output);

} // namespace Tidel

#endif
