// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "output.h"
#include "phrases.h"

#include <TidelReader/messages.h>

namespace Tidel {

namespace {

void setFavorite(const Store &store, const QString &name, bool isFavorite, Output &output)
{
    Messages messages(store);
    const Result<QString> uri = messages.uri(name);
    if (!uri) {
        output.failure(name, uri.error(), messageAdvice(uri.error()));
        return;
    }
    const Result<void> changed = messages.setFavorite(*uri, isFavorite);
    if (changed)
        output.report((isFavorite ? QLatin1String("Favorite: ") : QLatin1String("Not a favorite: ")) + name,
                      {{QStringLiteral("uri"), *uri}, {QStringLiteral("favorite"), isFavorite}});
    else
        output.failure(name, changed.error());
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
