// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDSERVER_H
#define FEEDSERVER_H

#include <QProcess>
#include <QString>
#include <QStringList>

/// Runs feedserver.py on a free port during the lifetime of the object.
class FeedServer
{
public:
    /// Serves \a folder. Uses TLS if \a certificate names a file with a key and a certificate.
    explicit FeedServer(const QString &folder, const QString &certificate = QString());
    /// Stops the server.
    ~FeedServer();

    /// Returns true if the server has started; otherwise returns false.
    bool isRunning() const { return m_port > 0; }
    /// The address of \a path, which begins with a slash.
    QString url(const QString &path) const;
    /// The requests since forgetRequests(), such as "GET /path 200".
    QStringList requests();
    /// Clears the list of requests.
    void forgetRequests();
    /// Returns the requests and clears the list.
    QStringList takeRequests();

private:
    const QString m_scheme;
    QProcess m_process;
    int m_port = 0;
    QStringList m_requests;
};

#endif
