// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MEASURE_H
#define MEASURE_H

#include <functional>

/// The cost of a function in this process.
struct Cost
{
    double cpuSeconds = 0; ///< The time of all threads in user and system mode.
    double peakMegabytes = 0; ///< The maximum memory in addition to the memory before the call.
};

/// Calls \a work and returns its cost.
Cost measure(const std::function<void()> &work);

#endif
