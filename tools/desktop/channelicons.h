// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_CHANNELICONS_H
#define TIDEL_DESKTOP_CHANNELICONS_H

#include "iconfetcher.h"

#include <QIcon>

namespace Tidel {

class Archive;

/// The icons of the channels of an archive. Those that are not known are looked for once a week.
class ChannelIcons : public QObject
{
    Q_OBJECT

public:
    explicit ChannelIcons(Archive *archive, QObject *parent = nullptr);

    /// Returns true if there are icons; otherwise returns false, which is the default.
    bool isEnabled() const { return m_isEnabled; }
    /// Sets isEnabled(). Without icons, no server is asked for one.
    void setEnabled(bool isEnabled);
    /// The icon of the channel \a uri; null if there is none.
    QIcon icon(const QString &uri) const;
    /// Returns true if servers are being asked; otherwise returns false.
    bool isLooking() const { return m_fetcher.isRunning(); }
    /// Asks servers for the icons that are due.
    void look();

Q_SIGNALS:
    /// A channel has another icon.
    void changed();

private:
    void keep(const QString &uri, const QImage &icon, bool isAnswered);
    void forget(const QStringList &uris);

    Archive *const m_archive;
    IconFetcher m_fetcher;
    mutable QHash<QString, QIcon> m_icons; // Of the rows that were shown.
    QSet<QString> m_unanswered; // They are asked again in the next run, when the network may be there.
    bool m_isEnabled = false;
};

} // namespace Tidel

#endif
