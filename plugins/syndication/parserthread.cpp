// SPDX-License-Identifier: LGPL-2.1-or-later
#include "parserthread.h"

#include <QRunnable>

#include <algorithm>
#include <utility>

namespace Tidel {

namespace {

// One is being stored while the next one is parsed or waits.
constexpr size_t mostAtOnce = 2;

} // namespace

// Storing the feeds takes longer than parsing them, and only one thread stores.
ParserThread::ParserThread() { m_pool.setMaxThreadCount(1); }

void ParserThread::enter(const Parsing *parsing, const std::function<void()> &job)
{
    m_entries.push_back({parsing, job});
    startNext();
}

void ParserThread::leave(const Parsing *parsing)
{
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(),
                                   [&](const Entry &entry) { return entry.parsing == parsing; }),
                    m_entries.end());
    startNext();
}

void ParserThread::startNext()
{
    for (size_t i = 0; i < std::min(m_entries.size(), mostAtOnce); ++i) {
        if (const auto job = std::exchange(m_entries[i].job, nullptr))
            m_pool.start(QRunnable::create(job));
    }
}

} // namespace Tidel
