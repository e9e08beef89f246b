// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CHANNELFINDER_H
#define TIDEL_CHANNELFINDER_H

#include <QList>
#include <QString>

#include <feedchannel.h>

#include <optional>

namespace Tidel {

class Output;

/// The one of \a channels that a user calls \a name: its URI, its link, the path of its file, or its title
/// when no other has the same. Otherwise nothing, and \a error says why.
std::optional<FeedChannel> findChannel(const QList<FeedChannel> &channels, const QString &name,
                                       QString *error);

/// The channels that a user calls \a names, all of them when there is no name; a name that stands for none is
/// told to \a output.
QList<FeedChannel> findChannels(const QList<FeedChannel> &channels, const QStringList &names, Output &output);

} // namespace Tidel

#endif
