// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_WRITETURN_H
#define TIDEL_WRITETURN_H

#include "error.h"

#include <memory>

class FileLock;

namespace Tidel {

/**
 * The turn of this process to change the store by several statements that must see the same store: to add
 * what the store does not have, or to delete what no other process adds to in the meantime.
 *
 * \code
 * const Result<WriteTurn> turn = WriteTurn::take();
 * if (!turn)
 *     return Failure(turn.error());
 * \endcode
 *
 * The turn ends with the object or with the process. Take one for each hundred messages or so: a program that
 * waits gets the next turn, and waits in vain for a long one. A thread has one turn at
 * a time; a second one would wait for the first.
 */
class TIDELREADER_EXPORT WriteTurn
{
public:
    /// Waits until no other process has its turn, for at most \a seconds. After two seconds a message of the
    /// logging category "tidel.waiting" says who has it. Fails with Error::StoreFailed, which says who has
    /// the turn and for how long. Nothing may be written then.
    static Result<WriteTurn> take(int seconds = 30);
    /// Takes over the turn of \a other.
    WriteTurn(WriteTurn &&other) noexcept;
    /// Ends the turn.
    ~WriteTurn();

    /// Returns true if no other process had a turn since the last one of this process, so that what was asked
    /// in that one or later is still so; otherwise returns false.
    bool followsOwn() const { return m_followsOwn; }
    /// How many turns this process has had, with the current one.
    static int count();

private:
    Q_DECL_HIDDEN WriteTurn(std::unique_ptr<FileLock> lock, bool followsOwn);

    std::unique_ptr<FileLock> m_lock;
    bool m_followsOwn;
};

} // namespace Tidel

#endif
