// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FILEPROGRESS_H
#define TIDEL_FILEPROGRESS_H

namespace Tidel {

class DownloadQueue;
class Output;

/// Shows in \a output how many files \a queue has downloaded, and how much of those that it has begun.
void showFileProgress(DownloadQueue &queue, Output &output);

} // namespace Tidel

#endif
