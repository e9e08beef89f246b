// SPDX-License-Identifier: LGPL-2.1-or-later
#include "interrupt.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

namespace Tidel {

namespace {

// A signal handler can only use objects of this type.
volatile sig_atomic_t pipeEnd = -1;

void handleSignal(int signal)
{
    const char byte = char(signal);
    // If the pipe is full, an earlier signal is still to be read.
    if (write(pipeEnd, &byte, 1) != 1)
        return;
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
    for (int signal : {SIGINT, SIGTERM})
        catchSignal(signal);
}

Interrupt::~Interrupt()
{
    if (!m_notifier)
        return;
    for (const auto &[signal, action] : m_before)
        sigaction(signal, &action, nullptr);
    m_notifier.reset();
    close(m_pipe[0]);
    close(m_pipe[1]);
}

void Interrupt::catchSignal(int signal)
{
    struct sigaction before = {};
    sigaction(signal, nullptr, &before);
    // The signal stays ignored, for example under nohup.
    if (before.sa_handler == SIG_IGN)
        return;
    struct sigaction action = {};
    action.sa_handler = handleSignal;
    action.sa_flags = int(SA_RESETHAND | SA_RESTART);
    sigaction(signal, &action, nullptr);
    m_before.emplace_back(signal, before);
}

void Interrupt::read()
{
    char byte = 0;
    if (::read(m_pipe[0], &byte, 1) == 1)
        Q_EMIT received(byte);
}

} // namespace Tidel
