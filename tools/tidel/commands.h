// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDS_H
#define TIDEL_COMMANDS_H

#include "arguments.h"

namespace Tidel {

class FeedStore;
class Output;

// What the commands of the same names do. Failures are told to the output; one does not keep the rest from
// being done.

void subscribe(FeedStore &store, const Arguments &arguments, Output &output);
void unsubscribe(FeedStore &store, const Arguments &arguments, Output &output);
void refresh(FeedStore &store, const Arguments &arguments, Output &output);
void download(FeedStore &store, const Arguments &arguments, Output &output);
void edit(FeedStore &store, const Arguments &arguments, Output &output);
void favorite(FeedStore &store, const Arguments &arguments, Output &output);
void unfavorite(FeedStore &store, const Arguments &arguments, Output &output);
void prune(FeedStore &store, const Arguments &arguments, Output &output);
void clean(FeedStore &store, const Arguments &arguments, Output &output);
void listChannels(FeedStore &store, const Arguments &arguments, Output &output);
void listMessages(FeedStore &store, const Arguments &arguments, Output &output);
void listEnclosures(FeedStore &store, const Arguments &arguments, Output &output);

// What is wrong with the options of a command; empty when nothing is.

QString misuseOfDownload(const Arguments &arguments);
QString misuseOfEdit(const Arguments &arguments);
QString misuseOfPrune(const Arguments &arguments);

} // namespace Tidel

#endif
