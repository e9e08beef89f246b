// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELFINDER_H
#define TIDEL_CHANNELFINDER_H

#include <QList>
#include <QString>

#include <feedchannel.h>

#include <optional>

namespace Tidel {

class FeedStore;
class Output;

/// The one of \a channels that a user calls \a name: its URI, its link, the path of its file, or its title
/// when no other has the same. Otherwise nothing, and \a error says why.
std::optional<FeedChannel> findChannel(const QList<FeedChannel> &channels, const QString &name,
                                       QString *error);

/// The channel of \a store that a user calls \a name. Otherwise nothing: \a output is told why, or the store
/// has failed.
std::optional<FeedChannel> chooseChannel(const FeedStore &store, const QString &name, Output &output);

/// The channels that a user calls \a names, all of them when there is no name; a name that stands for none,
/// and that there is no channel at all, is told to \a output. None when the store has failed.
QList<FeedChannel> chooseChannels(const FeedStore &store, const QStringList &names, Output &output);

} // namespace Tidel

#endif
