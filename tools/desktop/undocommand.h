// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_UNDOCOMMAND_H
#define TIDEL_DESKTOP_UNDOCOMMAND_H

#include <QUndoCommand>

#include <functional>

namespace Tidel {

/// A command made of two functions.
class UndoCommand : public QUndoCommand
{
public:
    /// \a done is what has happened, for the notice; \a name is what is undone, for the menu.
    UndoCommand(const QString &done, const QString &name, std::function<void()> redo,
                std::function<void()> undo)
        : QUndoCommand(done + QLatin1Char('\n') + name), m_redo(std::move(redo)), m_undo(std::move(undo))
    {
    }

    void redo() override { m_redo(); }
    void undo() override { m_undo(); }

private:
    const std::function<void()> m_redo;
    const std::function<void()> m_undo;
};

} // namespace Tidel

#endif
