// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_WRITETURN_H
#define TIDEL_WRITETURN_H

#include "tidelreaderglobal.h"

#include <QFile>

namespace Tidel {

/**
 * The turn of this process to change the store by several statements that must see the same store: to add
 * what the store does not have, or to delete what no other process adds to in the meantime.
 *
 * The constructor waits until no other process has its turn, for at most 30 seconds. The turn ends with the
 * object or with the process. A thread has one turn at a time; a second one would wait for the first. If the
 * lock file cannot be opened, the constructor does not wait.
 */
class TIDELREADER_EXPORT WriteTurn
{
public:
    /// Waits for the turn of this process.
    WriteTurn();
    /// Ends the turn.
    ~WriteTurn();
    Q_DISABLE_COPY(WriteTurn)

private:
    QFile m_file;
};

} // namespace Tidel

#endif
