// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rawserver.h"

#include <chrono>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

bool sendAll(int client, const QByteArray &bytes)
{
    qint64 sent = 0;
    while (sent < bytes.size()) {
        const ssize_t more =
            send(client, bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
        if (more <= 0)
            return false;
        sent += more;
    }
    return true;
}

/// Waits until the client has closed the connection or nothing of its request is left.
void drain(int client, int flags)
{
    char bytes[4096];
    while (recv(client, bytes, sizeof bytes, flags) > 0) { }
}

} // namespace

RawServer::RawServer(const RawAnswer &answer) : m_answer(answer), m_socket(socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (bind(m_socket, generic, size) != 0 || listen(m_socket, 50) != 0
        || getsockname(m_socket, generic, &size) != 0)
        return;
    m_port = ntohs(address.sin_port);
    m_answer.begin.replace("PORT", QByteArray::number(m_port));
    m_thread = std::thread(&RawServer::serve, this);
}

RawServer::~RawServer()
{
    shutdown(m_socket, SHUT_RDWR);
    shutdown(m_client, SHUT_RDWR);
    if (m_thread.joinable())
        m_thread.join();
    close(m_socket);
}

QString RawServer::url() const
{
    return m_port > 0 ? QStringLiteral("http://127.0.0.1:%1/").arg(m_port) : QString();
}

void RawServer::serve()
{
    int client;
    while ((client = accept(m_socket, nullptr, nullptr)) >= 0) {
        m_client = client;
        ++m_clients;
        answer(client);
        m_client = -1;
        close(client);
    }
}

void RawServer::answer(int client) const
{
    char request[65536];
    if (recv(client, request, sizeof request, 0) <= 0 || !sendAll(client, m_answer.begin))
        return;
    for (qint64 i = 0; m_answer.pieces < 0 || i < m_answer.pieces; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(m_answer.pause));
        if (!sendAll(client, m_answer.piece))
            return;
    }
    if (m_answer.end == RawAnswer::Hold) {
        drain(client, 0);
    } else if (m_answer.end == RawAnswer::Reset) {
        const linger atOnce = {1, 0};
        setsockopt(client, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    } else {
        // Closing with unread bytes would reset the connection.
        drain(client, MSG_DONTWAIT);
    }
}
