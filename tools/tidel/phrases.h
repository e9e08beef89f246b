// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PHRASES_H
#define TIDEL_PHRASES_H

#include <QDateTime>
#include <QString>

namespace Tidel {

class Error;

/// "1 message", "2 messages".
QString countedMessages(int count);
QString countedNewMessages(int count);
QString countedEnclosures(int count);
QString countedFiles(int count);

/// "3 channels".
QString countedChannels(int count);

/// \a time in local time, "2026-11-03 10:00"; "(no date)" if it is invalid.
QString shownTime(const QDateTime &time);

/// What to do if a message was not found, to be appended to the text of \a error; otherwise empty.
QString messageAdvice(const Error &error);

/// \a address without its password.
QString shownAddress(const QString &address);

/// "[######..............] 60/200 feeds".
QString shownProgress(int done, int all, const char *nouns);

/// \a title; "(no title)" if it is empty.
QString shownTitle(const QString &title);

} // namespace Tidel

#endif
