// SPDX-License-Identifier: LGPL-2.1-or-later
#include "mainwindow.h"

#include "actions.h"
#include "articlepane.h"
#include "channelediting.h"
#include "channelicons.h"
#include "channelview.h"
#include "enclosuredownloads.h"
#include "marks.h"
#include "messagepane.h"
#include "noticebar.h"
#include "notifier.h"
#include "pendingremovals.h"
#include "refresher.h"
#include "refreshstatus.h"
#include "savedsearches.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QHeaderView>
#include <QMimeData>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QUndoStack>
#include <QVBoxLayout>

namespace Tidel {

MainWindow::MainWindow(Archive *archive, QWidget *parent)
    : QMainWindow(parent), m_archive(archive), m_undoStack(new QUndoStack(this)),
      m_actions(new Actions(this, m_undoStack)), m_channels(new ChannelView(archive, this)),
      m_messages(new MessagePane(archive, this)), m_article(new ArticlePane(archive, this)),
      m_notice(new NoticeBar(this)), m_columns(new QSplitter(Qt::Horizontal, this)),
      m_rows(new QSplitter(Qt::Vertical, this)), m_marks(new Marks(archive, m_undoStack, this)),
      m_removals(new PendingRemovals(archive, m_undoStack, this)),
      m_searches(new SavedSearches(m_undoStack, this)),
      m_editing(new ChannelEditing(archive, m_removals, this)), m_refresher(new Refresher(archive, this)),
      m_notifier(new Notifier(this)), m_downloads(new EnclosureDownloads(archive, this))
{
    setAcceptDrops(true);
    layOut();
    connectActions();
    connectMessageActions();
    connectPanes();
    connectArticle();
    connectEditing();
    connectUndoing();
    connectSearches();
    connectRefresher();
    addMenus();
    restoreState();
}

MainWindow::~MainWindow()
{
    // The stack is deleted after the parts of the window, and emits a signal then.
    m_undoStack->disconnect(this);
}

void MainWindow::startRefreshing() { m_refresher->start(); }

void MainWindow::layOut()
{
    m_rows->addWidget(m_messages);
    m_rows->addWidget(m_article);
    m_rows->setStretchFactor(0, 2);
    m_rows->setStretchFactor(1, 3);
    m_columns->addWidget(m_channels);
    m_columns->addWidget(m_rows);
    m_columns->setStretchFactor(1, 1);
    m_columns->setSizes({250, 750});
    auto *central = new QWidget;
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_notice);
    layout->addWidget(m_columns, 1);
    layout->addWidget(m_downloads);
    setCentralWidget(central);
    statusBar()->addPermanentWidget(new RefreshStatus(m_refresher, m_actions->stop));
    resize(1000, 700);
    m_channels->setFocus();
}

void MainWindow::connectPanes()
{
    MessageView *messages = m_messages->view();
    connect(m_channels, &ChannelView::currentRowChanged, this, &MainWindow::showCurrentRow);
    const ChannelModel *channels = m_channels->channels();
    connect(channels, &ChannelModel::loadingChanged, this, &MainWindow::showHint);
    connect(channels, &ChannelModel::rowsInserted, this, &MainWindow::showHint);
    connect(channels, &ChannelModel::rowsRemoved, this, &MainWindow::showHint);
    connect(messages, &MessageView::currentMessageChanged, this, &MainWindow::showCurrentMessage);
    connect(messages, &MessageView::readWanted, this,
            [this](const QString &uri, bool isRead) { m_marks->setRead({uri}, isRead); });
    connect(messages, &MessageView::favoriteWanted, this,
            [this](const QString &uri, bool isFavorite) { m_marks->setFavorite({uri}, isFavorite); });
    connect(messages, &MessageView::allRead, this, &MainWindow::leaveReadList);
}

void MainWindow::connectArticle()
{
    const MessageModel *messages = m_messages->view()->messages();
    connect(messages, &MessageModel::rowsInserted, this, [this, messages] {
        m_article->warmUp(messages->index(0, 0).data(MessageModel::UriRole).toString());
    });
    connect(m_article, &ArticlePane::shown, this, [this](const QString &uri) {
        if (!m_messages->view()->current(MessageModel::IsReadRole).toBool())
            m_marks->readSoon(uri);
    });
    connect(m_article, &ArticlePane::failed, m_notice, &NoticeBar::show);
    connect(m_article, &ArticleView::endReached, this, &MainWindow::readNext);
    connect(m_article, &ArticleView::linkActivated, this,
            [](const QUrl &link) { QDesktopServices::openUrl(link); });
    connect(m_article, &ArticleView::linkHovered, this,
            [this](const QUrl &link) { statusBar()->showMessage(link.toDisplayString()); });
    connect(m_article, &ArticleView::downloadRequested, this,
            [this](const QString &uri) { m_downloads->download(uri, m_article->fileNameOf(uri)); });
    connect(m_downloads, &EnclosureDownloads::canceled, m_article, &ArticlePane::reload);
    connect(m_article, &ArticleView::openRequested, this,
            [this](const QString &uri) { QDesktopServices::openUrl(m_article->fileOf(uri)); });
    connect(m_downloads, &EnclosureDownloads::failed, m_notice, &NoticeBar::show);
    connect(m_downloads, &EnclosureDownloads::downloaded, this, [this](const QString &path) {
        statusBar()->showMessage(tr("Downloaded %1").arg(path));
        m_article->reload();
    });
}

void MainWindow::connectEditing()
{
    connect(m_channels, &ChannelView::renamed, m_editing, &ChannelEditing::rename);
    connect(m_channels, &ChannelView::moved, m_editing, &ChannelEditing::move);
    connect(m_editing, &ChannelEditing::failed, m_notice, &NoticeBar::show);
    connect(m_marks, &Marks::failed, m_notice, &NoticeBar::show);
    connect(m_removals, &PendingRemovals::failed, m_notice, &NoticeBar::show);
    connect(m_removals, &PendingRemovals::channelsChanged, this,
            [this] { m_channels->setHidden(m_removals->channels()); });
    connect(m_removals, &PendingRemovals::messagesChanged, this,
            [this] { m_messages->view()->setHidden(m_removals->messages()); });
}

/// Says what was done, as long as it is the last thing that can be undone.
void MainWindow::connectUndoing()
{
    connect(m_undoStack, &QUndoStack::indexChanged, this, [this, before = 0](int index) mutable {
        if (index > before)
            m_notice->showWithUndo(m_undoStack->text(index - 1), [this] { m_undoStack->undo(); });
        else
            m_notice->hide();
        before = index;
    });
}

void MainWindow::connectSearches()
{
    m_messages->setSaveAction(m_actions->saveSearch);
    m_channels->setSearches(m_searches->all());
    connect(m_searches, &SavedSearches::changed, this,
            [this] { m_channels->setSearches(m_searches->all()); });
    connect(m_channels, &ChannelView::searchRenamed, m_searches, &SavedSearches::rename);
}

void MainWindow::connectRefresher()
{
    connect(m_refresher, &Refresher::started, this,
            [this] { statusBar()->showMessage(tr("Refreshing...")); });
    connect(m_refresher, &Refresher::finished, this, [this](const RefreshOutcome &outcome) {
        statusBar()->showMessage(outcome.toString());
        m_notifier->tell(outcome);
        m_channels->icons()->look();
        m_editing->prune(outcome.newsChannels);
        if (!outcome.problem.isEmpty())
            m_notice->show(outcome.toString());
    });
    connect(m_notifier, &Notifier::activated, this, [this] {
        show();
        raise();
        activateWindow();
    });
}

void MainWindow::addMenus()
{
    m_actions->addToViewMenu(m_article->viewActions());
    m_channels->addActions({m_actions->refresh, m_actions->markAllRead, m_actions->rename, m_actions->move,
                            m_actions->unsubscribe, m_actions->removeSearch, m_actions->properties});
    m_messages->view()->addActions(
        {m_actions->openInBrowser, m_actions->toggleRead, m_actions->toggleFavorite, m_actions->remove});
    m_article->addAction(m_actions->remove);
}

void MainWindow::showCurrentRow()
{
    m_messages->show(m_channels->query(), m_channels->title());
    const bool isChannel = m_channels->kind() == ChannelModel::ChannelKind;
    const bool isSearch = m_channels->kind() == ChannelModel::SearchKind;
    for (QAction *action : {m_actions->move, m_actions->unsubscribe, m_actions->properties})
        action->setEnabled(isChannel);
    m_actions->rename->setEnabled(isChannel || isSearch);
    // Both have the same key.
    m_actions->unsubscribe->setVisible(!isSearch);
    m_actions->removeSearch->setVisible(isSearch);
    setWindowTitle(m_channels->title());
}

/// Says how to begin, as long as there are no channels.
void MainWindow::showHint()
{
    const bool isEmpty = !m_channels->channels()->isLoading() && !m_channels->hasChannels();
    m_messages->setHint(isEmpty
                            ? tr("There are no channels yet.\nCtrl+N subscribes to the feed of a website. "
                                 "Ctrl+O imports the channels of another program.")
                            : QString());
}

void MainWindow::showCurrentMessage()
{
    const QString uri = m_messages->view()->message();
    m_marks->readSoon({});
    m_article->load(uri);
    for (QAction *action : {m_actions->toggleRead, m_actions->toggleFavorite, m_actions->openInBrowser,
                            m_actions->previous, m_actions->remove})
        action->setEnabled(!uri.isEmpty());
}

void MainWindow::readOn()
{
    // The space bar presses a button that has the focus.
    if (auto *button = qobject_cast<QAbstractButton *>(QApplication::focusWidget()))
        button->click();
    else if (!m_article->readOn())
        readNext();
}

/// The message was read to its end.
void MainWindow::readNext()
{
    m_marks->readNow();
    nextUnread();
}

void MainWindow::nextUnread()
{
    m_isWalking = false;
    m_messages->view()->selectNextUnread();
}

/// Goes on to another channel, where the list has no unread messages.
void MainWindow::leaveReadList()
{
    const MessageQuery query = m_messages->view()->query();
    const bool hasAll = query.channelUris.isEmpty() && !query.onlyFavorites && query.words.isEmpty();
    // Only one step: a channel whose messages were all read meanwhile must not send the user around.
    m_isWalking = !m_isWalking && !hasAll && m_channels->selectNextUnread();
    if (m_isWalking)
        m_messages->view()->selectNextUnread();
    else
        statusBar()->showMessage(tr("There are no unread messages"), 5000);
}

/// Ends what the user sees last: a search, or else a refresh.
void MainWindow::stop()
{
    if (!m_messages->endSearch())
        m_refresher->stop();
}

void MainWindow::saveState()
{
    QSettings settings;
    settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("window/bars"), QMainWindow::saveState());
    settings.setValue(QStringLiteral("window/columns"), m_columns->saveState());
    settings.setValue(QStringLiteral("window/rows"), m_rows->saveState());
    settings.setValue(QStringLiteral("window/header"), m_messages->view()->header()->saveState());
    settings.setValue(QStringLiteral("window/notify"), m_actions->notify->isChecked());
    settings.setValue(QStringLiteral("window/icons"), m_actions->showIcons->isChecked());
    m_channels->save(&settings);
}

void MainWindow::restoreState()
{
    const QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
    QMainWindow::restoreState(settings.value(QStringLiteral("window/bars")).toByteArray());
    m_columns->restoreState(settings.value(QStringLiteral("window/columns")).toByteArray());
    m_rows->restoreState(settings.value(QStringLiteral("window/rows")).toByteArray());
    m_messages->view()->header()->restoreState(settings.value(QStringLiteral("window/header")).toByteArray());
    m_actions->notify->setChecked(settings.value(QStringLiteral("window/notify"), true).toBool());
    m_notifier->setEnabled(m_actions->notify->isChecked());
    m_actions->showIcons->setChecked(settings.value(QStringLiteral("window/icons"), true).toBool());
    m_channels->icons()->setEnabled(m_actions->showIcons->isChecked());
    m_channels->restore(settings);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    saveState();
    m_refresher->stop();
    m_undoStack->clear();
    m_removals->carryOut();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls() || event->mimeData()->hasText())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    subscribe(urls.isEmpty() ? event->mimeData()->text().simplified() : urls.constFirst().toString());
    event->acceptProposedAction();
}

} // namespace Tidel
