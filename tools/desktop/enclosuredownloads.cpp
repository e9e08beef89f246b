// SPDX-License-Identifier: LGPL-2.1-or-later
#include "enclosuredownloads.h"

#include "downloadrow.h"

#include <TidelReader/archive.h>
#include <TidelReader/downloadfolder.h>

#include <QFutureWatcher>
#include <QVBoxLayout>

namespace Tidel {

EnclosureDownloads::EnclosureDownloads(Archive *archive, QWidget *parent)
    : QWidget(parent), m_archive(archive)
{
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
}

void EnclosureDownloads::download(const QString &uri, const QString &name)
{
    if (m_running.contains(uri))
        return;
    m_running.insert(uri);
    const QFuture<ArchiveDownload> download = m_archive->downloadEnclosures({uri}, DownloadFolder::path());
    auto *watcher = new QFutureWatcher<ArchiveDownload>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, uri] {
        watcher->deleteLater();
        m_running.remove(uri);
        tell(watcher->future());
    });
    watcher->setFuture(download);
    layout()->addWidget(new DownloadRow(name, download));
}

void EnclosureDownloads::tell(const QFuture<ArchiveDownload> &download)
{
    if (download.isCanceled()) {
        Q_EMIT canceled();
        return;
    }
    const DownloadResult result = download.result().result;
    if (result.isOk())
        Q_EMIT downloaded(result.path());
    else
        Q_EMIT failed(tr("Could not download the file: %1").arg(result.reason()));
}

} // namespace Tidel
