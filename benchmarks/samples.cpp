// SPDX-License-Identifier: LGPL-2.1-or-later
#include "samples.h"

FeedChannel sampleChannel(int number)
{
    FeedChannel channel;
    channel.setLink(QStringLiteral("https://feeds.example.org/%1.xml").arg(number));
    channel.setTitle(QStringLiteral("Channel %1").arg(number));
    channel.setType(QStringLiteral("rss"));
    return channel;
}

QList<FeedMessage> sampleMessages(int first, int count)
{
    const QDateTime start = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
    const QString body =
        QStringLiteral("<p>A <em>paragraph</em> with \"quotes\" &amp; a <a href='#'>link</a>.</p>");
    QList<FeedMessage> messages;
    for (int number = first; number < first + count; ++number) {
        FeedMessage message;
        message.setTitle(QStringLiteral("What happened on day %1").arg(number));
        message.setLink(QStringLiteral("https://www.example.org/articles/%1/what-happened").arg(number));
        message.setDescription(body.repeated(14));
        message.setSummary(QStringLiteral("A short summary of day %1.").arg(number));
        message.setPublishedDate(start.addSecs(number * 600LL));
        messages.append(message);
    }
    return messages;
}
