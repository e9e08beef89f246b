// SPDX-License-Identifier: LGPL-2.1-or-later
#include "headlinecache_p.h"

namespace Tidel {

Result<void> HeadlineCache::readPage(const Store &store, const UriList &rows, int row)
{
    const int first = row - row % pageSize;
    QStringList unknown;
    for (int i = first; i < qMin(first + pageSize, rows.size()); ++i) {
        const QString uri = rows.at(i);
        if (!m_headlines.contains(uri))
            unknown.append(uri);
    }
    const auto read = MessageList(store).headlines(unknown);
    add(read.value_or(QList<MessageHeadline>()));
    for (const QString &uri : qAsConst(unknown)) {
        MessageHeadline nothing;
        nothing.uri = uri;
        if (!m_headlines.contains(uri))
            add({nothing});
    }
    return read.map([](const QList<MessageHeadline> &) {});
}

void HeadlineCache::add(const QList<MessageHeadline> &headlines)
{
    for (const MessageHeadline &headline : headlines)
        m_headlines.insert(headline.uri, new MessageHeadline(headline));
}

void HeadlineCache::forget(const QStringList &uris)
{
    for (const QString &uri : uris)
        m_headlines.remove(uri);
}

} // namespace Tidel
