// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMAND_H
#define TIDEL_COMMAND_H

#include "arguments.h"

#include <variant>
#include <vector>

namespace Tidel {

class Output;
class Store;

/// An option of a command.
struct Option
{
    const char *name;
    const char *value; ///< The name of the value in the help; null for an option without a value.
    const char *description;
};

/// A command of the program. Its parser, help, manual page and completion are made of this.
struct Command
{
    /// Runs the command on the store. Reports failures to the output. A failure does not stop the rest.
    using OnStore = void (*)(const Store &, const Arguments &, Output &);
    /// Runs the command, which opens the store itself or needs none.
    using Alone = void (*)(const Arguments &, Output &);

    const char *name;
    const char *syntax; ///< The arguments in the help.
    const char *summary;
    const char *details; ///< Describes the arguments.
    int minimumArguments;
    int maximumArguments;
    std::vector<Option> options;
    std::vector<const char *> examples; ///< Whole calls, as a user types them.
    std::variant<OnStore, Alone> run;
    /// Returns what is wrong with the arguments; empty if they are valid. Null if there is nothing to check.
    QString (*misuse)(const Arguments &) = nullptr;
    bool takesEmptyArguments = false;
};

constexpr int anyNumber = -1; ///< As Command::maximumArguments.

// Descriptions of arguments that several commands have.
constexpr const char *aChannel =
    "A channel: its number in the last list, a part of its title, its link, file or URI.";
constexpr const char *someChannels =
    "Channels: numbers in the last list, parts of titles, links, files or URIs; "
    "all channels by default.";
constexpr const char *aMessage =
    "A message: its number in the last list, a part of its title, its link or URI.";
constexpr const char *someMessages = "Messages: numbers in the last list, parts of titles, links or URIs.";

} // namespace Tidel

#endif
