// SPDX-License-Identifier: LGPL-2.1-or-later
#include "headlinelist.h"

#include "jsonobjects.h"
#include "lastlist.h"
#include "output.h"
#include "phrases.h"
#include "table.h"

namespace Tidel {

namespace {

constexpr int leastColumns = 12;

/// Returns true if the messages are of different channels; otherwise returns false.
bool areOfSeveralChannels(const QList<MessageHeadline> &messages)
{
    for (const MessageHeadline &message : messages) {
        if (message.channels != messages.constFirst().channels)
            return true;
    }
    return false;
}

} // namespace

QString shownMarks(const MessageHeadline &message)
{
    return QString(message.isRead ? QLatin1Char(' ') : QChar(0x2022))
        + QLatin1Char(message.isFavorite ? '*' : ' ');
}

void showHeadlines(const QList<MessageHeadline> &messages, bool withUris, Output &output)
{
    const bool showsChannels = areOfSeveralChannels(messages);
    Table table({0});
    // The title gives way first, then the channel.
    table.setElastic(showsChannels ? QVector<int>{4, 3} : QVector<int>{3}, leastColumns);
    QStringList uris;
    for (const MessageHeadline &message : messages) {
        uris.append(message.uri);
        QStringList row{QString::number(uris.size()), shownMarks(message), shownTime(message.published)};
        if (showsChannels)
            row.append(message.channels.join(QLatin1String(", ")));
        row.append(shownTitle(message.title));
        if (withUris)
            row.append(message.uri);
        else if (output.height() == 0)
            row.append(message.link);
        table.addRow(row);
        output.object(headlineJson(message));
    }
    if (output.style() == Output::Text && !uris.isEmpty())
        LastList(LastList::Messages).remember(uris);
    output.table(table);
}

} // namespace Tidel
