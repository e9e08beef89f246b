// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PHRASES_H
#define TIDEL_PHRASES_H

#include <QDateTime>
#include <QString>

namespace Tidel {

class Error;

/// Returns "1 message", "2 messages" and so on.
QString countedMessages(int count);
/// Returns "1 new message", "2 new messages" and so on.
QString countedNewMessages(int count);
/// Returns "3 new, 1 changed", "3 new", "1 changed" or "nothing new".
QString countedNews(int added, int changed);
/// Returns "1 enclosure", "2 enclosures" and so on.
QString countedEnclosures(int count);
/// Returns "1 file", "2 files" and so on.
QString countedFiles(int count);
/// Returns "1 channel", "2 channels" and so on.
QString countedChannels(int count);

/// Returns "1 favorite", "2 favorites" and so on.
QString countedFavorites(int count);

/// Returns \a time in local time, such as "2026-11-03 10:00"; "(no date)" if it is invalid.
QString shownTime(const QDateTime &time);
/// Returns \a bytes such as "980 bytes" or "12.40 MiB".
QString shownSize(qint64 bytes);
/// Returns "DONE: PATH (SIZE)", such as "Downloaded: /home/me/7.mp3 (35.70 MiB)".
QString shownFile(const char *done, const QString &path, qint64 bytes);
/// Returns \a seconds such as "42:07" or "1:02:30".
QString shownDuration(int seconds);

/// Returns the advice for \a error if a message was not found; otherwise returns an empty text.
QString messageAdvice(const Error &error);

/// Returns the advice for \a error if the database is damaged; otherwise returns an empty text.
QString damageAdvice(const Error &error);

/// Returns a progress bar such as "[######..............] 60/200 feeds".
QString shownProgress(int done, int all, const char *nouns);

/// Returns \a title; "(no title)" if it is empty.
QString shownTitle(const QString &title);

} // namespace Tidel

#endif
