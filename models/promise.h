// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PROMISE_H
#define TIDEL_PROMISE_H

#include <QFuture>
#include <QFutureInterface>

namespace Tidel {

/**
 * The giving side of a QFuture, for Qt 5 and Qt 6 alike. If it goes before finish(), the future ends as
 * canceled, so that nobody waits in vain.
 */
template <typename T> class Promise
{
    Q_DISABLE_COPY(Promise)

public:
    Promise() { m_future.reportStarted(); }
    ~Promise()
    {
        if (m_future.isFinished())
            return;
        m_future.reportCanceled();
        m_future.reportFinished();
    }

    /// The future of the results.
    QFuture<T> future() { return m_future.future(); }
    /// Returns true if a receiver has canceled the future; otherwise returns false.
    bool isCanceled() const { return m_future.isCanceled(); }
    /// Adds \a result to those of the future.
    void add(const T &result) { m_future.reportResult(result); }
    /// Reports that \a done of \a all steps are done; 0 if their number is unknown.
    void setProgress(int done, int all)
    {
        if (m_future.progressMaximum() != all)
            m_future.setProgressRange(0, all);
        m_future.setProgressValue(done);
    }
    /// Ends the future.
    void finish() { m_future.reportFinished(); }

private:
    QFutureInterface<T> m_future;
};

} // namespace Tidel

#endif
