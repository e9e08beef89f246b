// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtable.h"

#include "commands.h"

#include <algorithm>
#include <numeric>

namespace Tidel {

namespace {

/// How many letters have to be inserted, removed or replaced to make \a one of \a other.
int distance(const QString &one, const QString &other)
{
    std::vector<int> row(size_t(other.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < one.size(); ++i) {
        int diagonal = row[0]++;
        for (size_t j = 1; j < row.size(); ++j) {
            const int replaced = diagonal + (one[i] == other[int(j) - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

} // namespace

const QVector<CommandGroup> &commandGroups()
{
    static const QVector<CommandGroup> groups{
        {"Channels",
         {&subscribeCommand, &unsubscribeCommand, &refreshCommand, &editCommand, &folderCommand,
          &importCommand, &exportCommand}},
        {"Reading",
         {&channelsCommand, &messagesCommand, &showCommand, &openCommand, &searchCommand, &readCommand,
          &unreadCommand, &favoriteCommand, &unfavoriteCommand, &deleteCommand}},
        {"Files", {&enclosuresCommand, &downloadCommand}},
        {"Archive",
         {&statsCommand, &queryCommand, &pruneCommand, &cleanCommand, &backupCommand, &restoreCommand,
          &checkCommand, &pluginsCommand}},
    };
    return groups;
}

QVector<const Command *> allCommands()
{
    QVector<const Command *> commands;
    for (const CommandGroup &group : commandGroups())
        commands += group.commands;
    return commands;
}

const std::vector<Option> &commonOptions()
{
    static const std::vector<Option> options{
        {"json", nullptr, "Writes a line of JSON for each result and each error, for other programs."},
        {"quiet", nullptr, "Writes only what was asked for and errors."},
    };
    return options;
}

const std::vector<Option> &programOptions()
{
    static const std::vector<Option> options{
        {"help", nullptr, "Displays this help."},
        {"version", nullptr, "Displays the version."},
        {"log-settings", "FILE", "Writes log messages as configured in FILE; stands before the command."}};
    return options;
}

const Command *findCommand(const QString &name)
{
    const auto commands = allCommands();
    const auto found = std::find_if(commands.begin(), commands.end(), [&](const Command *command) {
        return name == QLatin1String(command->name);
    });
    return found == commands.end() ? nullptr : *found;
}

QString similarWord(const QString &word, const QStringList &words)
{
    QString best;
    int least = 3; // More mistakes than two make another word.
    for (const QString &each : words) {
        const int mistakes = each.startsWith(word) && word.size() > 1 ? 1 : distance(word.left(40), each);
        if (mistakes < std::min<int>(least, int(each.size()))) {
            least = mistakes;
            best = each;
        }
    }
    return best;
}

QStringList commandNames()
{
    QStringList names;
    const auto commands = allCommands();
    for (const Command *command : commands)
        names.append(QString::fromLatin1(command->name));
    return names;
}

} // namespace Tidel
