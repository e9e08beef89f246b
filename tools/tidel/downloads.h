// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOADS_H
#define TIDEL_DOWNLOADS_H

class FeedPluginInterface;

namespace Tidel {

class DownloadQueue;
class Output;

/// The download plug-in of this program; null if there is none, which is reported to \a output.
FeedPluginInterface *downloadPlugin(Output &output);

/// Runs \a queue to its end. SIGINT and SIGTERM cancel what is under way and leave out the rest.
void run(DownloadQueue &queue, Output &output);

/// Shows in \a output how many of the downloads of \a queue, called \a nouns, have ended.
void showProgress(DownloadQueue &queue, const char *nouns, Output &output);

} // namespace Tidel

#endif
