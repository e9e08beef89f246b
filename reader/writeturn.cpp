// SPDX-License-Identifier: LGPL-2.1-or-later
#include "writeturn.h"

#include <QDeadlineTimer>
#include <QStandardPaths>
#include <QThread>

#include <cerrno>

#include <sys/file.h>

namespace Tidel {

namespace {

// A process that takes longer hangs.
constexpr int patienceMs = 30000;
constexpr int intervalMs = 10;

} // namespace

// QLockFile is not used here: it polls ever more rarely, and removes a lock that was held for long.
WriteTurn::WriteTurn()
    : m_file(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
             + QLatin1String("/tidel/writing.lock"))
{
    if (!m_file.open(QIODevice::WriteOnly))
        return;
    const QDeadlineTimer deadline(patienceMs);
    while (flock(m_file.handle(), LOCK_EX | LOCK_NB) != 0 && (errno == EWOULDBLOCK || errno == EINTR)
           && !deadline.hasExpired())
        QThread::msleep(intervalMs);
}

WriteTurn::~WriteTurn() = default;

} // namespace Tidel
