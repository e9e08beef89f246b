// SPDX-License-Identifier: LGPL-2.1-or-later
#include "connections.h"

#include "exchange.h"

#include <QSocketNotifier>

#include <algorithm>

namespace Tidel {

namespace {

constexpr int exchangesAtATime = 8;
constexpr int exchangesWithOneHost = 2;

CURLM *newMulti()
{
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    return ready == CURLE_OK ? curl_multi_init() : nullptr;
}

/// Deletes a notifier that may be the one that is just calling.
struct DeleteLater
{
    void operator()(QSocketNotifier *notifier) const
    {
        notifier->setEnabled(false);
        notifier->deleteLater();
    }
};

} // namespace

struct Connections::Watch
{
    std::unique_ptr<QSocketNotifier, DeleteLater> reading;
    std::unique_ptr<QSocketNotifier, DeleteLater> writing;
};

Connections::Connections() : m_multi(newMulti())
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &Connections::watch);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &Connections::setTimer);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
}

Connections::~Connections() { curl_multi_cleanup(m_multi); }

void Connections::start(Exchange &exchange)
{
    m_waiting.push_back(&exchange);
    startWaiting();
}

void Connections::stop(Exchange &exchange)
{
    m_waiting.erase(std::remove(m_waiting.begin(), m_waiting.end(), &exchange), m_waiting.end());
    const auto running = std::find(m_running.begin(), m_running.end(), &exchange);
    if (running == m_running.end())
        return;
    m_running.erase(running);
    curl_multi_remove_handle(m_multi, exchange.handle());
    startWaiting();
}

void Connections::startWaiting()
{
    for (auto next = m_waiting.begin(); next != m_waiting.end() && m_running.size() < exchangesAtATime;) {
        Exchange *exchange = *next;
        const qint64 held = secondsHeld(exchange->host());
        if (held > 0) {
            next = m_waiting.erase(next);
            exchange->refuse(held);
            continue;
        }
        if (isBusy(exchange->host())) {
            ++next;
            continue;
        }
        next = m_waiting.erase(next);
        m_running.push_back(exchange);
        curl_multi_add_handle(m_multi, exchange->handle());
        exchange->begin();
    }
}

qint64 Connections::secondsHeld(const QString &host) const
{
    const auto held = m_heldHosts.constFind(host);
    return held == m_heldHosts.constEnd() ? 0 : (held->remainingTime() + 999) / 1000;
}

bool Connections::isBusy(const QString &host) const
{
    return std::count_if(m_running.begin(), m_running.end(),
                         [&](const Exchange *exchange) { return exchange->host() == host; })
        >= exchangesWithOneHost;
}

int Connections::watch(CURL *, curl_socket_t socket, int events, void *connections, void *)
{
    auto *self = static_cast<Connections *>(connections);
    if (events == CURL_POLL_REMOVE) {
        self->m_watches.erase(socket);
        return 0;
    }
    Watch &watch = self->m_watches[socket];
    if (!watch.reading) {
        watch.reading.reset(new QSocketNotifier(socket, QSocketNotifier::Read));
        watch.writing.reset(new QSocketNotifier(socket, QSocketNotifier::Write));
        connect(watch.reading.get(), &QSocketNotifier::activated, self,
                [self, socket] { self->act(socket, CURL_CSELECT_IN); });
        connect(watch.writing.get(), &QSocketNotifier::activated, self,
                [self, socket] { self->act(socket, CURL_CSELECT_OUT); });
    }
    watch.reading->setEnabled(events & CURL_POLL_IN);
    watch.writing->setEnabled(events & CURL_POLL_OUT);
    return 0;
}

int Connections::setTimer(CURLM *, long milliseconds, void *connections)
{
    QTimer &timer = static_cast<Connections *>(connections)->m_timer;
    if (milliseconds < 0)
        timer.stop();
    else
        timer.start(int(milliseconds));
    return 0;
}

void Connections::act(curl_socket_t socket, int events)
{
    int running = 0;
    curl_multi_socket_action(m_multi, socket, events, &running);
    int waiting = 0;
    while (const CURLMsg *message = curl_multi_info_read(m_multi, &waiting)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const CURLcode code = message->data.result;
        Exchange *exchange = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &exchange);
        // The next exchange with this host begins, or is refused, in stop().
        if (exchange->head().status() == tooManyRequests)
            m_heldHosts[exchange->host()] = QDeadlineTimer(exchange->wait() * 1000);
        stop(*exchange);
        exchange->end(code);
    }
}

} // namespace Tidel
