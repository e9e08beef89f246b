// SPDX-License-Identifier: LGPL-2.1-or-later
#include "transfer.h"

#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslError>

namespace Tidel {

namespace {

constexpr int maximumRedirects = 10;
constexpr int pollInterval = 250; // In milliseconds.
constexpr qint64 chunkSize = 64LL * 1024;
// Longer validators are ignored, because they would be sent with every request.
constexpr int maximumValidatorSize = 1024;

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

QString validator(const QNetworkReply &reply, const char *header)
{
    const QByteArray value = reply.rawHeader(header);
    return value.size() > maximumValidatorSize ? QString() : QString::fromLatin1(value);
}

/// Writes all \a bytes. A write to a full disk may be incomplete; only the next write sets the error.
bool writeAll(QIODevice &target, const QByteArray &bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const qint64 more = target.write(bytes.constData() + written, bytes.size() - written);
        if (more <= 0)
            return false;
        written += more;
    }
    return true;
}

/// The outcome of a status that is not a success.
Outcome refusal(const QNetworkReply &reply)
{
    const int status = statusOf(reply);
    const QString phrase = reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    const QString hint = status == 410 ? QStringLiteral(": the file was removed permanently") : QString();
    return {status,
            QStringLiteral("the server answered %1 %2").arg(QString::number(status), phrase).trimmed()
                + hint};
}

Outcome connectionClosed()
{
    return {FeedDownloadConnectionFailed,
            QStringLiteral("the server closed the connection too early; try again later")};
}

Outcome noAnswer()
{
    return {FeedDownloadTimedOut, QStringLiteral("the server does not answer; try again later")};
}

/// The outcome of a network error.
Outcome failure(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError: return {};
    case QNetworkReply::HostNotFoundError:
        return {FeedDownloadNotFound,
                QStringLiteral("the host %1 was not found; check the address and the network connection")
                    .arg(reply.url().host())};
    case QNetworkReply::ContentNotFoundError: return {FeedDownloadNotFound, QStringLiteral("no such file")};
    case QNetworkReply::ConnectionRefusedError:
        return {FeedDownloadConnectionFailed, QStringLiteral("the server refused the connection")};
    case QNetworkReply::RemoteHostClosedError: return connectionClosed();
    case QNetworkReply::InsecureRedirectError:
    case QNetworkReply::ProtocolUnknownError:
        return {FeedDownloadUnsafeRedirect, QStringLiteral("the server redirects to an unsafe address")};
    case QNetworkReply::TooManyRedirectsError:
        return {FeedDownloadUnsafeRedirect,
                QStringLiteral("the server redirects more than %1 times").arg(maximumRedirects)};
    case QNetworkReply::TimeoutError: return noAnswer();
    default: return {FeedDownloadConnectionFailed, reply.errorString()};
    }
}

} // namespace

bool canTransfer(const QUrl &url)
{
    const QString scheme = url.scheme();
    const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    return url.isValid() && ((isWeb && !url.host().isEmpty()) || url.isLocalFile());
}

QNetworkRequest safeRequest(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Tidel/" TIDEL_VERSION));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(maximumRedirects);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    return request;
}

QString tooLarge(qint64 limit)
{
    constexpr qint64 mebibyte = 1024LL * 1024;
    return limit % mebibyte == 0
        ? QStringLiteral("the file is larger than the limit of %1 MiB").arg(limit / mebibyte)
        : QStringLiteral("the file is larger than the limit of %1 bytes").arg(limit);
}

Transfer::Transfer(QNetworkAccessManager &network, const QNetworkRequest &request,
                   const TransferLimits &limits, QIODevice &target)
    : m_target(target), m_limits(limits), m_reply(network.get(request))
{
    // Without a limit, Qt might decompress a thousand times the size of the data before bytes are counted.
    m_reply->setReadBufferSize(chunkSize);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Transfer::readHeaders);
    connect(m_reply, &QNetworkReply::readyRead, this, &Transfer::readBytes);
    connect(m_reply, &QNetworkReply::finished, this, &Transfer::finish);
    connect(m_reply, &QNetworkReply::sslErrors, this, [this](const QList<QSslError> &errors) {
        m_certificateProblem = errors.isEmpty() ? QString() : errors.first().errorString();
    });

    for (QTimer *timer : {&m_silence, &m_duration}) {
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this] {
            const QString tooSlow = QStringLiteral("the download takes too long; try again later");
            end(m_size > 0 ? Outcome{FeedDownloadTimedOut, tooSlow} : noAnswer());
        });
    }
    // Qt 6 sometimes does not tell that compressed bytes have arrived.
    connect(&m_poll, &QTimer::timeout, this, &Transfer::readBytes);
    m_poll.start(pollInterval);
    m_silence.start(limits.silence);
    m_duration.start(limits.duration);
}

Transfer::~Transfer()
{
    m_isOver = true;
    m_reply->disconnect(this);
    m_reply->abort();
    m_reply->deleteLater();
}

bool Transfer::isUnchanged() const
{
    const QNetworkRequest request = m_reply->request();
    return statusOf(*m_reply) == 304
        && (request.hasRawHeader("If-None-Match") || request.hasRawHeader("If-Modified-Since"));
}

void Transfer::cancel() { end(canceledOutcome()); }

void Transfer::readHeaders()
{
    m_silence.start();
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    // The announced size of compressed content is not the size after decompression.
    const bool isEncoded = m_reply->hasRawHeader("Content-Encoding");
    m_announcedSize = length.isValid() && !isEncoded ? length.toLongLong() : -1;
    if (statusOf(*m_reply) < 300 && m_announcedSize > m_limits.bytes)
        end({FeedDownloadTooLarge, tooLarge(m_limits.bytes)});
}

void Transfer::readBytes()
{
    if (statusOf(*m_reply) >= 400) {
        end(refusal(*m_reply));
        return;
    }
    const qint64 sizeBefore = m_size;
    while (!m_isOver) {
        const QByteArray bytes = m_reply->read(chunkSize);
        if (bytes.isEmpty())
            break;
        m_silence.start();
        m_size += bytes.size();
        if (m_size > m_limits.bytes)
            end({FeedDownloadTooLarge, tooLarge(m_limits.bytes)});
        else if (!writeAll(m_target, bytes))
            end(notWritten(m_target.errorString()));
    }
    if (!m_isOver && m_size > sizeBefore)
        Q_EMIT progressed(m_size, m_announcedSize);
}

void Transfer::finish()
{
    readBytes();
    if (!m_isOver)
        end(replyOutcome());
}

Outcome Transfer::replyOutcome() const
{
    const int status = statusOf(*m_reply);
    if (status >= 400)
        return refusal(*m_reply);
    if (!m_certificateProblem.isEmpty())
        return {FeedDownloadConnectionFailed,
                QStringLiteral("the certificate of the server is not trusted: ") + m_certificateProblem};
    const Outcome failed = failure(*m_reply);
    if (!failed.isFine())
        return failed;
    const bool isFile = status == 0;
    if (!isFile && status != 200 && !isUnchanged())
        return refusal(*m_reply);
    if (status == 200 && m_announcedSize >= 0 && m_size < m_announcedSize)
        return connectionClosed();
    return {};
}

void Transfer::end(const Outcome &outcome)
{
    if (m_isOver)
        return;
    m_isOver = true;
    m_poll.stop();
    m_silence.stop();
    m_duration.stop();
    m_outcome = outcome;
    m_address = m_reply->url();
    m_validators = {validator(*m_reply, "ETag"), validator(*m_reply, "Last-Modified")};
    m_contentType = m_reply->header(QNetworkRequest::ContentTypeHeader).toString();
    m_linkHeader = m_reply->rawHeader("Link");
    m_reply->abort();
    Q_EMIT finished();
}

} // namespace Tidel
