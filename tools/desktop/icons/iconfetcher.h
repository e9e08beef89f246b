// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ICONFETCHER_H
#define TIDEL_DESKTOP_ICONFETCHER_H

#include "iconplaces.h"

#include <QHash>
#include <QImage>
#include <QNetworkAccessManager>
#include <QQueue>
#include <QSet>

namespace Tidel {

class IconSearch;

/// Looks for the icons of channels, two at a time.
class IconFetcher : public QObject
{
    Q_OBJECT

public:
    explicit IconFetcher(QObject *parent = nullptr);

    /// Looks for the icon of the channel \a uri at \a places, unless that is under way.
    void fetch(const QString &uri, const IconPlaces &places);
    /// Returns true if a channel waits or is looked for; otherwise returns false.
    bool isRunning() const { return !m_places.isEmpty(); }
    /// Stops what is under way, and forgets what waits.
    void stop();

Q_SIGNALS:
    /// The search for the icon of the channel \a uri has ended; as IconSearch::ended().
    void ended(const QString &uri, const QImage &icon, bool isAnswered);

private:
    void startNext();

    QNetworkAccessManager m_network;
    QHash<QString, IconPlaces> m_places; // Of the channels that wait or are looked for.
    QQueue<QString> m_waiting;
    QSet<QUrl> m_missing; // Where nothing is, as long as channels wait. Many may have one website.
    QList<IconSearch *> m_searches;
};

} // namespace Tidel

#endif
