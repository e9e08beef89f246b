// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedserver.h"

FeedServer::FeedServer(const QString &folder, const QString &certificate)
    : m_scheme(certificate.isEmpty() ? QStringLiteral("http") : QStringLiteral("https"))
{
    QStringList arguments{QStringLiteral(TIDEL_FEED_SERVER), folder};
    if (!certificate.isEmpty())
        arguments.append(certificate);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(TIDEL_PYTHON), arguments);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(30000)) { }
    m_port = m_process.readLine().trimmed().toInt();
}

FeedServer::~FeedServer()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(30000))
        m_process.kill();
}

QString FeedServer::url(const QString &path) const
{
    return QStringLiteral("%1://127.0.0.1:%2").arg(m_scheme).arg(m_port) + path;
}

QStringList FeedServer::requests()
{
    while (m_process.waitForReadyRead(0)) { }
    while (m_process.canReadLine())
        m_requests.append(QString::fromUtf8(m_process.readLine()).trimmed());
    return m_requests;
}

void FeedServer::forgetRequests()
{
    requests();
    m_requests.clear();
}

QStringList FeedServer::takeRequests()
{
    const QStringList taken = requests();
    m_requests.clear();
    return taken;
}
