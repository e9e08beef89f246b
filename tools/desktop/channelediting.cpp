// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channelediting.h"

#include "answer.h"
#include "pendingremovals.h"
#include "propertiesdialog.h"
#include "pruning.h"

#include <TidelReader/archive.h>
#include <TidelReader/channelcontent.h>
#include <TidelReader/folders.h>

#include <QCheckBox>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

namespace Tidel {

namespace {

Result<FeedChannel> channelOf(const Store &store, const QString &uri)
{
    return Channels(store).all().and_then(
        [&uri](const QList<FeedChannel> &channels) { return Channels::find(channels, uri); });
}

/// What goes with a channel, in one sentence.
QString lossOf(const ChannelContent &content)
{
    QStringList parts{ChannelEditing::tr("%n message(s)", nullptr, content.messages)};
    if (content.favorites > 0)
        parts.append(ChannelEditing::tr("%n of them favorite(s)", nullptr, content.favorites));
    if (!content.files.isEmpty())
        parts.append(ChannelEditing::tr("%n downloaded file(s)", nullptr, int(content.files.size())));
    return parts.join(QLatin1String(", "));
}

} // namespace

ChannelEditing::ChannelEditing(Archive *archive, PendingRemovals *removals, QWidget *window)
    : QObject(window), m_archive(archive), m_removals(removals), m_window(window)
{
}

void ChannelEditing::change(const std::function<Result<void>(const Store &)> &work)
{
    whenAnswered(m_archive->change(work), this, [this](const Result<void> &changed) {
        if (!changed)
            Q_EMIT failed(changed.error().text());
    });
}

void ChannelEditing::rename(const QString &uri, const QString &title)
{
    change([uri, title](const Store &store) {
        return channelOf(store, uri).and_then([&](const FeedChannel &channel) {
            return Channels(store).edit(channel, title, channel.link());
        });
    });
}

void ChannelEditing::move(const QStringList &uris, const QString &path)
{
    change([uris, path](const Store &store) {
        Result<void> moved;
        for (const QString &uri : uris)
            moved = moved.and_then([&] { return Folders(store).move(uri, path); });
        return moved;
    });
}

void ChannelEditing::askWhereTo(const QString &uri, const QStringList &folders, const QString &current)
{
    auto *dialog = new QInputDialog(m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Move to Folder"));
    dialog->setLabelText(tr("Folder, such as News/World. Leave it empty for no folder."));
    dialog->setComboBoxEditable(true);
    dialog->setComboBoxItems(QStringList{QString()} + folders);
    dialog->setTextValue(current);
    connect(dialog, &QInputDialog::textValueSelected, this,
            [this, uri](const QString &text) { move({uri}, Folders::path(Folders::names(text))); });
    dialog->open();
}

void ChannelEditing::setProperties(const ChannelProperties &properties)
{
    change([properties](const Store &store) { return properties.save(store); });
    prune({properties.channel.uri()});
}

void ChannelEditing::prune(const QStringList &uris)
{
    if (!uris.isEmpty())
        change([uris](const Store &store) { return Tidel::prune(store, uris); });
}

void ChannelEditing::askToUnsubscribe(const QString &uri, const QString &title)
{
    const auto content =
        m_archive->read([uri](const Store &store) { return ChannelContent::of(store, uri); });
    whenAnswered(content, this, [this, uri, title](const Result<ChannelContent> &found) {
        if (found)
            ask(uri, title, lossOf(*found), found->favorites);
        else
            Q_EMIT failed(found.error().text());
    });
}

void ChannelEditing::ask(const QString &uri, const QString &title, const QString &loss, int favorites)
{
    auto *box = new QMessageBox(QMessageBox::Question, tr("Unsubscribe"),
                                tr("Unsubscribe from “%1”?").arg(title), QMessageBox::Cancel, m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(tr("This deletes %1. You can undo it until you close the window.").arg(loss));
    const QPushButton *confirm = box->addButton(tr("Unsubscribe"), QMessageBox::AcceptRole);
    if (favorites > 0) {
        box->setCheckBox(new QCheckBox(tr("Keep the favorites")));
        box->checkBox()->setChecked(true);
    }
    connect(confirm, &QPushButton::clicked, this, [this, box, uri, title] {
        const bool keeps = box->checkBox() && box->checkBox()->isChecked();
        m_removals->removeChannel(uri, title, keeps ? Channels::KeepFavorites : Channels::DeleteFavorites);
    });
    box->open();
}

} // namespace Tidel
