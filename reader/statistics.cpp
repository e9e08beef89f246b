// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statistics.h"

#include "statements_p.h"
#include "store_p.h"
#include "storedatabase.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QSparqlResult>

namespace Tidel {

namespace {

qint64 sizeOfFolder(const QString &folder)
{
    qint64 size = 0;
    for (QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         files.hasNext();) {
        files.next();
        size += files.fileInfo().size();
    }
    return size;
}

} // namespace

Statistics::Statistics(const Store &store) : m_store(store) { }

Result<Statistics::Totals> Statistics::totals() const
{
    Totals totals;
    int read = 0;
    const std::pair<QSparqlQuery, int *> counts[] = {
        {Statements::countOf(Statements::Kind::Channel), &totals.channels},
        {Statements::countOf(Statements::Kind::Message), &totals.messages},
        {Statements::countOfRead(), &read},
        {Statements::countOfFavorites(), &totals.favorites},
        {Statements::countOf(Statements::Kind::Enclosure), &totals.enclosures},
        {Statements::countOfLocalCopies(), &totals.downloaded},
    };
    for (const auto &[statement, count] : counts) {
        const Result<int> number = StorePrivate::of(m_store).number(statement, "count what is in the store");
        if (!number)
            return Failure(number.error());
        *count = *number;
    }
    totals.unread = totals.messages - read;
    totals.storeSize = sizeOfFolder(QFileInfo(StoreDatabase::folder()).path());
    return totals;
}

Result<QHash<QString, QDateTime>> Statistics::newestMessages() const
{
    return StorePrivate::of(m_store)
        .run(Statements::newestMessages(), "read the dates of messages from the store")
        .map([](const Answer &answer) {
            QHash<QString, QDateTime> dates;
            // The greatest date is a number of seconds.
            while (answer->next())
                dates.insert(answer->value(0).toString(),
                             QDateTime::fromSecsSinceEpoch(answer->value(1).toLongLong(), Qt::UTC));
            return dates;
        });
}

Result<QMap<QDate, int>> Statistics::messagesPerDay(int days) const
{
    const QDate today = QDate::currentDate();
    QMap<QDate, int> counts;
    for (int i = 0; i < days; ++i)
        counts.insert(today.addDays(-i), 0);
    const QDateTime since = today.addDays(1 - days).startOfDay();
    return StorePrivate::of(m_store)
        .run(Statements::datesSince(since), "read the dates of messages from the store")
        .map([&](const Answer &answer) {
            while (answer->next()) {
                const QDate day = answer->value(0).toDateTime().toLocalTime().date();
                const auto count = counts.find(day);
                if (count != counts.end())
                    ++*count;
            }
            return counts;
        });
}

} // namespace Tidel
