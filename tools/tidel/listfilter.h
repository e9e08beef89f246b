// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LISTFILTER_H
#define TIDEL_LISTFILTER_H

#include "command.h"

#include <QDateTime>
#include <QStringList>

#include <optional>

namespace Tidel {

/// Which messages a list or a search shows, by the options that both have.
struct ListFilter
{
    QStringList channelUris; ///< All channels if it is empty.
    bool onlyUnread = false;
    bool onlyFavorites = false;
    QDateTime since; ///< Without a bound if invalid.
    QDateTime until;
};

/// The options that both have.
const std::vector<Option> &filterOptions();

/// Returns what is wrong with these options and --limit; empty if they are valid.
QString misuseOfFilter(const Arguments &arguments);

/// Returns what the options in \a arguments mean for the channels \a channels, or for all if there are none.
/// Reports unknown channels and folders to \a output, and returns nothing then.
std::optional<ListFilter> listFilter(const Store &store, const QStringList &channels,
                                     const Arguments &arguments, Output &output);

/// The value of --limit; \a byDefault if it is not set.
int limitOf(const Arguments &arguments, int byDefault);

} // namespace Tidel

#endif
