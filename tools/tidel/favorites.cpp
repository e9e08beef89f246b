// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "messagefinder.h"
#include "output.h"
#include "phrases.h"

#include <QJsonObject>

#include <TidelReader/messages.h>

namespace Tidel {

namespace {

void setFavorite(const Store &store, const QString &name, bool isFavorite, Output &output)
{
    const auto message = chooseMessage(store, name, output);
    if (!message)
        return;
    const QString title = shownTitle(message->title);
    const Result<void> changed = Messages(store).setFavorite(message->uri, isFavorite);
    if (changed)
        output.report(QLatin1String(isFavorite ? "Favorite: " : "Not a favorite: ") + title,
                      {{QStringLiteral("uri"), message->uri}, {QStringLiteral("favorite"), isFavorite}});
    else
        output.failure(title, changed.error());
}

void favorite(const Store &store, const Arguments &arguments, Output &output)
{
    setFavorite(store, arguments.names.first(), true, output);
}

void unfavorite(const Store &store, const Arguments &arguments, Output &output)
{
    setFavorite(store, arguments.names.first(), false, output);
}

} // namespace

const Command favoriteCommand = {
    "favorite", "MESSAGE", "Mark a message as a favorite, which is never pruned.",   aMessage, 1,
    1,          {},        {"tidel favorite https://garden.example.com/beans.html"}, favorite};

const Command unfavoriteCommand = {"unfavorite",
                                   "MESSAGE",
                                   "Remove the favorite mark from a message.",
                                   aMessage,
                                   1,
                                   1,
                                   {},
                                   {"tidel unfavorite https://garden.example.com/beans.html"},
                                   unfavorite};

} // namespace Tidel
