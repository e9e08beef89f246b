// SPDX-License-Identifier: LGPL-2.1-or-later
#include "interrupt.h"

#include <QSocketNotifier>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace Tidel {

namespace {

constexpr int caught[] = {SIGINT, SIGTERM};

// What a signal handler may use.
volatile std::sig_atomic_t pipeEnd = -1;

void handleSignal(int signal)
{
    const char byte = char(signal);
    // A pipe that is full has been heard already.
    if (write(pipeEnd, &byte, 1) != 1)
        return;
}

void handle(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = int(SA_RESETHAND | SA_RESTART);
    for (int signal : caught)
        sigaction(signal, &action, nullptr);
}

} // namespace

Interrupt::Interrupt()
{
    if (pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        m_pipe[0] = m_pipe[1] = -1;
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &Interrupt::read);
    pipeEnd = m_pipe[1];
    handle(handleSignal);
}

Interrupt::~Interrupt()
{
    if (!m_notifier)
        return;
    handle(SIG_DFL);
    m_notifier.reset();
    close(m_pipe[0]);
    close(m_pipe[1]);
}

void Interrupt::read()
{
    char byte = 0;
    if (::read(m_pipe[0], &byte, 1) == 1)
        Q_EMIT received(byte);
}

} // namespace Tidel
