// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDS_H
#define TIDEL_COMMANDS_H

#include "arguments.h"

namespace Tidel {

class Output;
class Store;

// The commands of the same names. They report failures to the output. After a failure the rest is still done.

void subscribe(const Store &store, const Arguments &arguments, Output &output);
void unsubscribe(const Store &store, const Arguments &arguments, Output &output);
void refresh(const Store &store, const Arguments &arguments, Output &output);
void download(const Store &store, const Arguments &arguments, Output &output);
void edit(const Store &store, const Arguments &arguments, Output &output);
void favorite(const Store &store, const Arguments &arguments, Output &output);
void unfavorite(const Store &store, const Arguments &arguments, Output &output);
void prune(const Store &store, const Arguments &arguments, Output &output);
void clean(const Store &store, const Arguments &arguments, Output &output);
void listChannels(const Store &store, const Arguments &arguments, Output &output);
void listMessages(const Store &store, const Arguments &arguments, Output &output);
void listEnclosures(const Store &store, const Arguments &arguments, Output &output);

// What is wrong with the options of a command; empty if they are valid.

QString misuseOfDownload(const Arguments &arguments);
QString misuseOfEdit(const Arguments &arguments);
QString misuseOfPrune(const Arguments &arguments);

} // namespace Tidel

#endif
