// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ACTIONS_H
#define TIDEL_DESKTOP_ACTIONS_H

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QAction)
QT_FORWARD_DECLARE_CLASS(QMainWindow)
QT_FORWARD_DECLARE_CLASS(QMenu)
QT_FORWARD_DECLARE_CLASS(QUndoStack)

namespace Tidel {

/// What the user can do in the main window, as actions with texts, keys and icons. What they do is connected
/// by the window.
class Actions : public QObject
{
    Q_OBJECT

public:
    /// Makes the actions and adds them to the menus and the tool bar of \a window. Undo and redo are those of
    /// \a undoStack.
    Actions(QMainWindow *window, QUndoStack *undoStack);

    /// Adds \a actions to the menu of views.
    void addToViewMenu(const QList<QAction *> &actions);

    QAction *subscribe = nullptr;
    QAction *importChannels = nullptr;
    QAction *exportChannels = nullptr;
    QAction *quit = nullptr;

    QAction *search = nullptr;
    QAction *saveSearch = nullptr;
    QAction *markAllRead = nullptr;

    QAction *notify = nullptr;
    QAction *showIcons = nullptr;

    QAction *refresh = nullptr;
    QAction *refreshAll = nullptr;
    QAction *stop = nullptr;
    QAction *rename = nullptr;
    QAction *move = nullptr;
    QAction *unsubscribe = nullptr;
    QAction *removeSearch = nullptr;
    QAction *properties = nullptr;

    QAction *readOn = nullptr;
    QAction *nextUnread = nullptr;
    QAction *previous = nullptr;
    QAction *toggleRead = nullptr;
    QAction *toggleFavorite = nullptr;
    QAction *openInBrowser = nullptr;
    QAction *remove = nullptr;

    QAction *showKeys = nullptr;
    QAction *about = nullptr;

private:
    void addMenus(QMainWindow *window, QUndoStack *undoStack);
    void addToolBar(QMainWindow *window);

    QMenu *m_viewMenu = nullptr;
};

} // namespace Tidel

#endif
