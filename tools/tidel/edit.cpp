// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"

#include <TidelReader/channels.h>
#include <TidelReader/documenturl.h>
#include <TidelReader/link.h>

namespace Tidel {

namespace {

QString misuseOfEdit(const Arguments &arguments)
{
    if (!arguments.isSet("title") && !arguments.isSet("link"))
        return QStringLiteral("nothing to change: give --title or --link");
    if (arguments.isSet("title") && arguments.value("title").simplified().isEmpty())
        return QStringLiteral("--title needs a text");
    if (arguments.isSet("link") && arguments.value("link").trimmed().isEmpty())
        return QStringLiteral("--link needs a file or URL");
    return QString();
}

void edit(const Store &store, const Arguments &arguments, Output &output)
{
    const auto channel = chooseChannel(store, arguments.names.first(), output);
    if (!channel)
        return;
    QString title = channel->title();
    QString link = channel->link();
    if (arguments.isSet("title"))
        title = arguments.value("title").simplified();
    if (arguments.isSet("link"))
        link = Link::encoded(documentUrl(arguments.value("link").trimmed()));
    if (title == channel->title() && link == channel->link()) {
        output.report(QStringLiteral("Nothing to change: %1 (%2)").arg(title, link), channelJson(*channel));
        return;
    }
    const Result<void> edited = Channels(store).edit(*channel, title, link);
    FeedChannel changed = *channel;
    changed.setTitle(title);
    changed.setLink(link);
    if (edited)
        output.report(QStringLiteral("Changed: %1 (%2)").arg(title, link), channelJson(changed));
    else if (edited.error().kind() == Error::LinkInUse)
        output.error(QStringLiteral("%1 %2; choose another link").arg(link, edited.error().reason()));
    else
        output.failure(channel->title(), edited.error());
}

} // namespace

const Command editCommand = {
    "edit",
    "CHANNEL [--title TITLE] [--link FILE|URL]",
    "Change the title or link of a channel.",
    aChannel,
    1,
    1,
    {{"title", "TITLE", "The new title."}, {"link", "FILE|URL", "The new address of the feed."}},
    {"tidel edit \"Garden Notes\" --title Garden", "tidel edit Garden --link https://example.org/feed.xml"},
    edit,
    misuseOfEdit};

} // namespace Tidel
