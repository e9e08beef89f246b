// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELFINDER_H
#define TIDEL_CHANNELFINDER_H

#include <QList>
#include <QString>

#include <feedchannel.h>

#include <optional>

namespace Tidel {

class Output;
class Store;

/// Returns the channel of \a store that the user calls \a name: the number of a row in the last list of
/// channels, its URI, its link, its title, or a part of its title that no other title contains. If there is
/// none or more than one, reports it to \a output with the channels that may be meant, and returns nothing.
std::optional<FeedChannel> chooseChannel(const Store &store, const QString &name, Output &output);

/// Returns the channels of \a store that \a names identify, or all channels if \a names is empty. Reports
/// unknown names, an empty store and errors of the store to \a output.
QList<FeedChannel> chooseChannels(const Store &store, const QStringList &names, Output &output);

} // namespace Tidel

#endif
