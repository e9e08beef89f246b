// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FEEDSERVER_H
#define FEEDSERVER_H

#include <QProcess>
#include <QString>
#include <QStringList>

/// feedserver.py on a port of its own, for as long as it lives.
class FeedServer
{
public:
    /// Serves \a folder; with TLS where \a certificate, a file with key and certificate, is given.
    explicit FeedServer(const QString &folder, const QString &certificate = QString());
    ~FeedServer();

    bool isRunning() const { return m_port > 0; }
    /// The address of \a path, which begins with a slash.
    QString url(const QString &path) const;
    /// The requests since forgetRequests(), as "GET /path 200".
    QStringList requests();
    void forgetRequests();
    /// The requests, which are then forgotten.
    QStringList takeRequests();

private:
    const QString m_scheme;
    QProcess m_process;
    int m_port = 0;
    QStringList m_requests;
};

#endif
