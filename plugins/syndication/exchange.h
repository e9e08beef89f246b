// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_EXCHANGE_H
#define TIDEL_EXCHANGE_H

#include "answerhead.h"
#include "resumepoint.h"
#include "source.h"
#include "validators.h"

#include <QUrl>

#include <TidelReader/logins.h>

#include <array>
#include <memory>

#include <curl/curl.h>

namespace Tidel {

class Connections;

/// What a web server is asked for.
struct TransferRequest
{
    QUrl address;
    QByteArray accept; ///< The Accept header.
    bool isCompressible = true; ///< The server may compress the document on its way.
    Validators known; ///< The server is asked for the document only if it has changed since.
    Logins::Login login = {}; ///< Who asks.
    ResumePoint part = {}; ///< If it is valid, the server is asked only for what follows it.
};

/// One request to a web server, and its answer. The body is read if the status is 200, or 206 for the rest of
/// a file.
class Exchange : public Source
{
    Q_OBJECT

public:
    /// Prepares \a request.
    Exchange(const std::shared_ptr<Connections> &connections, const TransferRequest &request,
             const Receiver &receiver);
    ~Exchange() override;

    void start() override;
    Outcome outcome() const override;
    /// The host that is asked.
    QString host() const { return m_host; }
    /// The request as libcurl knows it.
    CURL *handle() const { return m_handle.get(); }
    /// The status and the headers.
    const AnswerHead &head() const { return m_head; }

    /// Tells that the turn of the exchange has come.
    void begin() { Q_EMIT started(); }
    /// Ends the exchange before it has begun: the host must be left alone for \a seconds.
    void refuse(qint64 seconds);
    /// For how many seconds the server wants not to be asked again; 0 if it does not say.
    qint64 wait() const;
    /// Ends the exchange with the result \a code of libcurl.
    void end(CURLcode code);

private:
    struct Delete
    {
        void operator()(CURL *handle) const { curl_easy_cleanup(handle); }
        void operator()(curl_slist *list) const { curl_slist_free_all(list); }
    };

    void ask(const TransferRequest &request);
    void addHeader(const QByteArray &name, const QByteArray &value);
    /// Takes the proxy that the host has set.
    void useProxy(const QUrl &address);
    /// Trusts the authorities that the host has set.
    void useAuthorities();
    /// Called by libcurl with a line of the head.
    static size_t readLine(const char *line, size_t, size_t size, void *exchange);
    /// Called by libcurl with a piece of the body.
    static size_t readBody(const char *bytes, size_t, size_t size, void *exchange);

    const std::shared_ptr<Connections> m_connections;
    const std::unique_ptr<CURL, Delete> m_handle;
    std::unique_ptr<curl_slist, Delete> m_headers;
    const Receiver m_receiver;
    const QString m_host;
    const bool m_wantsRest;
    std::array<char, CURL_ERROR_SIZE> m_errorText = {};
    AnswerHead m_head;
    CURLcode m_code = CURLE_OK;
    qint64 m_refusedFor = 0; // In seconds; 0 if the exchange was not refused.
    bool m_isStopped = false; // The body is not read any more.
    bool m_hasLargeHead = false;
};

} // namespace Tidel

#endif
