// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_HEADLINECACHE_P_H
#define TIDEL_HEADLINECACHE_P_H

#include <TidelReader/messagelist.h>

#include <QCache>

namespace Tidel {

/// The headlines of the rows that were shown last. Reads a page of rows at a time.
class HeadlineCache
{
public:
    static constexpr int pageSize = 100;

    /// The headline in \a row of \a rows if it is known; otherwise null. It is valid until the next change.
    const MessageHeadline *at(const UriList &rows, int row) const { return m_headlines.object(rows.at(row)); }
    /// Reads the page of \a row from \a store. What is not stored, or could not be read, has a headline with
    /// its URI alone, so that it is not read again and again.
    Result<void> readPage(const Store &store, const UriList &rows, int row);
    /// The messages whose headlines are known.
    QStringList uris() const { return m_headlines.keys(); }
    /// Adds \a headlines.
    void add(const QList<MessageHeadline> &headlines);
    /// Forgets the headlines of the messages \a uris.
    void forget(const QStringList &uris);
    /// Forgets all headlines.
    void clear() { m_headlines.clear(); }

private:
    static constexpr int maximumSize = 20 * pageSize;

    QCache<QString, MessageHeadline> m_headlines{maximumSize};
};

} // namespace Tidel

#endif
