// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_WRITETURN_H
#define TIDEL_WRITETURN_H

#include <QFile>

namespace Tidel {

/**
 * A process's turn to change the store by several statements that must see the same store: to add what is not
 * there, or to delete what nobody adds to meanwhile. The constructor waits until no other process has its
 * turn, for half a minute at most.
 *
 * One thread has one turn at a time; a second one would wait for the first. A turn ends with its
 * process, however that ends. Where its file cannot be opened nobody is waited for.
 */
class WriteTurn
{
public:
    WriteTurn();
    Q_DISABLE_COPY(WriteTurn)

private:
    QFile m_file;
};

} // namespace Tidel

#endif
