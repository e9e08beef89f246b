// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CONNECTIONS_H
#define TIDEL_CONNECTIONS_H

#include <QDeadlineTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <vector>

#include <curl/curl.h>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace Tidel {

class Exchange;

/// The connections to web servers. Runs exchanges in the event loop, at most two at a time with one host and
/// eight in all. The others wait for their turn. A host that answers 429 is left alone for as long as it
/// wants.
class Connections : public QObject
{
    Q_OBJECT

public:
    Connections();
    /// Destroys the connections. No request may be running.
    ~Connections() override;

    /// Runs \a exchange when it is its turn. Calls Exchange::begin() then, and Exchange::end() when it has
    /// ended, or Exchange::refuse() instead of both.
    void start(Exchange &exchange);
    /// Ends \a exchange without a call. Does nothing if it has ended.
    void stop(Exchange &exchange);

private:
    struct Watch;

    /// Starts the waiting exchanges whose turn it is.
    void startWaiting();
    /// How many seconds \a host must be left alone; 0 if it need not.
    qint64 secondsHeld(const QString &host) const;
    /// Returns true if no other exchange with \a host may start now; otherwise returns false.
    bool isBusy(const QString &host) const;
    /// Called by libcurl: \a events of \a socket are of interest.
    static int watch(CURL *handle, curl_socket_t socket, int events, void *connections, void *);
    /// Called by libcurl: time has to be counted.
    static int setTimer(CURLM *multi, long milliseconds, void *connections);
    /// Lets libcurl read and write after \a events of \a socket.
    void act(curl_socket_t socket, int events);

    CURLM *const m_multi;
    QTimer m_timer;
    std::map<curl_socket_t, Watch> m_watches;
    std::vector<Exchange *> m_waiting; // In the order in which they were started.
    std::vector<Exchange *> m_running;
    QHash<QString, QDeadlineTimer> m_heldHosts;
};

} // namespace Tidel

#endif
