// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagefinder.h"

#include "candidates.h"
#include "lastlist.h"
#include "output.h"
#include "phrases.h"

#include <TidelReader/messages.h>

namespace Tidel {

namespace {

Error noSuchMessage() { return Error(Error::NotFound, {}, QStringLiteral("no such message")); }

Result<MessageHeadline> headlineOf(const Store &store, const QString &uri)
{
    return MessageList(store).headlines({uri}).and_then(
        [](const QList<MessageHeadline> &found) -> Result<MessageHeadline> {
            if (found.isEmpty())
                return Failure(noSuchMessage());
            return found.first();
        });
}

std::optional<MessageHeadline> reported(const Result<MessageHeadline> &message, const QString &name,
                                        Output &output)
{
    if (message)
        return *message;
    output.failure(name, message.error(), messageAdvice(message.error()));
    return std::nullopt;
}

void reportCandidates(const QString &name, const QList<MessageHeadline> &found, Output &output)
{
    QList<Candidate> candidates;
    for (const MessageHeadline &message : found)
        candidates.append({message.uri, message.link,
                           QStringLiteral("%1  %2  %3")
                               .arg(shownTime(message.published), message.channels.join(QLatin1String(", ")),
                                    shownTitle(message.title))});
    showCandidates(name, "messages", LastList::Messages, candidates, output);
}

/// Looks for a message whose title is, or contains, \a name.
std::optional<MessageHeadline> chooseByTitle(const Store &store, const QString &name, Output &output)
{
    Result<QList<MessageHeadline>> found = MessageList(store).titled(name, maximumCandidates + 1);
    if (!found) {
        output.failure(name, found.error());
        return std::nullopt;
    }
    if (found->size() > 1) {
        reportCandidates(name, *found, output);
        return std::nullopt;
    }
    // A number is a row or a whole title, not any digits of one.
    const bool isMeant = found->size() == 1
        && (LastList::rowNumber(name) == 0
            || found->constFirst().title.compare(name, Qt::CaseInsensitive) == 0);
    return reported(isMeant ? Result<MessageHeadline>(found->constFirst()) : Failure(noSuchMessage()), name,
                    output);
}

} // namespace

std::optional<MessageHeadline> chooseMessage(const Store &store, const QString &name, Output &output)
{
    const int row = LastList::rowNumber(name);
    const LastList list(LastList::Messages);
    const QString uri = row > 0 ? list.uri(row) : QString();
    if (!uri.isEmpty())
        return reported(headlineOf(store, uri), name, output);
    if (row > 0 && list.size() > 0) {
        output.error(beyondList(row, list.size(), "messages"));
        return std::nullopt;
    }
    const Result<QString> named = Messages(store).uri(name);
    if (!named && named.error().kind() == Error::NotFound)
        return chooseByTitle(store, name, output);
    return reported(named.and_then([&store](const QString &found) { return headlineOf(store, found); }), name,
                    output);
}

QList<MessageHeadline> chooseMessages(const Store &store, const QStringList &names, Output &output)
{
    QList<MessageHeadline> chosen;
    QSet<QString> uris;
    for (const QString &name : names) {
        const auto message = chooseMessage(store, name, output);
        if (!message || uris.contains(message->uri))
            continue;
        uris.insert(message->uri);
        chosen.append(*message);
    }
    return chosen;
}

} // namespace Tidel
