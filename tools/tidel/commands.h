// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDS_H
#define TIDEL_COMMANDS_H

#include "command.h"

namespace Tidel {

// The commands of the program, each in the file of its name or of its group.

extern const Command subscribeCommand;
extern const Command unsubscribeCommand;
extern const Command refreshCommand;
extern const Command downloadCommand;
extern const Command editCommand;
extern const Command folderCommand;
extern const Command importCommand;
extern const Command exportCommand;
extern const Command channelsCommand;
extern const Command messagesCommand;
extern const Command showCommand;
extern const Command openCommand;
extern const Command readCommand;
extern const Command unreadCommand;
extern const Command searchCommand;
extern const Command enclosuresCommand;
extern const Command favoriteCommand;
extern const Command unfavoriteCommand;
extern const Command deleteCommand;
extern const Command pruneCommand;
extern const Command backupCommand;
extern const Command restoreCommand;
extern const Command cleanCommand;
extern const Command checkCommand;
extern const Command queryCommand;
extern const Command pluginsCommand;
extern const Command statsCommand;

} // namespace Tidel

#endif
