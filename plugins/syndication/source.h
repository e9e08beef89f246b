// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SOURCE_H
#define TIDEL_SOURCE_H

#include "outcome.h"

#include <QObject>

#include <functional>

namespace Tidel {

/// What the bytes of a transfer come from. Destroying a source ends it without a signal.
class Source : public QObject
{
    Q_OBJECT

public:
    /// Takes \a size bytes. Returns false to end the source. It must not destroy the source.
    using Receiver = std::function<bool(const char *bytes, qint64 size)>;

    /// Starts the source, which may have to wait for its turn.
    virtual void start() = 0;
    /// How the source ended; valid after finished(). Fine if the receiver ended it.
    virtual Outcome outcome() const = 0;

Q_SIGNALS:
    /// Emitted when the source begins to work; start() may not have returned.
    void started();
    /// Emitted once. Connect it queued: the receiver must not destroy the source.
    void finished();
};

} // namespace Tidel

#endif
