// SPDX-License-Identifier: LGPL-2.1-or-later
#include "localfile.h"

namespace Tidel {

namespace {

constexpr qint64 pieceSize = 256LL * 1024;

} // namespace

LocalFile::LocalFile(const QString &path, const Receiver &receiver) : m_receiver(receiver), m_file(path)
{
    connect(&m_next, &QTimer::timeout, this, &LocalFile::readPiece);
}

void LocalFile::start()
{
    m_next.start(0);
    Q_EMIT started();
}

void LocalFile::readPiece()
{
    const bool isOpen = m_file.isOpen() || m_file.open(QIODevice::ReadOnly);
    const QByteArray bytes = isOpen ? m_file.read(pieceSize) : QByteArray();
    if (!bytes.isEmpty() && m_receiver(bytes.constData(), bytes.size()))
        return;
    if (m_file.error() != QFileDevice::NoError)
        m_outcome = {FeedDownloadConnectionFailed,
                     QLatin1String("could not read the file: ") + m_file.errorString()};
    m_next.stop();
    Q_EMIT finished();
}

} // namespace Tidel
