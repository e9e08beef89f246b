// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "changes.h"
#include "messagefinder.h"
#include "messagetext.h"
#include "output.h"
#include "phrases.h"

#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

namespace Tidel {

namespace {

QList<WholeMessage> readMessages(const Store &store, const QStringList &names, Output &output)
{
    QList<WholeMessage> messages;
    const QList<MessageHeadline> chosen = chooseMessages(store, names, output);
    for (const MessageHeadline &headline : chosen) {
        const Result<WholeMessage> message = readMessage(store, headline);
        if (message)
            messages.append(*message);
        else
            output.failure(shownTitle(headline.title), message.error());
    }
    return messages;
}

QStringList shownLines(const QList<WholeMessage> &messages, bool isHtml, int width)
{
    QStringList lines;
    for (const WholeMessage &message : messages) {
        if (!lines.isEmpty())
            lines << QString() << QString();
        lines += isHtml ? htmlOf(message).split(QLatin1Char('\n')) : messageLines(message, width);
    }
    return lines;
}

QString misuseOfShow(const Arguments &arguments)
{
    const bool isChanges = arguments.isSet("changes");
    if (isChanges && (arguments.isSet("html") || arguments.isSet("json")))
        return QStringLiteral("--changes cannot be given with --html or --json");
    if (arguments.isSet("html") && arguments.isSet("json"))
        return QStringLiteral("give --html or --json, not both");
    const bool isWidth = !arguments.isSet("width") || arguments.value("width").toInt() >= 20;
    return isWidth ? QString() : QStringLiteral("give a number of columns, 20 or more: --width N");
}

void showChanges(const Store &store, const QList<WholeMessage> &messages, int width, Output &output)
{
    QStringList lines;
    for (const WholeMessage &message : messages) {
        const auto versions = Messages(store).earlierVersions(message.headline.uri);
        if (!versions) {
            output.failure(shownTitle(message.headline.title), versions.error());
            continue;
        }
        if (!lines.isEmpty())
            lines << QString() << QString();
        lines += changeLines(message, *versions, width);
    }
    output.page(lines);
}

void markAsRead(const Store &store, const QList<WholeMessage> &messages, Output &output)
{
    QStringList uris;
    for (const WholeMessage &message : messages) {
        if (!message.headline.isRead)
            uris.append(message.headline.uri);
    }
    const Result<int> marked = uris.isEmpty() ? 0 : ReadState(store).set(uris, true);
    if (!marked)
        output.failure(marked.error());
}

void showMessages(const Store &store, const Arguments &arguments, Output &output)
{
    const QList<WholeMessage> messages = readMessages(store, arguments.names, output);
    const int width = arguments.isSet("width") ? arguments.value("width").toInt() : output.width();
    for (const WholeMessage &message : messages)
        output.object(messageJson(message));
    // What another program gets was not read by a person.
    if (output.style() == Output::Json)
        return;
    if (arguments.isSet("changes"))
        showChanges(store, messages, width, output);
    else
        output.page(shownLines(messages, arguments.isSet("html"), width));
    markAsRead(store, messages, output);
}

} // namespace

const Command showCommand = {
    "show",
    "MESSAGE... [--html | --changes] [--width N]",
    "Show what messages say, as text that fits the terminal, and mark them as read.",
    someMessages,
    1,
    anyNumber,
    {{"html", nullptr, "Shows the text as the feed has it."},
     {"changes", nullptr, "Shows what the last change has [-removed-] and {+added+}."},
     {"width", "N", "The number of columns; by default those of the terminal, or 80."}},
    {"tidel show 3", "tidel show \"runner beans\" --changes",
     "tidel show https://garden.example.com/beans.html --width 60"},
    showMessages,
    misuseOfShow};

} // namespace Tidel
