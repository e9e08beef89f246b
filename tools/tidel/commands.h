// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDS_H
#define TIDEL_COMMANDS_H

#include <QStringList>

namespace Tidel {

class FeedStore;
class Output;

// What the commands of the same names do. Failures are told to the output; one does not keep the rest from
// being done.

void subscribe(FeedStore &store, const QStringList &arguments, Output &output);
void refresh(FeedStore &store, const QStringList &arguments, Output &output);
void listChannels(FeedStore &store, const QStringList &arguments, Output &output);
void listMessages(FeedStore &store, const QStringList &arguments, Output &output);
void listEnclosures(FeedStore &store, const QStringList &arguments, Output &output);

} // namespace Tidel

#endif
