// SPDX-License-Identifier: LGPL-2.1-or-later
#include "subscribedialog.h"

#include <TidelReader/channels.h>
#include <TidelReader/documenturl.h>
#include <TidelReader/folders.h>
#include <TidelReader/link.h>

#include "answer.h"
#include "loginbox.h"

#include <feedplugininterface.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QFutureWatcher>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

namespace Tidel {

namespace {

/// Puts the channels with \a links into the folder \a path, and returns the URI of the last one.
Result<QString> putInto(const Store &store, const QStringList &links, const QString &path)
{
    QString last;
    for (const QString &link : links) {
        const Result<QString> uri = Channels(store).uri(link);
        if (!uri)
            return uri;
        if (uri->isEmpty())
            continue;
        const Result<void> moved = path.isEmpty() ? Result<void>() : Folders(store).move(*uri, path);
        if (!moved)
            return Failure(moved.error());
        last = *uri;
    }
    return last;
}

/// Keeps the passwords of \a addresses apart. The address of a channel stays as it is.
Result<QList<Logins::Trial>> tryOut(const Store &store, const QList<QUrl> &addresses)
{
    QList<Logins::Trial> trials;
    for (const QUrl &address : addresses) {
        const Result<QString> known = Channels(store).uri(Link::encoded(address));
        if (!known)
            return Failure(known.error());
        const auto trial = known->isEmpty() ? Logins::tryOut(address) : Logins::Trial{address, {}, false};
        if (!trial)
            return Failure(trial.error());
        trials.append(*trial);
    }
    return trials;
}

/// Gives the servers of \a trials that no channel uses the logins that they had before.
Result<void> restoreUnused(const Store &store, const QList<Logins::Trial> &trials)
{
    for (const Logins::Trial &trial : trials) {
        const Result<QString> known = Channels(store).uri(Link::encoded(trial.address));
        if (!known)
            return Failure(known.error());
        const bool isUnused = trial.isNew && known->isEmpty();
        const Result<void> restored = isUnused ? Logins::restore(trial) : Result<void>();
        if (!restored)
            return restored;
    }
    return {};
}

/// The link of the channel that \a download has added.
QString linkOf(const ArchiveDownload &download)
{
    const QVector<FoundFeed> feeds = download.result.foundFeeds();
    return Link::encoded(feeds.isEmpty() ? QUrl(download.subject) : feeds.constFirst().address);
}

} // namespace

SubscribeDialog::SubscribeDialog(Archive *archive, const QStringList &folders, const QString &folder,
                                 QWidget *parent)
    : QDialog(parent), m_archive(archive), m_address(new QLineEdit(this)), m_login(new LoginBox(this)),
      m_folder(new QComboBox(this)), m_feeds(new QListWidget(this)), m_state(new QLabel(this)),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Subscribe"));
    m_address->setPlaceholderText(tr("Address of a feed or of a web page"));
    m_address->setMinimumWidth(fontMetrics().averageCharWidth() * 50);
    m_folder->setEditable(true);
    m_folder->addItem(QString());
    m_folder->addItems(folders);
    m_folder->setEditText(folder);
    m_folder->lineEdit()->setPlaceholderText(tr("None"));
    m_feeds->setAccessibleName(tr("Feeds of the page"));
    m_feeds->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_feeds->hide();
    m_state->setWordWrap(true);
    m_state->setTextFormat(Qt::PlainText);
    m_state->hide();
    m_buttons->button(QDialogButtonBox::Ok)->setText(tr("Subscribe"));
    layOut();
    connect(m_buttons, &QDialogButtonBox::accepted, this, &SubscribeDialog::subscribe);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_address, &QLineEdit::textChanged, this, [this] {
        m_feeds->hide();
        m_login->hide();
        setBusy(false);
    });
    setBusy(false);
}

void SubscribeDialog::layOut()
{
    auto *layout = new QFormLayout(this);
    layout->addRow(tr("&Address:"), m_address);
    layout->addRow(tr("&Folder:"), m_folder);
    layout->addRow(m_state);
    layout->addRow(m_login);
    layout->addRow(m_feeds);
    layout->addRow(m_buttons);
}

SubscribeDialog::~SubscribeDialog()
{
    m_download.cancel();
    if (!m_isBusy)
        return;
    // Whether the logins work is not known.
    m_archive->change([logins = m_logins](const Store &store) {
        const bool isThere = logins.resultCount() > 0 && logins.result();
        return isThere ? restoreUnused(store, *logins.result()) : Result<void>();
    });
}

void SubscribeDialog::setAddress(const QString &address) { m_address->setText(address); }

void SubscribeDialog::setBusy(bool isBusy)
{
    m_isBusy = isBusy;
    m_address->setReadOnly(isBusy);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!isBusy && !m_address->text().trimmed().isEmpty());
}

/// Shows \a address as if the user had typed it.
void SubscribeDialog::showAddress(const QUrl &address)
{
    const QSignalBlocker blocker(m_address);
    m_address->setText(Link::encoded(address));
}

void SubscribeDialog::say(const QString &text)
{
    m_state->setText(text);
    m_state->show();
    grow();
}

/// Makes room for the texts, whose height depends on the width.
void SubscribeDialog::grow()
{
    layout()->activate();
    resize(width(), qMax(height(), layout()->totalHeightForWidth(width())));
}

/// The chosen feeds, or else the address that was typed.
QList<QUrl> SubscribeDialog::addresses() const
{
    QList<QUrl> chosen;
    if (m_feeds->isHidden()) {
        const QString text = m_address->text().trimmed();
        const bool isHost = !text.contains(QLatin1String("://")) && !text.startsWith(QLatin1Char('/'));
        chosen.append(documentUrl(isHost ? QLatin1String("https://") + text : text));
    }
    const QList<QListWidgetItem *> items = m_feeds->selectedItems();
    for (const QListWidgetItem *item : items)
        chosen.append(item->data(Qt::UserRole).toUrl());
    return chosen;
}

void SubscribeDialog::subscribe()
{
    QList<QUrl> wanted;
    const QList<QUrl> chosen = addresses();
    for (const QUrl &address : chosen)
        wanted.append(m_login->appliedTo(address));
    if (wanted.isEmpty())
        return;
    setBusy(true);
    say(tr("Looking for the feed..."));
    const auto keepApart = [wanted](const Store &store) { return tryOut(store, wanted); };
    m_logins = m_archive->change(keepApart);
    whenAnswered(m_logins, this, [this](const Result<QList<Logins::Trial>> &trials) {
        if (trials) {
            start(*trials);
            return;
        }
        setBusy(false);
        say(trials.error().text());
    });
}

void SubscribeDialog::start(const QList<Logins::Trial> &trials)
{
    QList<QUrl> wanted;
    for (const Logins::Trial &trial : trials)
        wanted.append(trial.address);
    if (m_feeds->isHidden() && trials.constFirst().isNew)
        showAddress(wanted.constFirst());
    m_download = m_archive->subscribe(wanted);
    auto *watcher = new QFutureWatcher<ArchiveDownload>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        watcher->deleteLater();
        finish(watcher->future().results());
    });
    watcher->setFuture(m_download);
}

void SubscribeDialog::finish(const QList<ArchiveDownload> &downloads)
{
    setBusy(false);
    QStringList links;
    QString problem;
    bool isLocked = false;
    for (const ArchiveDownload &download : downloads) {
        if (download.result.isOk())
            links.append(linkOf(download));
        else if (download.result.foundFeeds().size() > 1)
            offer(download.result.foundFeeds());
        else {
            restore(download);
            problem = download.result.reason();
            isLocked |= download.result.error() == 401;
        }
    }
    if (isLocked)
        askForLogin(trials().constFirst().address);
    else if (!problem.isEmpty())
        say(tr("Could not subscribe: %1").arg(problem));
    if (!links.isEmpty())
        put(links);
}

/// Forgets the password of \a failed, which may be the reason.
void SubscribeDialog::restore(const ArchiveDownload &failed)
{
    if (failed.result.error() == FeedDownloadAlreadyStored)
        return;
    const QList<Logins::Trial> tried = trials();
    for (const Logins::Trial &trial : tried) {
        if (trial.isNew && trial.address.toString() == failed.subject)
            m_archive->change([trial](const Store &) { return Logins::restore(trial); });
    }
}

void SubscribeDialog::askForLogin(const QUrl &address)
{
    const bool isFirst = m_login->isHidden() && !trials().constFirst().isNew;
    say(isFirst ? tr("This server asks who you are.") : tr("The server refuses this user or password."));
    m_login->ask(address);
    grow();
}

void SubscribeDialog::offer(const QVector<FoundFeed> &feeds)
{
    m_feeds->clear();
    for (const FoundFeed &feed : feeds) {
        const QString address = feed.address.toDisplayString();
        auto *item = new QListWidgetItem(feed.title.isEmpty() ? address : feed.title, m_feeds);
        item->setToolTip(address.toHtmlEscaped());
        item->setData(Qt::UserRole, feed.address);
    }
    m_feeds->setCurrentRow(0);
    m_feeds->show();
    m_feeds->setFocus();
    say(tr("This page has several feeds. Choose those that you want."));
}

void SubscribeDialog::put(const QStringList &links)
{
    const QString path = Folders::path(Folders::names(m_folder->currentText()));
    const auto put = [links, path](const Store &store) { return putInto(store, links, path); };
    whenAnswered(m_archive->change(put), this, [this](const Result<QString> &uri) {
        if (!uri) {
            say(uri.error().text());
            return;
        }
        Q_EMIT subscribed(*uri);
        accept();
    });
}

} // namespace Tidel
