// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "messagetext.h"
#include "output.h"
#include "phrases.h"

#include <TidelReader/messages.h>

namespace Tidel {

namespace {

QList<WholeMessage> readMessages(const Store &store, const QStringList &names, Output &output)
{
    QList<WholeMessage> messages;
    for (const QString &name : names) {
        const Result<WholeMessage> message = Messages(store).uri(name).and_then(
            [&store](const QString &uri) { return readMessage(store, uri); });
        if (message)
            messages.append(*message);
        else
            output.failure(name, message.error(), messageAdvice(message.error()));
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
    if (arguments.isSet("html") && arguments.isSet("json"))
        return QStringLiteral("give --html or --json, not both");
    const bool isWidth = !arguments.isSet("width") || arguments.value("width").toInt() >= 20;
    return isWidth ? QString() : QStringLiteral("give a number of columns, 20 or more: --width N");
}

void showMessages(const Store &store, const Arguments &arguments, Output &output)
{
    const QList<WholeMessage> messages = readMessages(store, arguments.names, output);
    const int width = arguments.isSet("width") ? arguments.value("width").toInt() : output.width();
    for (const WholeMessage &message : messages)
        output.object(messageJson(message));
    if (output.style() == Output::Text)
        output.page(shownLines(messages, arguments.isSet("html"), width));
}

} // namespace

const Command showCommand = {
    "show",
    "MESSAGE... [--html] [--width N]",
    "Show what messages say, as text that fits the terminal.",
    "The links or URIs of messages.",
    1,
    anyNumber,
    {{"html", nullptr, "Shows the text as the feed has it."},
     {"width", "N", "The number of columns; by default those of the terminal, or 80."}},
    {"tidel show https://garden.example.com/beans.html",
     "tidel show https://garden.example.com/beans.html --width 60"},
    showMessages,
    misuseOfShow};

} // namespace Tidel
