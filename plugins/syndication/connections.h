// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CONNECTIONS_H
#define TIDEL_CONNECTIONS_H

#include <QObject>
#include <QTimer>

#include <map>
#include <memory>

#include <curl/curl.h>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace Tidel {

/// The connections to web servers. Runs requests of libcurl in the event loop.
class Connections : public QObject
{
    Q_OBJECT

public:
    Connections();
    /// Destroys the connections. No request may be running.
    ~Connections() override;

    /// Starts the request \a handle, whose CURLOPT_PRIVATE is an Exchange. Calls Exchange::end() when it
    /// has ended.
    void start(CURL *handle);
    /// Ends the request \a handle without a call. Does nothing if it has ended.
    void stop(CURL *handle);

private:
    struct Watch;

    /// Called by libcurl: \a events of \a socket are of interest.
    static int watch(CURL *handle, curl_socket_t socket, int events, void *connections, void *);
    /// Called by libcurl: time has to be counted.
    static int setTimer(CURLM *multi, long milliseconds, void *connections);
    /// Lets libcurl read and write after \a events of \a socket.
    void act(curl_socket_t socket, int events);

    CURLM *const m_multi;
    QTimer m_timer;
    std::map<curl_socket_t, Watch> m_watches;
};

} // namespace Tidel

#endif
