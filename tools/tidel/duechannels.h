// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DUECHANNELS_H
#define TIDEL_DUECHANNELS_H

#include "arguments.h"

#include <QList>

#include <feedchannel.h>

namespace Tidel {

class Output;
class Store;

/// Returns those of \a channels that a refresh asks for. If \a arguments name channels, leaves out only those
/// whose server refuses to answer, and with the option "force" none. Reports to \a output what is left out.
QList<FeedChannel> dueChannels(const Store &store, const QList<FeedChannel> &channels,
                               const Arguments &arguments, Output &output);

} // namespace Tidel

#endif
