// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOADS_H
#define TIDEL_DOWNLOADS_H

class FeedPluginInterface;

namespace Tidel {

class DownloadQueue;
class Output;

/// Returns the download plug-in. If there is none, reports it to \a output and returns null.
FeedPluginInterface *downloadPlugin(Output &output);

/// Runs \a queue until it has finished. SIGINT and SIGTERM cancel it, and are noted in \a output.
void run(DownloadQueue &queue, Output &output);

/// Shows the number of finished downloads of \a queue in \a output. \a nouns names the downloads.
void showProgress(DownloadQueue &queue, const char *nouns, Output &output);

} // namespace Tidel

#endif
