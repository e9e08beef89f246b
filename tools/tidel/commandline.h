// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDLINE_H
#define TIDEL_COMMANDLINE_H

#include <QStringList>

namespace Tidel {

/// What a program returns to the one that called it.
enum ExitCode {
    AllFine = 0,
    SomethingFailed = 1, ///< and the rest was done
    UsageError = 2, ///< and nothing was done
    Interrupted = 128 ///< plus the number of the signal
};

/// Does what \a arguments say, the first being the program's name; returns an ExitCode.
int runCommandLine(const QStringList &arguments);

} // namespace Tidel

#endif
