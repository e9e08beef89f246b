// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FAILURES_H
#define TIDEL_FAILURES_H

#include <QString>
#include <QVector>

#include <feedchannel.h>

namespace Tidel {

class Output;

/// The failed downloads of a refresh.
class Failures
{
public:
    /// Adds that \a channel could not be read because of \a reason.
    void add(const FeedChannel &channel, const QString &reason);
    /// The number of failures.
    int count() const { return int(m_failures.size()); }
    /// Reports the failures to \a output. A person gets one line for those with the same reason.
    void report(Output &output) const;

private:
    struct Failure
    {
        FeedChannel channel;
        QString reason;
    };

    QVector<Failure> m_failures;
};

} // namespace Tidel

#endif
