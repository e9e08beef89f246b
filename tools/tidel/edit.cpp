// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "documenturl.h"
#include "feedstore.h"
#include "links.h"
#include "output.h"

#include <QSparqlQuery>
#include <QUrl>

#include <feedtrackersparql.h>

#include <algorithm>

namespace Tidel {

namespace {

/// Why the channel cannot have \a link; empty when it can.
QString obstacle(const FeedStore &store, const QString &link)
{
    const QList<FeedChannel> channels = store.channels();
    const auto owner = std::find_if(channels.begin(), channels.end(),
                                    [&](const FeedChannel &channel) { return channel.link() == link; });
    if (owner != channels.end())
        return QStringLiteral("is the link of another channel, %1").arg(owner->title());
    // Known messages are linked to further channels by their links: such a channel would become a message.
    if (!store.messageUri(link).isEmpty())
        return QStringLiteral("is the link of a message");
    return QString();
}

/// What a server said of the last download holds for \a oldLink alone; the names of items that have no link
/// of their own were made from the first link, and stay so.
bool prepareMove(FeedStore &store, const QString &channelUri, const QString &oldLink)
{
    QSparqlQuery query(QStringLiteral("DELETE { ?:channel tidel:entityTag ?e } "
                                      "WHERE { ?:channel tidel:entityTag ?e } "
                                      "DELETE { ?:channel tidel:lastModified ?m } "
                                      "WHERE { ?:channel tidel:lastModified ?m } "
                                      "INSERT { ?:channel nie:identifier ?:link } "
                                      "WHERE { ?:channel a mfo:FeedChannel "
                                      "FILTER NOT EXISTS { ?:channel nie:identifier ?first } }"),
                       QSparqlQuery::InsertStatement);
    query.bindValue(QStringLiteral("channel"), QUrl(channelUri));
    query.bindValue(QStringLiteral("link"), oldLink);
    return store.run(query);
}

} // namespace

QString misuseOfEdit(const Arguments &arguments)
{
    if (arguments.options.isEmpty())
        return QStringLiteral("nothing to change: give --title or --link");
    if (arguments.isSet("title") && arguments.value("title").simplified().isEmpty())
        return QStringLiteral("--title needs a text");
    if (arguments.isSet("link") && arguments.value("link").trimmed().isEmpty())
        return QStringLiteral("--link needs a file or URL");
    return QString();
}

void edit(FeedStore &store, const Arguments &arguments, Output &output)
{
    const auto channel = chooseChannel(store, arguments.names.first(), output);
    if (!channel)
        return;
    QString title = channel->title();
    QString link = channel->link();
    if (arguments.isSet("title"))
        title = arguments.value("title").simplified();
    if (arguments.isSet("link"))
        link = encodedUrl(documentUrl(arguments.value("link").trimmed()));

    QVariantMap properties;
    if (title != channel->title())
        properties.insert(FeedTrackerSparql::TitleKey, title);
    if (link != channel->link()) {
        const QString reason = obstacle(store, link);
        if (!reason.isEmpty()) {
            output.error(QStringLiteral("%1 %2").arg(link, reason));
            return;
        }
        properties.insert(FeedTrackerSparql::LinkKey, link);
    }
    const bool isMoved = properties.contains(FeedTrackerSparql::LinkKey);
    if (properties.isEmpty())
        output.line(QStringLiteral("Nothing to change: %1 (%2)").arg(title, link));
    else if ((!isMoved || prepareMove(store, channel->uri(), channel->link()))
             && store.library().editChannel(channel->uri(), properties))
        output.line(QStringLiteral("Changed: %1 (%2)").arg(title, link));
    else
        output.error(QStringLiteral("%1: the store did not take the change").arg(channel->title()));
}

} // namespace Tidel
