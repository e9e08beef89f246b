// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMANDS_H
#define TIDEL_COMMANDS_H

#include "arguments.h"

namespace Tidel {

class Output;
class Store;

// The commands of the program. They report failures to the output. A failure does not stop the rest.

/// Subscribes to the feeds with these addresses, or to those of the web pages with these addresses.
void subscribe(const Store &store, const Arguments &arguments, Output &output);
/// Deletes the channel with this name.
void unsubscribe(const Store &store, const Arguments &arguments, Output &output);
/// Downloads the feeds of the channels with these names, or of all channels.
void refresh(const Store &store, const Arguments &arguments, Output &output);
/// Downloads the enclosures with these names, or those of the messages with these names.
void download(const Store &store, const Arguments &arguments, Output &output);
/// Changes the title or link of the channel with this name.
void edit(const Store &store, const Arguments &arguments, Output &output);
/// Marks the message with this name as a favorite.
void favorite(const Store &store, const Arguments &arguments, Output &output);
/// Removes the favorite mark of the message with this name.
void unfavorite(const Store &store, const Arguments &arguments, Output &output);
/// Deletes the oldest messages of the channels with these names, or of all channels.
void prune(const Store &store, const Arguments &arguments, Output &output);
/// Deletes messages without a channel and enclosures without a message.
void clean(const Store &store, const Arguments &arguments, Output &output);
/// Puts the channel with this name into the folder with this name.
void moveToFolder(const Store &store, const Arguments &arguments, Output &output);
/// Subscribes to the feeds in the OPML file of this name.
void importChannels(const Store &store, const Arguments &arguments, Output &output);
/// Writes a list of the channels, to the file of this name or as a result.
void exportChannels(const Store &store, const Arguments &arguments, Output &output);
/// Copies the whole archive into the file of this name.
void backup(const Store &store, const Arguments &arguments, Output &output);
/// Fills the empty archive from the backup of this name.
void restore(const Store &store, const Arguments &arguments, Output &output);
/// Checks that the store is sound, and repairs it if that is asked for.
void check(const Arguments &arguments, Output &output);
/// Lists all channels.
void listChannels(const Store &store, const Arguments &arguments, Output &output);
/// Lists the messages of the channel with this name.
void listMessages(const Store &store, const Arguments &arguments, Output &output);
/// Shows the messages with these names.
void showMessages(const Store &store, const Arguments &arguments, Output &output);
/// Lists the messages that have these words.
void search(const Store &store, const Arguments &arguments, Output &output);
/// Lists the enclosures of the message with this name.
void listEnclosures(const Store &store, const Arguments &arguments, Output &output);

/// Returns what is wrong with the options of subscribe; empty if they are valid.
QString misuseOfSubscribe(const Arguments &arguments);
/// Returns what is wrong with the options of download; empty if they are valid.
QString misuseOfDownload(const Arguments &arguments);
/// Returns what is wrong with the options of edit; empty if they are valid.
QString misuseOfEdit(const Arguments &arguments);
/// Returns what is wrong with the arguments of folder; empty if they are valid.
QString misuseOfFolder(const Arguments &arguments);
/// Returns what is wrong with the options of export; empty if they are valid.
QString misuseOfExport(const Arguments &arguments);
/// Returns what is wrong with the options of show; empty if they are valid.
QString misuseOfShow(const Arguments &arguments);
/// Returns what is wrong with the options of search; empty if they are valid.
QString misuseOfSearch(const Arguments &arguments);
/// Returns what is wrong with the options of check; empty if they are valid.
QString misuseOfCheck(const Arguments &arguments);
/// Returns what is wrong with the options of prune; empty if they are valid.
QString misuseOfPrune(const Arguments &arguments);

} // namespace Tidel

#endif
