// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "feedstore.h"
#include "output.h"
#include "phrases.h"

#include <QSparqlQuery>
#include <QUrl>

namespace Tidel {

namespace {

/// Runs \a update for the message that the command names, and says what it is then.
void changeTag(FeedStore &store, const Arguments &arguments, const QSparqlQuery &update, const QString &done,
               Output &output)
{
    const QString name = arguments.names.first();
    const QString uri = store.messageUri(name);
    if (uri.isEmpty()) {
        output.error(noSuchMessage(name));
        return;
    }
    QSparqlQuery query = update;
    query.bindValue(QStringLiteral("message"), QUrl(uri));
    if (store.run(query))
        output.line(done.arg(name));
    else
        output.error(QStringLiteral("%1: the store did not take the change").arg(name));
}

} // namespace

void favorite(FeedStore &store, const Arguments &arguments, Output &output)
{
    changeTag(store, arguments,
              QSparqlQuery(QStringLiteral("INSERT { ?:message nao:hasTag nao:predefined-tag-favorite }"),
                           QSparqlQuery::InsertStatement),
              QStringLiteral("Favorite: %1"), output);
}

void unfavorite(FeedStore &store, const Arguments &arguments, Output &output)
{
    changeTag(store, arguments,
              QSparqlQuery(QStringLiteral("DELETE { ?:message nao:hasTag nao:predefined-tag-favorite }"),
                           QSparqlQuery::DeleteStatement),
              QStringLiteral("No favorite: %1"), output);
}

} // namespace Tidel
