// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pager.h"

#include <csignal>
#include <cstdio>

#include <sys/wait.h>

namespace Tidel {

bool showInPager(const QByteArray &text)
{
    // "less" ends at once if the text fits on the screen, and leaves it there.
    if (!qEnvironmentVariableIsSet("LESS"))
        qputenv("LESS", "FRX");
    const QByteArray command = qEnvironmentVariableIsSet("PAGER") ? qgetenv("PAGER") : QByteArray("less");
    if (command.isEmpty())
        return false;
    // A user who ends the program before it has read everything is no reason to end here. Interrupts are for
    // it.
    const auto onPipe = std::signal(SIGPIPE, SIG_IGN);
    const auto onInterrupt = std::signal(SIGINT, SIG_IGN);
    FILE *pager = popen(command.constData(), "w");
    if (pager)
        fwrite(text.constData(), 1, size_t(text.size()), pager);
    const int status = pager ? pclose(pager) : -1;
    std::signal(SIGPIPE, onPipe);
    std::signal(SIGINT, onInterrupt);
    const int commandNotFound = 127;
    return status != -1 && !(WIFEXITED(status) && WEXITSTATUS(status) == commandNotFound);
}

} // namespace Tidel
