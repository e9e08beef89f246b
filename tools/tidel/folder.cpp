// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "phrases.h"

#include <TidelReader/folders.h>

namespace Tidel {

namespace {

QString misuseOfFolder(const Arguments &arguments)
{
    const auto depth = arguments.names.last().count(QLatin1Char('/'));
    return depth < Folders::maximumDepth
        ? QString()
        : QStringLiteral("folders can be nested %1 deep").arg(Folders::maximumDepth);
}

void moveToFolder(const Store &store, const Arguments &arguments, Output &output)
{
    const auto channel = chooseChannel(store, arguments.names.first(), output);
    if (!channel)
        return;
    const QString folder = Folders::path(Folders::names(arguments.names.last()));
    const QString title = shownTitle(channel->title());
    const Result<void> moved = Folders(store).move(channel->uri(), folder);
    if (!moved) {
        output.failure(title, moved.error());
        return;
    }
    QJsonObject json = channelJson(*channel);
    addText(json, "folder", folder);
    output.report(folder.isEmpty() ? QStringLiteral("In no folder: %1").arg(title)
                                   : QStringLiteral("In %1: %2").arg(folder, title),
                  json);
}

} // namespace

const Command folderCommand = {
    "folder",
    "CHANNEL FOLDER",
    "Put a channel into a folder, such as News/World.",
    "A channel, and the names of folders within each other with / between them; \"\" for no folder.",
    2,
    2,
    {},
    {"tidel folder \"Town News\" News/Local", "tidel folder \"Town News\" \"\""},
    moveToFolder,
    misuseOfFolder,
    true};

} // namespace Tidel
