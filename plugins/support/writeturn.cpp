// SPDX-License-Identifier: LGPL-2.1-or-later
#include "writeturn.h"

#include <QStandardPaths>

#include <cerrno>

#include <sys/file.h>

namespace Tidel {

// Not a QLockFile: that one looks every now and then, and takes a lock away that was held for long.
WriteTurn::WriteTurn()
    : m_file(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
             + QLatin1String("/tidel/writing.lock"))
{
    if (!m_file.open(QIODevice::WriteOnly))
        return;
    while (flock(m_file.handle(), LOCK_EX) != 0 && errno == EINTR) { }
}

} // namespace Tidel
