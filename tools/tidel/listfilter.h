// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LISTFILTER_H
#define TIDEL_LISTFILTER_H

#include "command.h"

#include <TidelReader/messagefilter.h>

#include <optional>

namespace Tidel {

/// The options that lists and searches have.
const std::vector<Option> &filterOptions();

/// Returns what is wrong with these options and --limit; empty if they are valid.
QString misuseOfFilter(const Arguments &arguments);

/// Returns what the options in \a arguments mean for the channels \a channels, or for all if there are none.
/// Reports unknown channels and folders to \a output, and returns nothing then.
std::optional<MessageFilter> messageFilter(const Store &store, const QStringList &channels,
                                           const Arguments &arguments, Output &output);

/// The value of --limit; \a byDefault if it is not set.
int limitOf(const Arguments &arguments, int byDefault);

} // namespace Tidel

#endif
