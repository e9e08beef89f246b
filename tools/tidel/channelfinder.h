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

/// The channel of \a store that the user calls \a name; nothing if there is none, which is reported to
/// \a output.
std::optional<FeedChannel> chooseChannel(const Store &store, const QString &name, Output &output);

/// The channels that the user calls \a names, all of them if there is no name. Reports to \a output each name
/// that is not a channel's, that there are no channels, and failures of the store.
QList<FeedChannel> chooseChannels(const Store &store, const QStringList &names, Output &output);

} // namespace Tidel

#endif
