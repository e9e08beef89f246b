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

/// Turns the first SIGINT or SIGTERM that comes while it lives into a Qt signal; the second one ends the
/// process. One that is ignored stays so. One object at a time.
class Interrupt : public QObject
{
    Q_OBJECT

public:
    Interrupt();
    ~Interrupt() override;

Q_SIGNALS:
    void received(int signal);

private:
    void catchSignal(int signal);
    void read();

    int m_pipe[2];
    std::vector<std::pair<int, struct sigaction>> m_before;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace Tidel

#endif
