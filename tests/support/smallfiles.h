// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef SMALLFILES_H
#define SMALLFILES_H

#include <csignal>

#include <sys/resource.h>

/// Makes the writing of all files of this process fail beyond a size, even for root, like a full disk.
class SmallFiles
{
public:
    /// \a size is in bytes.
    explicit SmallFiles(rlim_t size) : m_signalBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallFiles()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signalBefore);
    }
    SmallFiles(const SmallFiles &) = delete;
    SmallFiles &operator=(const SmallFiles &) = delete;

private:
    void (*const m_signalBefore)(int);
    rlimit m_before = {};
};

#endif
