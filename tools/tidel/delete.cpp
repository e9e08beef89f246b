// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "jsonobjects.h"
#include "messagefinder.h"
#include "output.h"
#include "phrases.h"
#include "question.h"
#include "removalreport.h"

#include <TidelReader/messages.h>

#include <algorithm>

namespace Tidel {

namespace {

using Headlines = QList<MessageHeadline>;

void show(const Headlines &messages, Output &output)
{
    output.line(QStringLiteral("Would delete %1").arg(countedMessages(int(messages.size()))));
    for (const MessageHeadline &message : messages) {
        output.object(headlineJson(message));
        output.line(QStringLiteral("  %1  %2").arg(shownTime(message.published), shownTitle(message.title)));
    }
}

/// Returns true if the user wants to delete \a messages; otherwise returns false.
bool isWanted(const Headlines &messages)
{
    const auto isFavorite = [](const MessageHeadline &message) { return message.isFavorite; };
    const int favorites = int(std::count_if(messages.begin(), messages.end(), isFavorite));
    const QString what = messages.size() == 1 ? shownTitle(messages.constFirst().title)
                                              : countedMessages(int(messages.size()));
    const QString among =
        favorites == 0 ? QString() : QStringLiteral(", %1 among them").arg(countedFavorites(favorites));
    const auto answer = ask(QStringLiteral("Delete %1%2? [y/N] ").arg(what, among));
    return answer && answer->startsWith(QLatin1Char('y'), Qt::CaseInsensitive);
}

void remove(const Store &store, const Headlines &messages, Output &output)
{
    QStringList uris;
    for (const MessageHeadline &message : messages)
        uris.append(message.uri);
    RemovalReport report(output);
    const Result<void> removed = Messages(store).remove(uris, report.step());
    if (removed || report.messages() > 0)
        output.report(QStringLiteral("Deleted: %1, %2")
                          .arg(countedMessages(report.messages()), countedFiles(report.files())),
                      report.json());
    if (!removed)
        output.failure(removed.error());
}

void deleteMessages(const Store &store, const Arguments &arguments, Output &output)
{
    const Headlines messages = chooseMessages(store, arguments.names, output);
    const bool asks = canAsk() && !arguments.isSet("yes") && output.style() == Output::Text;
    if (messages.isEmpty())
        return;
    if (arguments.isSet("dry-run"))
        show(messages, output);
    else if (!asks || isWanted(messages))
        remove(store, messages, output);
    else
        output.line(QStringLiteral("Not deleted"));
}

} // namespace

const Command deleteCommand = {
    "delete",
    "MESSAGE...",
    "Delete messages with their downloaded files. Asks before, on a terminal. A refresh does not bring them back.",
    someMessages,
    1,
    anyNumber,
    {{"dry-run", nullptr, "Shows what would be deleted, and deletes nothing."},
     {"yes", nullptr, "Deletes without asking."}},
    {"tidel delete 3 4", "tidel delete https://garden.example.com/beans.html --yes"},
    deleteMessages};

} // namespace Tidel
