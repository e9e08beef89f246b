// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MEASURE_H
#define MEASURE_H

#include <functional>

/// What a piece of work costs this process.
struct Cost
{
    double cpuSeconds = 0; ///< of all threads, in user and system mode
    double peakMegabytes = 0; ///< the most memory held at once above what was held before
};

Cost measure(const std::function<void()> &work);

#endif
