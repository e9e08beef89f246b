// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "jsonobjects.h"
#include "output.h"
#include "table.h"

#include <TidelReader/pluginfinder.h>

namespace Tidel {

namespace {

void plugins(const Arguments &, Output &output)
{
    const QList<PluginDescription> found = describePlugins(pluginFolder());
    if (found.isEmpty())
        output.error(
            QStringLiteral("no download plug-in in %1; install tidel again to get one").arg(pluginFolder()));
    Table table;
    for (const PluginDescription &plugin : found) {
        QJsonObject json;
        addText(json, "name", plugin.name);
        addText(json, "version", plugin.version);
        addText(json, "description", plugin.description);
        addText(json, "file", plugin.file);
        addList(json, "addresses", plugin.addresses);
        const auto loaded = loadPlugin(plugin.file);
        if (!loaded) {
            output.error(plugin.file + QLatin1Char(' ') + loaded.error().reason(), json);
            continue;
        }
        output.object(json);
        const QString addresses = plugin.addresses.join(QLatin1Char(' '));
        table.addRow({plugin.name, plugin.version,
                      addresses.isEmpty() ? QStringLiteral("all other addresses") : addresses, plugin.file});
    }
    output.table(table);
}

} // namespace

const Command pluginsCommand = {
    "plugins",         "",     "List the download plug-ins, and the addresses that each takes.", "", 0, 0, {},
    {"tidel plugins"}, plugins};

} // namespace Tidel
