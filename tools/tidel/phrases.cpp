// SPDX-License-Identifier: LGPL-2.1-or-later
#include "phrases.h"

#include <QLocale>
#include <QStringList>
#include <QTime>

#include <TidelReader/error.h>

namespace Tidel {

namespace {

QString counted(int count, const char *noun)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(noun),
                                         QLatin1String(count == 1 ? "" : "s"));
}

} // namespace

QString countedMessages(int count) { return counted(count, "message"); }

QString countedNewMessages(int count) { return counted(count, "new message"); }

QString countedNews(int added, int changed)
{
    QStringList parts;
    if (added > 0)
        parts.append(QStringLiteral("%1 new").arg(added));
    if (changed > 0)
        parts.append(QStringLiteral("%1 changed").arg(changed));
    return parts.isEmpty() ? QStringLiteral("nothing new") : parts.join(QLatin1String(", "));
}

QString countedEnclosures(int count) { return counted(count, "enclosure"); }

QString countedFiles(int count) { return counted(count, "file"); }

QString countedChannels(int count) { return counted(count, "channel"); }

QString countedFavorites(int count) { return counted(count, "favorite"); }

QString shownTime(const QDateTime &time)
{
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"))
                          : QStringLiteral("(no date)");
}

QString shownSize(qint64 bytes) { return QLocale::c().formattedDataSize(bytes); }

QString shownFile(const char *done, const QString &path, qint64 bytes)
{
    return QStringLiteral("%1: %2 (%3)").arg(QLatin1String(done), path, shownSize(bytes));
}

QString shownDuration(int seconds)
{
    const int hours = seconds / 3600;
    const QString rest = QTime(0, 0).addSecs(seconds % 3600).toString(QStringLiteral("mm:ss"));
    return hours > 0 ? QStringLiteral("%1:%2").arg(hours).arg(rest) : rest;
}

QString messageAdvice(const Error &error)
{
    return error.kind() == Error::NotFound ? QStringLiteral("; \"tidel messages\" lists the messages")
                                           : QString();
}

QString damageAdvice(const Error &error)
{
    for (const char *word : {"damaged", "Corrupt db file", "malformed", "not a database"}) {
        if (error.reason().contains(QLatin1String(word)))
            return QStringLiteral("; \"tidel check --repair\" saves what can be read of a damaged database");
    }
    return {};
}

QString shownProgress(int done, int all, const char *nouns)
{
    constexpr int width = 20;
    const int filled = all > 0 ? int(qint64(width) * done / all) : 0;
    return QStringLiteral("[%1%2] %3/%4 %5")
        .arg(QString(filled, QLatin1Char('#')), QString(width - filled, QLatin1Char('.')),
             QString::number(done), QString::number(all), QLatin1String(nouns));
}

QString shownTitle(const QString &title) { return title.isEmpty() ? QStringLiteral("(no title)") : title; }

} // namespace Tidel
