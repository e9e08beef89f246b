// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDLINE_H
#define TIDEL_COMMANDLINE_H

#include <QStringList>

namespace Tidel {

/// The exit codes of the program.
enum ExitCode {
    AllFine = 0, ///< Everything was done.
    SomethingFailed = 1, ///< Something failed, and the rest was done.
    UsageError = 2, ///< The arguments are wrong, and nothing was done.
    Interrupted = 128 ///< A signal ended the program. The number of the signal is added.
};

/// Runs the program with \a arguments, which begin with the name of the program. Returns an ExitCode.
int runCommandLine(const QStringList &arguments);

} // namespace Tidel

#endif
