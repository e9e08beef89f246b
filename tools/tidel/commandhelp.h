// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDHELP_H
#define TIDEL_COMMANDHELP_H

#include "command.h"

namespace Tidel {

/// The help of the program, with a list of the commands. \a width is that of the terminal.
QString programHelp(int width);

/// The help of \a command. \a width is that of the terminal.
QString commandHelp(const Command &command, int width);

} // namespace Tidel

#endif
