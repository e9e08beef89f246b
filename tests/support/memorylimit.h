// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MEMORYLIMIT_H
#define MEMORYLIMIT_H

#include <QFile>

#include <sys/resource.h>
#include <unistd.h>

/// Limits the memory of the process to \a bytes more than it has now. If the process needs more, it ends.
class MemoryLimit
{
public:
    explicit MemoryLimit(rlim_t bytes)
    {
        QFile statm("/proc/self/statm");
        if (getrlimit(RLIMIT_AS, &m_before) != 0 || !statm.open(QIODevice::ReadOnly))
            return;
        const rlim_t pages = statm.readAll().split(' ').value(0).toULongLong();
        rlimit limit = m_before;
        limit.rlim_cur = pages * rlim_t(sysconf(_SC_PAGESIZE)) + bytes;
        m_holds = setrlimit(RLIMIT_AS, &limit) == 0;
    }
    ~MemoryLimit()
    {
        if (m_holds)
            setrlimit(RLIMIT_AS, &m_before);
    }
    MemoryLimit(const MemoryLimit &) = delete;
    MemoryLimit &operator=(const MemoryLimit &) = delete;

    bool holds() const { return m_holds; }

private:
    rlimit m_before = {};
    bool m_holds = false;
};

#endif
