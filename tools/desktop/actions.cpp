// SPDX-License-Identifier: LGPL-2.1-or-later
#include "actions.h"

#include "paintedicon.h"

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <QUndoStack>

namespace Tidel {

namespace {

enum class Menu { File, Edit, View, Channel, Message, Help };

struct MenuEntry
{
    Menu menu;
    const char *text;
};

const MenuEntry menuTable[] = {
    {Menu::File, QT_TRANSLATE_NOOP("Tidel::Actions", "&File")},
    {Menu::Edit, QT_TRANSLATE_NOOP("Tidel::Actions", "&Edit")},
    {Menu::View, QT_TRANSLATE_NOOP("Tidel::Actions", "&View")},
    {Menu::Channel, QT_TRANSLATE_NOOP("Tidel::Actions", "&Channel")},
    {Menu::Message, QT_TRANSLATE_NOOP("Tidel::Actions", "&Message")},
    {Menu::Help, QT_TRANSLATE_NOOP("Tidel::Actions", "&Help")},
};

/// An action, or a line in the menu if it has no text.
struct ActionEntry
{
    QAction *Actions::*action;
    const char *text;
    const char *keys; ///< As QKeySequence::listFromString() reads them.
    const char *icon; ///< Its name in icon themes, if it has one.
    Menu menu;
    QStyle::StandardPixmap standardIcon; ///< Where there is no theme.
};

constexpr auto noIcon = QStyle::SP_CustomBase;

const ActionEntry actionTable[] = {
    {&Actions::subscribe, QT_TRANSLATE_NOOP("Tidel::Actions", "&Subscribe..."), "Ctrl+N", "list-add",
     Menu::File, QStyle::SP_FileDialogNewFolder},
    {nullptr, nullptr, nullptr, nullptr, Menu::File, noIcon},
    {&Actions::importChannels, QT_TRANSLATE_NOOP("Tidel::Actions", "&Import Channels..."), "Ctrl+O",
     "document-open", Menu::File, QStyle::SP_DialogOpenButton},
    {&Actions::exportChannels, QT_TRANSLATE_NOOP("Tidel::Actions", "&Export Channels..."), "Ctrl+Shift+S",
     "document-save-as", Menu::File, QStyle::SP_DialogSaveButton},
    {nullptr, nullptr, nullptr, nullptr, Menu::File, noIcon},
    {&Actions::quit, QT_TRANSLATE_NOOP("Tidel::Actions", "&Quit"), "Ctrl+Q", "application-exit", Menu::File,
     noIcon},

    {&Actions::search, QT_TRANSLATE_NOOP("Tidel::Actions", "&Search"), "/; Ctrl+F", "edit-find", Menu::Edit,
     QStyle::SP_FileDialogContentsView},
    {&Actions::saveSearch, QT_TRANSLATE_NOOP("Tidel::Actions", "Sa&ve Search"), "Ctrl+S", "document-save",
     Menu::Edit, QStyle::SP_DialogSaveButton},
    {&Actions::markAllRead, QT_TRANSLATE_NOOP("Tidel::Actions", "Mark &All as Read"), "Shift+A",
     "mail-mark-read", Menu::Edit, QStyle::SP_DialogApplyButton},

    {&Actions::notify, QT_TRANSLATE_NOOP("Tidel::Actions", "&Notify of New Messages"), "", nullptr,
     Menu::View, noIcon},
    {&Actions::showIcons, QT_TRANSLATE_NOOP("Tidel::Actions", "Show &Icons of Websites"), "", nullptr,
     Menu::View, noIcon},

    {&Actions::refresh, QT_TRANSLATE_NOOP("Tidel::Actions", "&Refresh"), "R", "view-refresh", Menu::Channel,
     QStyle::SP_BrowserReload},
    {&Actions::refreshAll, QT_TRANSLATE_NOOP("Tidel::Actions", "Refresh &All"), "F5; Shift+R", "view-refresh",
     Menu::Channel, QStyle::SP_BrowserReload},
    {&Actions::stop, QT_TRANSLATE_NOOP("Tidel::Actions", "&Stop"), "Esc", "process-stop", Menu::Channel,
     QStyle::SP_BrowserStop},
    {nullptr, nullptr, nullptr, nullptr, Menu::Channel, noIcon},
    {&Actions::rename, QT_TRANSLATE_NOOP("Tidel::Actions", "Re&name"), "F2", "edit-rename", Menu::Channel,
     noIcon},
    {&Actions::move, QT_TRANSLATE_NOOP("Tidel::Actions", "&Move to Folder..."), "Ctrl+M", "folder",
     Menu::Channel, QStyle::SP_DirIcon},
    {&Actions::unsubscribe, QT_TRANSLATE_NOOP("Tidel::Actions", "&Unsubscribe..."), "Ctrl+Del", "edit-delete",
     Menu::Channel, QStyle::SP_TrashIcon},
    {&Actions::removeSearch, QT_TRANSLATE_NOOP("Tidel::Actions", "Remove Sear&ch"), "Ctrl+Del", "edit-delete",
     Menu::Channel, QStyle::SP_TrashIcon},
    {nullptr, nullptr, nullptr, nullptr, Menu::Channel, noIcon},
    {&Actions::properties, QT_TRANSLATE_NOOP("Tidel::Actions", "&Properties..."), "Alt+Return",
     "document-properties", Menu::Channel, noIcon},

    {&Actions::readOn, QT_TRANSLATE_NOOP("Tidel::Actions", "Read &On"), "Space", nullptr, Menu::Message,
     noIcon},
    {&Actions::nextUnread, QT_TRANSLATE_NOOP("Tidel::Actions", "&Next Unread"), "N", "go-down", Menu::Message,
     QStyle::SP_ArrowDown},
    {&Actions::previous, QT_TRANSLATE_NOOP("Tidel::Actions", "&Previous"), "P", "go-up", Menu::Message,
     QStyle::SP_ArrowUp},
    {nullptr, nullptr, nullptr, nullptr, Menu::Message, noIcon},
    {&Actions::toggleRead, QT_TRANSLATE_NOOP("Tidel::Actions", "Mark as &Read or Unread"), "M",
     "mail-mark-unread", Menu::Message, noIcon},
    {&Actions::toggleFavorite, QT_TRANSLATE_NOOP("Tidel::Actions", "&Favorite"), "S", nullptr, Menu::Message,
     noIcon},
    {nullptr, nullptr, nullptr, nullptr, Menu::Message, noIcon},
    {&Actions::openInBrowser, QT_TRANSLATE_NOOP("Tidel::Actions", "Open in &Browser"), "O",
     "internet-web-browser", Menu::Message, QStyle::SP_ArrowForward},
    {nullptr, nullptr, nullptr, nullptr, Menu::Message, noIcon},
    {&Actions::remove, QT_TRANSLATE_NOOP("Tidel::Actions", "&Delete"), "Del", "edit-delete", Menu::Message,
     QStyle::SP_TrashIcon},

    {&Actions::showKeys, QT_TRANSLATE_NOOP("Tidel::Actions", "&Keys"), "F1", "help-contents", Menu::Help,
     QStyle::SP_DialogHelpButton},
    {&Actions::about, QT_TRANSLATE_NOOP("Tidel::Actions", "&About Tidel Desktop"), "", "help-about",
     Menu::Help, noIcon},
};

QIcon iconOf(const ActionEntry &entry, const QStyle *style)
{
    const QIcon standard = entry.standardIcon == noIcon ? QIcon() : style->standardIcon(entry.standardIcon);
    return entry.icon ? QIcon::fromTheme(QLatin1String(entry.icon), standard) : standard;
}

} // namespace

Actions::Actions(QMainWindow *window, QUndoStack *undoStack) : QObject(window)
{
    for (const ActionEntry &entry : actionTable) {
        if (!entry.action)
            continue;
        auto *action = new QAction(iconOf(entry, window->style()), tr(entry.text), window);
        action->setShortcuts(QKeySequence::listFromString(QLatin1String(entry.keys)));
        this->*entry.action = action;
    }
    toggleFavorite->setIcon(starIcon(true));
    saveSearch->setEnabled(false);
    removeSearch->setVisible(false);
    // In the list of channels this key would seem to delete a channel.
    remove->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    for (QAction *choice : {notify, showIcons}) {
        choice->setCheckable(true);
        choice->setChecked(true);
    }
    quit->setMenuRole(QAction::QuitRole);
    about->setMenuRole(QAction::AboutRole);
    addMenus(window, undoStack);
    addToolBar(window);
}

void Actions::addMenus(QMainWindow *window, QUndoStack *undoStack)
{
    for (const MenuEntry &menuEntry : menuTable) {
        QMenu *menu = window->menuBar()->addMenu(tr(menuEntry.text));
        if (menuEntry.menu == Menu::View)
            m_viewMenu = menu;
        if (menuEntry.menu == Menu::Edit) {
            // Only the first one of the desktop's keys: some are on no keyboard.
            const auto addUndo = [menu](QAction *action, QKeySequence::StandardKey key, const char *icon) {
                action->setShortcut(key);
                action->setIcon(QIcon::fromTheme(QLatin1String(icon)));
                menu->addAction(action);
            };
            addUndo(undoStack->createUndoAction(menu), QKeySequence::Undo, "edit-undo");
            addUndo(undoStack->createRedoAction(menu), QKeySequence::Redo, "edit-redo");
            menu->addSeparator();
        }
        for (const ActionEntry &entry : actionTable) {
            if (entry.menu == menuEntry.menu)
                entry.action ? menu->addAction(this->*entry.action) : static_cast<void>(menu->addSeparator());
        }
    }
}

void Actions::addToViewMenu(const QList<QAction *> &actions)
{
    m_viewMenu->addSeparator();
    m_viewMenu->addActions(actions);
}

void Actions::addToolBar(QMainWindow *window)
{
    QToolBar *bar = window->addToolBar(tr("Tool Bar"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addActions({refreshAll, subscribe});
    bar->addSeparator();
    bar->addActions({nextUnread, toggleFavorite, markAllRead, openInBrowser});
}

} // namespace Tidel
