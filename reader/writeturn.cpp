// SPDX-License-Identifier: LGPL-2.1-or-later
#include "writeturn.h"

#include "../qtsparql/boundedwait_p.h"

#include <QStandardPaths>

#include <cerrno>

#include <sys/file.h>

namespace Tidel {

// QLockFile is not used here: it polls less and less often, and removes a lock that was held for long.
WriteTurn::WriteTurn()
    : m_file(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
             + QLatin1String("/tidel/writing.lock"))
{
    if (!m_file.open(QIODevice::WriteOnly))
        return;
    waitUntil([this] {
        const bool isLocked = flock(m_file.handle(), LOCK_EX | LOCK_NB) == 0;
        const bool isTaken = !isLocked && (errno == EWOULDBLOCK || errno == EINTR);
        return !isTaken;
    });
}

WriteTurn::~WriteTurn() = default;

} // namespace Tidel
