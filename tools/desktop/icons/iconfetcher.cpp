// SPDX-License-Identifier: LGPL-2.1-or-later
#include "iconfetcher.h"

#include "iconsearch.h"

namespace Tidel {

namespace {

constexpr int maximumAtOnce = 2; // Nobody waits for an icon.

} // namespace

IconFetcher::IconFetcher(QObject *parent) : QObject(parent) { }

void IconFetcher::fetch(const QString &uri, const IconPlaces &places)
{
    if (m_places.contains(uri))
        return;
    m_places.insert(uri, places);
    m_waiting.enqueue(uri);
    startNext();
}

void IconFetcher::stop()
{
    m_places.clear();
    m_waiting.clear();
    qDeleteAll(std::exchange(m_searches, {}));
}

void IconFetcher::startNext()
{
    while (!m_waiting.isEmpty() && m_searches.size() < maximumAtOnce) {
        const QString uri = m_waiting.dequeue();
        auto *search = new IconSearch(&m_network, m_places.value(uri), &m_missing, this);
        m_searches.append(search);
        // Queued, so that a long row of searches that ask nobody does not nest.
        connect(
            search, &IconSearch::ended, this,
            [this, search, uri](const QImage &icon, bool isAnswered) {
                // stop() has deleted it.
                if (!m_searches.removeOne(search))
                    return;
                m_places.remove(uri);
                if (!isRunning())
                    m_missing.clear();
                search->deleteLater();
                Q_EMIT ended(uri, icon, isAnswered);
                startNext();
            },
            Qt::QueuedConnection);
        search->start();
    }
}

} // namespace Tidel
