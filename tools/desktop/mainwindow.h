// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_MAINWINDOW_H
#define TIDEL_DESKTOP_MAINWINDOW_H

#include <QMainWindow>

QT_FORWARD_DECLARE_CLASS(QSplitter)
QT_FORWARD_DECLARE_CLASS(QUndoStack)

namespace Tidel {

class Actions;
class Archive;
class ArticlePane;
class ChannelEditing;
class ChannelView;
class EnclosureDownloads;
class Marks;
class MessagePane;
class NoticeBar;
class Notifier;
class PendingRemovals;
class Refresher;
class SavedSearches;

/// The window of the reader: channels, messages and the message.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Shows \a archive, which must outlive the window.
    explicit MainWindow(Archive *archive, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Refreshes what is due, now and from time to time.
    void startRefreshing();

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void layOut();
    void connectActions();
    void connectMessageActions();
    void connectPanes();
    void connectArticle();
    void connectEditing();
    void connectUndoing();
    void connectSearches();
    void connectRefresher();
    void addMenus();
    void showCurrentRow();
    void showHint();
    void showCurrentMessage();
    void readOn();
    void readNext();
    void nextUnread();
    void leaveReadList();
    void stop();
    void subscribe(const QString &address);
    void showProperties();
    void showAbout();
    void saveSearch();
    void saveState();
    void restoreState();

    Archive *const m_archive;
    QUndoStack *const m_undoStack;
    Actions *const m_actions;
    ChannelView *const m_channels;
    MessagePane *const m_messages;
    ArticlePane *const m_article;
    NoticeBar *const m_notice;
    QSplitter *const m_columns; // Channels beside the rest.
    QSplitter *const m_rows; // Messages above the message.
    Marks *const m_marks;
    PendingRemovals *const m_removals;
    SavedSearches *const m_searches;
    ChannelEditing *const m_editing;
    Refresher *const m_refresher;
    Notifier *const m_notifier;
    EnclosureDownloads *const m_downloads;
    bool m_isWalking = false; // The next unread message is looked for in another channel.
};

} // namespace Tidel

#endif
