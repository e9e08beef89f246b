// SPDX-License-Identifier: LGPL-2.1-or-later
#include "exchange.h"

#include "connections.h"
#include "freshness.h"

#include <QDateTime>
#include <QNetworkProxy>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <algorithm>
#include <cerrno>

namespace Tidel {

namespace {

Outcome connectionFailed(const QString &reason) { return {FeedDownloadConnectionFailed, reason}; }

Outcome largeHead()
{
    return {FeedDownloadTooLarge,
            QStringLiteral("the answer of the server has more than %1 headers or %2 KiB of them")
                .arg(AnswerHead::maximumLines)
                .arg(AnswerHead::maximumBytes / 1024)};
}

bool isRefused(CURL *handle)
{
    long number = 0;
    curl_easy_getinfo(handle, CURLINFO_OS_ERRNO, &number);
    return number == ECONNREFUSED;
}

} // namespace

Exchange::Exchange(const std::shared_ptr<Connections> &connections, const TransferRequest &request,
                   const Receiver &receiver)
    : m_connections(connections), m_handle(curl_easy_init()), m_receiver(receiver),
      m_host(request.address.host()), m_wantsRest(request.part.isValid())
{
    ask(request);
}

Exchange::~Exchange() { m_connections->stop(*this); }

void Exchange::start() { m_connections->start(*this); }

void Exchange::ask(const TransferRequest &request)
{
    CURL *handle = m_handle.get();
    const QUrl bare = request.address.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    curl_easy_setopt(handle, CURLOPT_URL, bare.toEncoded().constData());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(handle, CURLOPT_PATH_AS_IS, 1L);
    // Ending a request must not wait for the answer of a name server.
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(handle, CURLOPT_PRIVATE, this);
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, m_errorText.data());
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &Exchange::readLine);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &Exchange::readBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);

    curl_easy_setopt(handle, CURLOPT_USERAGENT, "Tidel/" TIDEL_VERSION);
    if (request.isCompressible)
        curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    else
        addHeader("Accept-Encoding", "identity");
    if (m_wantsRest) {
        addHeader("Range", "bytes=" + QByteArray::number(request.part.offset) + '-');
        addHeader("If-Range", request.part.validator);
    }
    addHeader("Accept", request.accept);
    addHeader("If-None-Match", request.known.entityTag.toLatin1());
    addHeader("If-Modified-Since", request.known.lastModified.toLatin1());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, m_headers.get());

    if (!request.login.user.isEmpty()) {
        curl_easy_setopt(handle, CURLOPT_HTTPAUTH, long(CURLAUTH_BASIC | CURLAUTH_DIGEST));
        curl_easy_setopt(handle, CURLOPT_USERNAME, request.login.user.toUtf8().constData());
        curl_easy_setopt(handle, CURLOPT_PASSWORD, request.login.password.toUtf8().constData());
    }
    useProxy(bare);
    if (bare.scheme() == QLatin1String("https"))
        useAuthorities();
}

void Exchange::addHeader(const QByteArray &name, const QByteArray &value)
{
    // A line break would begin another header.
    const bool isLine =
        std::all_of(value.begin(), value.end(), [](char c) { return c >= ' ' || c == '\t' || c < 0; });
    if (value.isEmpty() || !isLine)
        return;
    curl_slist *longer = curl_slist_append(m_headers.get(), (name + ": " + value).constData());
    if (longer) {
        m_headers.release(); // NOLINT(bugprone-unused-return-value): the longer list begins with it
        m_headers.reset(longer);
    }
}

void Exchange::useProxy(const QUrl &address)
{
    const QNetworkProxy proxy =
        QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(address)).value(0, QNetworkProxy::NoProxy);
    const bool isSocks = proxy.type() == QNetworkProxy::Socks5Proxy;
    const bool isUsed = isSocks || !proxy.hostName().isEmpty();
    // An empty text keeps libcurl from reading the environment, which Qt has done.
    curl_easy_setopt(m_handle.get(), CURLOPT_PROXY, isUsed ? proxy.hostName().toUtf8().constData() : "");
    if (!isUsed)
        return;
    curl_easy_setopt(m_handle.get(), CURLOPT_PROXYTYPE,
                     long(isSocks ? CURLPROXY_SOCKS5_HOSTNAME : CURLPROXY_HTTP));
    curl_easy_setopt(m_handle.get(), CURLOPT_PROXYPORT, long(proxy.port()));
    if (!proxy.user().isEmpty()) {
        curl_easy_setopt(m_handle.get(), CURLOPT_PROXYUSERNAME, proxy.user().toUtf8().constData());
        curl_easy_setopt(m_handle.get(), CURLOPT_PROXYPASSWORD, proxy.password().toUtf8().constData());
    }
}

void Exchange::useAuthorities()
{
    QByteArray authorities;
    const auto certificates = QSslConfiguration::defaultConfiguration().caCertificates();
    for (const QSslCertificate &certificate : certificates)
        authorities += certificate.toPem();
    if (authorities.isEmpty())
        return;
    curl_blob blob = {authorities.data(), size_t(authorities.size()), CURL_BLOB_COPY};
    curl_easy_setopt(m_handle.get(), CURLOPT_CAINFO_BLOB, &blob);
    curl_easy_setopt(m_handle.get(), CURLOPT_CAPATH, nullptr);
}

size_t Exchange::readLine(const char *line, size_t, size_t size, void *exchange)
{
    auto *self = static_cast<Exchange *>(exchange);
    self->m_hasLargeHead = !self->m_head.addLine(QByteArray(line, int(size)));
    return self->m_hasLargeHead ? 0 : size;
}

size_t Exchange::readBody(const char *bytes, size_t, size_t size, void *exchange)
{
    auto *self = static_cast<Exchange *>(exchange);
    const int status = self->m_head.status();
    const bool isWanted = status == 200 || (status == partialContent && self->m_wantsRest);
    self->m_isStopped = !isWanted || !self->m_receiver(bytes, qint64(size));
    return self->m_isStopped ? 0 : size;
}

void Exchange::end(CURLcode code)
{
    m_code = code;
    Q_EMIT finished();
}

void Exchange::refuse(qint64 seconds)
{
    m_refusedFor = seconds;
    Q_EMIT finished();
}

qint64 Exchange::wait() const
{
    return m_refusedFor > 0 ? m_refusedFor : secondsToWait(m_head, QDateTime::currentSecsSinceEpoch());
}

Outcome Exchange::outcome() const
{
    if (m_refusedFor > 0)
        return {tooManyRequests, QStringLiteral("the host %1 has refused more requests").arg(m_host)};
    if (m_hasLargeHead)
        return largeHead();
    if (m_isStopped)
        return {};
    const QString text =
        QString::fromUtf8(m_errorText[0] != '\0' ? m_errorText.data() : curl_easy_strerror(m_code));
    switch (m_code) {
    case CURLE_OK: return {};
    case CURLE_COULDNT_RESOLVE_HOST:
        return {FeedDownloadNotFound,
                QStringLiteral("the host %1 was not found; check the address and the network connection")
                    .arg(m_host)};
    case CURLE_COULDNT_CONNECT:
        return connectionFailed(
            isRefused(m_handle.get()) ? QStringLiteral("the server refused the connection") : text);
    case CURLE_SSL_CONNECT_ERROR:
        return connectionFailed(QStringLiteral("the server offers no secure connection; check whether the "
                                               "address begins with http:// (%1)")
                                    .arg(text));
    case CURLE_PEER_FAILED_VERIFICATION:
        return connectionFailed(QStringLiteral("the certificate of the server is not trusted: ") + text);
    case CURLE_OUT_OF_MEMORY: return largeHead(); // This is what libcurl says of a line that is too long.
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR: return closedTooEarly();
    case CURLE_UNSUPPORTED_PROTOCOL:
        return connectionFailed(QStringLiteral("the server does not answer in HTTP"));
    default: return connectionFailed(text);
    }
}

} // namespace Tidel
