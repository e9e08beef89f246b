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
constexpr const char *aChannel = "The title, link, file or URI of a channel.";
constexpr const char *someChannels = "The titles, links, files or URIs of channels; all channels by default.";
constexpr const char *aMessage = "The link or URI of a message.";

} // namespace Tidel

#endif
