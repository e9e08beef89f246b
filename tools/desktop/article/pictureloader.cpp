// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pictureloader.h"

#include "anonymousrequest.h"

#include <TidelReader/promise.h>

#include <QBuffer>
#include <QFutureWatcher>
#include <QImageReader>
#include <QNetworkReply>
#include <QThreadPool>
#include <QTimer>

#include <memory>

namespace Tidel {

namespace {

constexpr int maximumAtOnce = 6;
constexpr qint64 maximumSize = 8LL * 1024 * 1024;
constexpr int maximumSeconds = 60;
constexpr int maximumRedirects = 5;
constexpr qint64 maximumPixels = 32LL * 1024 * 1024;
constexpr int maximumSide = 2048;
constexpr qint64 maximumBytesOfArticle = 96LL * 1024 * 1024;

QNetworkRequest requestFor(const QUrl &address)
{
    QNetworkRequest request = anonymousRequest(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(maximumRedirects);
    return request;
}

QByteArray bytesOfData(const QUrl &address)
{
    const QByteArray text = address.toEncoded();
    return QByteArray::fromBase64(QByteArray::fromPercentEncoding(text.mid(text.indexOf(',') + 1)));
}

} // namespace

QImage decodedPicture(const QByteArray &bytes)
{
    static const QList<QByteArray> formats{"png", "jpeg", "gif", "webp"};
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!formats.contains(reader.format()) || size.isEmpty()
        || qint64(size.width()) * size.height() > maximumPixels)
        return {};
    if (size.width() > maximumSide || size.height() > maximumSide)
        reader.setScaledSize(size.scaled(maximumSide, maximumSide, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}

PictureLoader::PictureLoader(QObject *parent) : QObject(parent) { }

void PictureLoader::fetch(const QUrl &address)
{
    if (m_known.contains(address))
        return;
    m_known.insert(address);
    m_waiting.enqueue(address);
    // The caller is drawing now.
    QTimer::singleShot(0, this, &PictureLoader::startNext);
}

void PictureLoader::reset()
{
    ++m_round;
    m_waiting.clear();
    m_known.clear();
    m_bytes = 0;
    const QSet<QNetworkReply *> replies = std::exchange(m_replies, {});
    for (QNetworkReply *reply : replies)
        reply->abort();
}

void PictureLoader::startNext()
{
    while (!m_waiting.isEmpty() && m_replies.size() < maximumAtOnce && m_bytes < maximumBytesOfArticle)
        start(m_waiting.dequeue());
}

void PictureLoader::start(const QUrl &address)
{
    if (address.scheme() == QLatin1String("data"))
        return decode(address, bytesOfData(address));
    QNetworkReply *reply = m_network.get(requestFor(address));
    m_replies.insert(reply);
    connect(reply, &QNetworkReply::readyRead, this, [reply] {
        if (reply->bytesAvailable() > maximumSize)
            reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply, address] { finish(reply, address); });
    QTimer::singleShot(maximumSeconds * 1000, reply, &QNetworkReply::abort);
}

void PictureLoader::finish(QNetworkReply *reply, const QUrl &address)
{
    reply->deleteLater();
    // reset() has forgotten it.
    if (!m_replies.remove(reply))
        return;
    if (reply->error() == QNetworkReply::NoError && reply->bytesAvailable() <= maximumSize)
        decode(address, reply->readAll());
    startNext();
}

void PictureLoader::decode(const QUrl &address, const QByteArray &bytes)
{
    const auto promise = std::make_shared<Promise<QImage>>();
    auto *watcher = new QFutureWatcher<QImage>(this);
    connect(watcher, &QFutureWatcher<QImage>::finished, this, [this, watcher, address, round = m_round] {
        watcher->deleteLater();
        if (round == m_round && watcher->future().resultCount() > 0)
            receive(address, watcher->result());
    });
    watcher->setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, bytes] {
        promise->add(decodedPicture(bytes));
        promise->finish();
    });
}

void PictureLoader::receive(const QUrl &address, const QImage &picture)
{
    m_bytes += picture.sizeInBytes();
    if (!picture.isNull() && m_bytes <= maximumBytesOfArticle)
        Q_EMIT fetched(address, picture);
}

} // namespace Tidel
