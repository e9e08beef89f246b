// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PHRASES_H
#define TIDEL_PHRASES_H

#include <QDateTime>
#include <QString>

namespace Tidel {

/// "1 message", "2 messages".
QString countedMessages(int count);
QString countedNewMessages(int count);
QString countedEnclosures(int count);
QString countedFiles(int count);

/// "3 channels".
QString countedChannels(int count);

/// \a time in local time, "2026-11-03 10:00", or that there is none.
QString shownTime(const QDateTime &time);

/// That no message is called \a name.
QString noSuchMessage(const QString &name);

/// \a address without the password that it may hold.
QString shownAddress(const QString &address);

/// "[######..............] 60/200 feeds" of \a noun in the plural.
QString shownProgress(int done, int all, const char *nouns);

/// \a title, or that there is none.
QString shownTitle(const QString &title);

} // namespace Tidel

#endif
