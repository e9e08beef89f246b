// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_PICTURELOADER_H
#define TIDEL_DESKTOP_PICTURELOADER_H

#include <QImage>
#include <QNetworkAccessManager>
#include <QQueue>
#include <QSet>
#include <QUrl>

QT_FORWARD_DECLARE_CLASS(QNetworkReply)

namespace Tidel {

/**
 * Fetches the pictures of one article at a time, and decodes them on other threads. Servers get no cookies,
 * no user name and no address of a page. A picture that breaks a limit is left out.
 */
class PictureLoader : public QObject
{
    Q_OBJECT

public:
    explicit PictureLoader(QObject *parent = nullptr);

    /// Fetches \a address, which is http, https or data, unless it was asked for already.
    void fetch(const QUrl &address);
    /// Stops what is under way, and forgets what was asked for.
    void reset();

Q_SIGNALS:
    /// The picture at \a address is ready.
    void fetched(const QUrl &address, const QImage &picture);

private:
    void startNext();
    void start(const QUrl &address);
    void finish(QNetworkReply *reply, const QUrl &address);
    void decode(const QUrl &address, const QByteArray &bytes);
    void receive(const QUrl &address, const QImage &picture);

    QNetworkAccessManager m_network;
    QQueue<QUrl> m_waiting;
    QSet<QUrl> m_known;
    QSet<QNetworkReply *> m_replies;
    qint64 m_bytes = 0; // of the decoded pictures
    int m_round = 0; // What was begun before reset() arrives too late.
};

/// The picture in \a bytes, reduced to what a screen shows; null if it is none, or too large to be decoded.
QImage decodedPicture(const QByteArray &bytes);

} // namespace Tidel

#endif
