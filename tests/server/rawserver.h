// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef RAWSERVER_H
#define RAWSERVER_H

#include <QByteArray>
#include <QString>

#include <atomic>
#include <thread>

/// What a RawServer sends to each client, whatever it asks.
struct RawAnswer
{
    /// What follows the last byte.
    enum End { Close, Reset, Hold };

    QByteArray begin; ///< Sent first. "PORT" becomes the port of the server.
    End end = Close;
    QByteArray piece; ///< Sent after it, again and again.
    qint64 pieces = 0; ///< How often; -1 as long as the client reads.
    int pause = 0; ///< The time before each piece, in milliseconds.
};

/// Sends the same bytes to each client on a free port of 127.0.0.1, so that they need not be HTTP.
class RawServer
{
public:
    explicit RawServer(const RawAnswer &answer);
    ~RawServer();
    RawServer(const RawServer &) = delete;
    RawServer &operator=(const RawServer &) = delete;

    /// The address of the server; empty if it has not started.
    QString url() const;
    /// The number of clients.
    int clients() const { return m_clients; }

private:
    void serve();
    void answer(int client) const;

    RawAnswer m_answer;
    int m_socket;
    int m_port = 0;
    std::atomic<int> m_client = -1;
    std::atomic<int> m_clients = 0;
    std::thread m_thread;
};

#endif
