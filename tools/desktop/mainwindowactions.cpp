// SPDX-License-Identifier: LGPL-2.1-or-later
// What the actions of the window do.
#include "mainwindow.h"

#include "actions.h"
#include "answer.h"
#include "articlepane.h"
#include "channelediting.h"
#include "channelicons.h"
#include "channelview.h"
#include "importexport.h"
#include "keysdialog.h"
#include "marks.h"
#include "messagepane.h"
#include "noticebar.h"
#include "notifier.h"
#include "pendingremovals.h"
#include "propertiesdialog.h"
#include "refresher.h"
#include "savedsearches.h"
#include "subscribedialog.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>

namespace Tidel {

void MainWindow::connectActions()
{
    const auto onAction = [this](QAction *action, auto work) {
        connect(action, &QAction::triggered, this, work);
    };
    onAction(m_actions->subscribe, [this] { subscribe({}); });
    auto *files = new ImportExport(m_archive, this);
    connect(files, &ImportExport::ended, m_notice, &NoticeBar::show);
    connect(files, &ImportExport::imported, this,
            [this](const QStringList &uris) { m_refresher->refresh(uris, Archive::Forced); });
    onAction(m_actions->importChannels, [files] { files->importFile(); });
    onAction(m_actions->exportChannels, [files] { files->exportFile(); });
    onAction(m_actions->quit, [this] { close(); });
    onAction(m_actions->search, [this] { m_messages->startSearch(); });
    onAction(m_actions->saveSearch, [this] { saveSearch(); });
    onAction(m_actions->markAllRead, [this] { m_marks->setAllRead(m_messages->view()->query()); });
    onAction(m_actions->showIcons, [this](bool isWanted) {
        m_channels->icons()->setEnabled(isWanted);
        m_channels->icons()->look();
    });
    onAction(m_actions->notify, [this](bool isWanted) { m_notifier->setEnabled(isWanted); });
    onAction(m_actions->refresh,
             [this] { m_refresher->refresh(m_channels->query().channelUris, Archive::Forced); });
    onAction(m_actions->refreshAll, [this] { m_refresher->refresh({}, Archive::Forced); });
    onAction(m_actions->stop, [this] { stop(); });
    onAction(m_actions->rename, [this] { m_channels->edit(m_channels->currentIndex()); });
    onAction(m_actions->move, [this] {
        m_editing->askWhereTo(m_channels->channel(), m_channels->folders(), m_channels->folder());
    });
    onAction(m_actions->unsubscribe,
             [this] { m_editing->askToUnsubscribe(m_channels->channel(), m_channels->title()); });
    onAction(m_actions->removeSearch, [this] { m_searches->remove(m_channels->search()); });
    onAction(m_actions->properties, [this] { showProperties(); });
    onAction(m_actions->showKeys, [this] { KeysDialog(this).exec(); });
    onAction(m_actions->about, [this] { showAbout(); });
}

void MainWindow::connectMessageActions()
{
    const auto onAction = [this](QAction *action, auto work) {
        connect(action, &QAction::triggered, this, work);
    };
    onAction(m_actions->readOn, [this] { readOn(); });
    onAction(m_actions->nextUnread, [this] { nextUnread(); });
    onAction(m_actions->previous, [this] { m_messages->view()->selectPrevious(); });
    onAction(m_actions->toggleRead, [this] {
        const bool isRead = m_messages->view()->current(MessageModel::IsReadRole).toBool();
        m_marks->setRead(m_messages->view()->selected(), !isRead);
    });
    onAction(m_actions->toggleFavorite, [this] {
        const bool isFavorite = m_messages->view()->current(MessageModel::IsFavoriteRole).toBool();
        m_marks->setFavorite(m_messages->view()->selected(), !isFavorite);
    });
    onAction(m_actions->remove, [this] { m_removals->removeMessages(m_messages->view()->selected()); });
    onAction(m_actions->openInBrowser, [this] { QDesktopServices::openUrl(m_article->link()); });
}

void MainWindow::subscribe(const QString &address)
{
    auto *dialog = new SubscribeDialog(m_archive, m_channels->folders(), m_channels->folder(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAddress(address);
    connect(dialog, &SubscribeDialog::subscribed, m_channels, &ChannelView::select);
    connect(dialog, &SubscribeDialog::subscribed, m_channels->icons(), &ChannelIcons::look);
    dialog->open();
}

void MainWindow::showProperties()
{
    const auto read = m_archive->read(
        [uri = m_channels->channel()](const Store &store) { return ChannelProperties::of(store, uri); });
    whenAnswered(read, this, [this](const Result<ChannelProperties> &properties) {
        if (!properties) {
            m_notice->show(properties.error().text());
            return;
        }
        auto *dialog = new PropertiesDialog(*properties, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QDialog::accepted, this,
                [this, dialog] { m_editing->setProperties(dialog->properties()); });
        dialog->open();
    });
}

/// Saves what is searched for, in the row that it is searched for in. That of a saved search is its own.
void MainWindow::saveSearch()
{
    ChannelSearch search = m_searches->find(m_channels->search());
    if (search.uri.isEmpty()) {
        search.placeKind = m_channels->kind();
        search.place =
            search.placeKind == ChannelModel::FolderKind ? m_channels->folder() : m_channels->channel();
    }
    search.words = m_messages->words();
    m_channels->select(m_searches->add(search));
    m_messages->setFocus();
}

void MainWindow::showAbout()
{
    QMessageBox::about(this, tr("About Tidel Desktop"),
                       tr("Tidel Desktop %1\nA reader of feeds for large archives.")
                           .arg(QApplication::applicationVersion()));
}

} // namespace Tidel
