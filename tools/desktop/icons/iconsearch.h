// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ICONSEARCH_H
#define TIDEL_DESKTOP_ICONSEARCH_H

#include "iconplaces.h"

#include <QImage>
#include <QObject>
#include <QSet>

#include <functional>

QT_FORWARD_DECLARE_CLASS(QNetworkAccessManager)
QT_FORWARD_DECLARE_CLASS(QNetworkReply)

namespace Tidel {

/**
 * Looks for the icon of one channel: at the addresses that its feed names, in the page of its website, and at
 * the usual place. Servers learn nothing of the user. What comes from them is limited in time and size, and
 * read on other threads.
 */
class IconSearch : public QObject
{
    Q_OBJECT

public:
    /// \a missing are addresses where nothing is. They are not asked, and more of them are added.
    IconSearch(QNetworkAccessManager *network, const IconPlaces &places, QSet<QUrl> *missing,
               QObject *parent = nullptr);

    void start() { tryNext(); }

Q_SIGNALS:
    /// The best icon is \a icon, or null if there is none. \a isAnswered is false if no server has answered,
    /// so that there may be an icon.
    void ended(const QImage &icon, bool isAnswered);

private:
    using Use = std::function<void(const QByteArray &bytes, const QUrl &address)>;
    /// How an answer is taken.
    struct Taking
    {
        Use use;
        bool needsAll; ///< If the answer is too large, its beginning is not enough.
        int redirects; ///< How many may be followed.
    };

    void tryNext();
    bool mayAsk(const QUrl &address);
    void fetch(const QUrl &address, const Taking &taking);
    void finish(QNetworkReply *reply, const QByteArray &beginning, const Taking &taking);
    void follow(const QUrl &target, const Taking &taking);
    void useIcon(const QByteArray &bytes);
    void usePage(const QByteArray &bytes, const QUrl &address);

    QNetworkAccessManager *const m_network;
    const IconPlaces m_places;
    QSet<QUrl> *const m_missing;
    QList<QUrl> m_next; // Where the icon may be.
    QSet<QUrl> m_asked;
    bool m_hasReadPage = false;
    bool m_isAnswered = false;
};

} // namespace Tidel

#endif
