// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "channelfinder.h"
#include "jsonobjects.h"
#include "output.h"
#include "question.h"
#include "timeargument.h"

#include <TidelReader/channels.h>
#include <TidelReader/documenturl.h>
#include <TidelReader/link.h>
#include <TidelReader/logins.h>

#include <algorithm>

namespace Tidel {

namespace {

const QString usualInterval = QStringLiteral("default");

bool isOfWeb(const QUrl &address) { return address.scheme().startsWith(QLatin1String("http")); }

/// Returns true if a channel of \a store other than \a channel has a link with the user and server of its
/// link.
bool isLoginShared(const Store &store, const FeedChannel &channel)
{
    const auto loginOf = [](const QString &link) {
        const QUrl url(link);
        return url.scheme() + QLatin1String("://") + url.userName() + QLatin1Char('@') + url.host()
            + QString::number(url.port());
    };
    const QList<FeedChannel> all = Channels(store).all().value_or(QList<FeedChannel>());
    return std::any_of(all.begin(), all.end(), [&](const FeedChannel &other) {
        return other.uri() != channel.uri() && loginOf(other.link()) == loginOf(channel.link());
    });
}

/// Forgets the password of \a channel, and returns \a address without a user.
Result<QUrl> withoutLogin(const Store &store, const FeedChannel &channel, const QUrl &address)
{
    const QUrl bare = address.adjusted(QUrl::RemoveUserInfo);
    return isLoginShared(store, channel)
        ? Result<QUrl>(bare)
        : Logins::set(QUrl(channel.link()), QString()).map([&] { return bare; });
}

/// Asks for the password of \a user and keeps it. Returns \a address with the user.
Result<QUrl> withLogin(const QString &user, const QUrl &address)
{
    QUrl named = address.adjusted(QUrl::RemoveUserInfo);
    named.setUserName(user, QUrl::DecodedMode);
    const std::optional<QString> password =
        askSecretly(QStringLiteral("Password of %1 for %2: ").arg(user, address.host()));
    if (!password || password->isEmpty())
        return Failure(
            Error(Error::NotFound, {}, QStringLiteral("no password was given; nothing was changed")));
    return Logins::set(named, *password).map([&] { return named; });
}

/// The link that the arguments give \a channel. Passwords are kept apart from it.
Result<QString> changedLink(const Store &store, const FeedChannel &channel, const Arguments &arguments)
{
    const bool hasLink = arguments.isSet("link");
    if (!hasLink && !arguments.isSet("login"))
        return channel.link();
    const QUrl address = hasLink ? documentUrl(arguments.value("link").trimmed()) : QUrl(channel.link());
    const auto changed = [&]() -> Result<QUrl> {
        if (!arguments.isSet("login"))
            return Logins::takeApart(address);
        if (!isOfWeb(address))
            return Failure(Error(Error::NotFound, {}, QStringLiteral("only web addresses have a login")));
        const QString user = arguments.value("login");
        return user.isEmpty() ? withoutLogin(store, channel, address) : withLogin(user, address);
    };
    return changed().map([](const QUrl &url) { return Link::encoded(url); });
}

QString misuseOfEdit(const Arguments &arguments)
{
    if (!arguments.isSet("title") && !arguments.isSet("link") && !arguments.isSet("every")
        && !arguments.isSet("login"))
        return QStringLiteral("nothing to change: give --title, --link, --every or --login");
    if (arguments.isSet("title") && arguments.value("title").simplified().isEmpty())
        return QStringLiteral("--title needs a text");
    if (arguments.isSet("link") && arguments.value("link").trimmed().isEmpty())
        return QStringLiteral("--link needs a file or URL");
    const QString every = arguments.value("every");
    if (arguments.isSet("every") && every != usualInterval && intervalArgument(every) == 0)
        return QStringLiteral("--every needs a time such as 30m, 2h or 1d, or \"default\"");
    if (arguments.isSet("link") && !isDocumentUrl(documentUrl(arguments.value("link").trimmed())))
        return QStringLiteral("--link needs a file, or an address that begins with https:// or http://");
    return QString();
}

void edit(const Store &store, const Arguments &arguments, Output &output)
{
    const auto channel = chooseChannel(store, arguments.names.first(), output);
    if (!channel)
        return;
    const Result<QString> link = changedLink(store, *channel, arguments);
    if (!link) {
        output.failure(channel->title(), link.error());
        return;
    }
    FeedChannel changed = *channel;
    changed.setLink(*link);
    if (arguments.isSet("title"))
        changed.setTitle(arguments.value("title").simplified());
    const bool isEdited = changed.title() != channel->title() || changed.link() != channel->link();
    const bool isChanged = isEdited || arguments.isSet("every") || arguments.isSet("login");
    Result<void> done;
    if (isEdited)
        done = Channels(store).edit(*channel, changed.title(), changed.link());
    if (done && arguments.isSet("every"))
        done = Channels(store).setInterval(channel->uri(), intervalArgument(arguments.value("every")));
    if (done)
        output.report(QStringLiteral("%1: %2 (%3)")
                          .arg(isChanged ? QStringLiteral("Changed") : QStringLiteral("Nothing to change"),
                               changed.title(), changed.link()),
                      channelJson(changed));
    else if (done.error().kind() == Error::LinkInUse)
        output.error(QStringLiteral("%1 %2; choose another link").arg(changed.link(), done.error().reason()));
    else
        output.failure(channel->title(), done.error());
}

} // namespace

const Command editCommand = {
    "edit",
    "CHANNEL [--title TITLE] [--link FILE|URL] [--every TIME] [--login USER]",
    "Change the title or link of a channel, or how it is asked for.",
    aChannel,
    1,
    1,
    {{"title", "TITLE", "The new title."},
     {"link", "FILE|URL", "The new address of the feed."},
     {"every", "TIME",
      "Asks for the feed at most so often, such as 30m, 2h or 1d; \"default\" leaves it to the server."},
     {"login", "USER",
      "Asks for the password of this user, or reads it from the standard input; an empty name forgets it."}},
    {"tidel edit \"Garden Notes\" --title Garden", "tidel edit Garden --link https://example.org/feed.xml",
     "tidel edit Garden --every 2h", "tidel edit Garden --login ann"},
    edit,
    misuseOfEdit};

} // namespace Tidel
