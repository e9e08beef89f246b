// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_INTERRUPT_H
#define TIDEL_INTERRUPT_H

#include <QObject>

#include <memory>
#include <utility>
#include <vector>

#include <signal.h>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace Tidel {

/// Turns the first SIGINT or SIGTERM during its lifetime into a Qt signal. A second one ends the process.
/// Signals that are ignored stay ignored. There must be only one object at a time.
class Interrupt : public QObject
{
    Q_OBJECT

public:
    /// Installs the signal handlers.
    Interrupt();
    /// Restores the previous signal handlers.
    ~Interrupt() override;

Q_SIGNALS:
    /// Emitted when \a signal has arrived.
    void received(int signal);

private:
    /// Installs the handler of \a signal, unless the signal is ignored.
    void catchSignal(int signal);
    /// Reads a signal from the pipe and emits received().
    void read();

    int m_pipe[2];
    std::vector<std::pair<int, struct sigaction>> m_before;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace Tidel

#endif
