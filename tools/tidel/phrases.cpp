// SPDX-License-Identifier: LGPL-2.1-or-later
#include "phrases.h"

namespace Tidel {

namespace {

QString counted(int count, const char *noun)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(noun),
                                         QLatin1String(count == 1 ? "" : "s"));
}

} // namespace

QString countedMessages(int count) { return counted(count, "message"); }

QString countedEnclosures(int count) { return counted(count, "enclosure"); }

QString countedFiles(int count) { return counted(count, "file"); }

QString shownTime(const QDateTime &time)
{
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"))
                          : QStringLiteral("(no date)");
}

QString noChannelsHint() { return QStringLiteral("No channels yet; \"tidel subscribe FILE\" adds one."); }

QString noSuchMessage(const QString &name)
{
    return QStringLiteral("%1: no such message; \"tidel messages CHANNEL\" lists them with their links")
        .arg(name);
}

QString shownTitle(const QString &title) { return title.isEmpty() ? QStringLiteral("(no title)") : title; }

} // namespace Tidel
