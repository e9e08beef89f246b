// SPDX-License-Identifier: LGPL-2.1-or-later
#include "listfilter.h"

#include "channelfinder.h"
#include "output.h"
#include "timeargument.h"

#include <TidelReader/folders.h>
#include <TidelReader/store.h>

namespace Tidel {

namespace {

/// Returns the URIs of the channels in the folder \a path or below it. Reports to \a output if there are
/// none.
std::optional<QStringList> channelsIn(const Store &store, const QString &path, Output &output)
{
    const auto folders = Folders(store).all();
    if (!folders) {
        output.failure(folders.error());
        return std::nullopt;
    }
    const QString wanted = Folders::path(Folders::names(path)) + QLatin1Char('/');
    QStringList uris;
    for (auto channel = folders->cbegin(); channel != folders->cend(); ++channel) {
        if (QString(channel.value() + QLatin1Char('/')).startsWith(wanted, Qt::CaseInsensitive))
            uris.append(channel.key());
    }
    if (!uris.isEmpty())
        return uris;
    output.error(QStringLiteral("%1: no such folder; \"tidel channels\" shows the folders").arg(path));
    return std::nullopt;
}

/// Returns the URIs of the channels \a names. Reports unknown ones to \a output.
std::optional<QStringList> channelsNamed(const Store &store, const QStringList &names, Output &output)
{
    QStringList uris;
    for (const QString &name : names) {
        const auto channel = chooseChannel(store, name, output);
        if (!channel)
            return std::nullopt;
        uris.append(channel->uri());
    }
    return uris;
}

} // namespace

const std::vector<Option> &filterOptions()
{
    static const std::vector<Option> options{
        {"folder", "FOLDER", "Only messages of the channels in this folder or below it."},
        {"unread", nullptr, "Only unread messages."},
        {"favorites", nullptr, "Only favorites."},
        {"since", "TIME",
         "Only messages published since then: today, yesterday, 7d for seven days, 2026-11-03."},
        {"until", "TIME", "Only messages published until then; the day is included."},
    };
    return options;
}

QString misuseOfFilter(const Arguments &arguments)
{
    for (const char *option : {"since", "until"}) {
        if (arguments.isSet(option)
            && !timeArgument(arguments.value(option), QDateTime::currentDateTime()).isValid())
            return QStringLiteral(
                       "--%1 needs today, yesterday, a number of days such as 7d, or a day such as "
                       "2026-11-03")
                .arg(QLatin1String(option));
    }
    if (arguments.isSet("folder") && Folders::names(arguments.value("folder")).isEmpty())
        return QStringLiteral("--folder needs the name of a folder, such as News/World");
    return limitOf(arguments, 1) >= 1 ? QString() : QStringLiteral("--limit needs a number, 1 or more");
}

std::optional<MessageFilter> messageFilter(const Store &store, const QStringList &channels,
                                           const Arguments &arguments, Output &output)
{
    MessageFilter filter;
    const auto named = channelsNamed(store, channels, output);
    if (!named)
        return std::nullopt;
    filter.channelUris = *named;
    if (arguments.isSet("folder")) {
        const auto inFolder = channelsIn(store, arguments.value("folder"), output);
        if (!inFolder)
            return std::nullopt;
        filter.channelUris += *inFolder;
    }
    const QDateTime now = QDateTime::currentDateTime();
    filter.onlyUnread = arguments.isSet("unread");
    filter.onlyFavorites = arguments.isSet("favorites");
    filter.since = timeArgument(arguments.value("since"), now);
    filter.until = timeArgument(arguments.value("until"), now, true);
    return filter;
}

int limitOf(const Arguments &arguments, int byDefault)
{
    return arguments.isSet("limit") ? arguments.value("limit").toInt() : byDefault;
}

} // namespace Tidel
