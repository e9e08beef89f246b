// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDTABLE_H
#define TIDEL_COMMANDTABLE_H

#include "command.h"

#include <QVector>

namespace Tidel {

/// Commands that the help lists together.
struct CommandGroup
{
    const char *title;
    QVector<const Command *> commands;
};

/// All commands by topic, in the order of the help.
const QVector<CommandGroup> &commandGroups();

/// All commands.
QVector<const Command *> allCommands();

/// The options that every command has.
const std::vector<Option> &commonOptions();

/// The options that stand before the command.
const std::vector<Option> &programOptions();

/// Returns the command \a name; null if there is none.
const Command *findCommand(const QString &name);

/// Returns the one of \a words that \a word was probably meant to be; empty if none is similar.
QString similarWord(const QString &word, const QStringList &words);

/// The names of all commands.
QStringList commandNames();

} // namespace Tidel

#endif
