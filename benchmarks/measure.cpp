// SPDX-License-Identifier: LGPL-2.1-or-later
#include "measure.h"

#include <sys/resource.h>

#include <cstdlib>
#include <fstream>
#include <malloc.h>
#include <string>

namespace {

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double memoryMegabytes(const std::string &field)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, field.size(), field) == 0)
            return std::atof(line.c_str() + field.size()) / 1024;
    }
    return 0;
}

/// Resets the peak that the kernel reports.
void resetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

} // namespace

Cost measure(const std::function<void()> &work)
{
    malloc_trim(0);
    resetPeak();
    const double memory = memoryMegabytes("VmRSS:");
    const double cpu = cpuSeconds();
    work();
    return {cpuSeconds() - cpu, memoryMegabytes("VmHWM:") - memory};
}
