// SPDX-License-Identifier: LGPL-2.1-or-later
#include "filelock_p.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int noteSize = 200;

} // namespace

FileLock::FileLock(const QString &path) : m_path(path) { open(); }

FileLock::~FileLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void FileLock::open()
{
    m_descriptor = ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    m_error = m_descriptor < 0 ? errno : 0;
}

/// Returns true if somebody has removed the file, so that others lock another one; otherwise returns false.
bool FileLock::isRemoved() const
{
    struct stat status;
    return fstat(m_descriptor, &status) != 0 || status.st_nlink == 0;
}

bool FileLock::tryLock()
{
    if (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0)
        return false;
    if (!isRemoved())
        return true;
    ::close(m_descriptor);
    open();
    return false;
}

// The note has always the same size: some file systems wait for the disk when a file that was cut is closed.
void FileLock::note() const
{
    const QString text = QStringLiteral("%1 %2 %3")
                             .arg(QCoreApplication::applicationPid())
                             .arg(QDateTime::currentSecsSinceEpoch())
                             .arg(QCoreApplication::applicationName());
    const QByteArray bytes = text.toUtf8().leftJustified(noteSize, ' ', true);
    // A full disk takes nothing away but the name.
    const ssize_t written = pwrite(m_descriptor, bytes.constData(), size_t(bytes.size()), 0);
    Q_UNUSED(written)
}

Holder FileLock::holder() const
{
    QByteArray bytes(noteSize, ' ');
    const ssize_t size = pread(m_descriptor, bytes.data(), size_t(bytes.size()), 0);
    const QString text = QString::fromUtf8(bytes.left(int(size < 0 ? 0 : size))).simplified();
    const QLatin1Char space(' ');
    return {text.section(space, 0, 0).toLongLong(), text.section(space, 1, 1).toLongLong(),
            text.section(space, 2)};
}
