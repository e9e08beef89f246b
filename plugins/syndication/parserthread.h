// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PARSERTHREAD_H
#define TIDEL_PARSERTHREAD_H

#include <QThreadPool>

#include <deque>
#include <functional>

namespace Tidel {

class Parsing;

/// The thread that parses documents for all downloaders. It keeps one feed ahead of the one that is being
/// stored, so that feeds do not pile up in memory.
class ParserThread
{
public:
    ParserThread();

    /// Runs \a job on the thread when all but one of those that entered before \a parsing have left.
    void enter(const Parsing *parsing, const std::function<void()> &job);
    /// Lets the next one run. \a parsing is not waited for.
    void leave(const Parsing *parsing);

    /// Waits for the thread. Returns true.
    bool waitForDone() { return m_pool.waitForDone(); }

private:
    struct Entry
    {
        const Parsing *parsing;
        std::function<void()> job; // Empty when it was started.
    };

    void startNext();

    std::deque<Entry> m_entries; // In their order.
    QThreadPool m_pool;
};

} // namespace Tidel

#endif
