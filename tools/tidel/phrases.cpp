// SPDX-License-Identifier: LGPL-2.1-or-later
#include "phrases.h"

namespace Tidel {

QString countedMessages(int count)
{
    return count == 1 ? QStringLiteral("1 message") : QStringLiteral("%1 messages").arg(count);
}

QString shownTime(const QDateTime &time)
{
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"))
                          : QStringLiteral("(no date)");
}

QString noChannelsHint() { return QStringLiteral("No channels yet; \"tidel subscribe FILE\" adds one."); }

QString shownTitle(const QString &title) { return title.isEmpty() ? QStringLiteral("(no title)") : title; }

} // namespace Tidel
