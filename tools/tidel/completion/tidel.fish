# SPDX-License-Identifier: LGPL-2.1-or-later
# Completion of tidel for fish. The program itself knows its commands, options and channels.

complete -c tidel -a '(tidel --complete (commandline -opc)[2..-1] (commandline -ct) 2>/dev/null)'
