// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commands.h"

#include "messagetext.h"
#include "output.h"
#include "phrases.h"

#include <QJsonArray>
#include <QJsonDocument>

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

QByteArray json(const QList<WholeMessage> &messages)
{
    QJsonArray array;
    for (const WholeMessage &message : messages)
        array.append(messageJson(message));
    return QJsonDocument(array).toJson();
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

} // namespace

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
    if (arguments.isSet("json"))
        output.document(json(messages));
    else
        output.page(shownLines(messages, arguments.isSet("html"), width));
}

} // namespace Tidel
