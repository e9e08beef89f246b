// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "headlinelist.h"
#include "listfilter.h"
#include "output.h"
#include "phrases.h"
#include "searchprogress.h"

namespace Tidel {

namespace {

/// The number of messages that fit on the terminal, with the prompt and a line that there are more; 0, which
/// means all, if the results go elsewhere.
int screenful(const Output &output)
{
    constexpr int least = 5;
    constexpr int otherLines = 2;
    const int height = output.height();
    return height > 0 && output.style() == Output::Text ? qMax(least, height - otherLines) : 0;
}

MessageQuery queryOf(const MessageFilter &filter, const Arguments &arguments, int limit)
{
    MessageQuery query;
    static_cast<MessageFilter &>(query) = filter;
    query.words = arguments.value("search");
    query.limit = limit > 0 ? limit + 1 : 0; // one more, to see whether there are more
    return query;
}

QString nothingFound(const Arguments &arguments)
{
    for (const char *option : {"folder", "unread", "favorites", "since", "until", "search"}) {
        if (arguments.isSet(option))
            return QStringLiteral("No message is like this.");
    }
    return arguments.names.isEmpty()
        ? QStringLiteral("There are no messages; \"tidel subscribe FILE|URL\" adds a channel.")
        : QStringLiteral("%1: no messages").arg(arguments.names.join(QLatin1String(", ")));
}

void listMessages(const Store &store, const Arguments &arguments, Output &output)
{
    const auto filter = messageFilter(store, arguments.names, arguments, output);
    if (!filter)
        return;
    const int limit = limitOf(arguments, screenful(output));
    auto messages = MessageList(store).find(queryOf(*filter, arguments, limit), searchProgress(output));
    if (!messages) {
        output.failure(messages.error());
        return;
    }
    if (messages->isEmpty())
        output.note(nothingFound(arguments));
    const bool areMore = limit > 0 && messages->size() > limit;
    if (areMore)
        messages->removeLast();
    showHeadlines(*messages, arguments.isSet("uri"), output);
    if (areMore && !arguments.isSet("limit"))
        output.note(QStringLiteral("There are more; --limit N shows N messages."));
}

std::vector<Option> options()
{
    std::vector<Option> options = filterOptions();
    options.push_back({"search", "WORDS", "Only messages with these words, as \"tidel search\" takes them."});
    options.push_back({"limit", "N",
                       "The number of messages; by default a screenful, or all if the list does not "
                       "go to a terminal."});
    options.push_back({"uri", nullptr, "Shows the URIs of the messages."});
    return options;
}

} // namespace

const Command messagesCommand = {
    "messages",
    "[CHANNEL...] [OPTION...]",
    "List the messages of all channels or of some, newest first; a dot marks unread ones, * favorites.",
    someChannels,
    0,
    anyNumber,
    options(),
    {"tidel messages --unread", "tidel messages \"Garden Notes\" --since 7d",
     "tidel messages --folder News --limit 100"},
    listMessages,
    misuseOfFilter};

} // namespace Tidel
