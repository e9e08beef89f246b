// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_DOWNLOADROW_H
#define TIDEL_DESKTOP_DOWNLOADROW_H

#include <TidelReader/archivedownload.h>

#include <QFutureWatcher>
#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QProgressBar)

namespace Tidel {

/// The progress of one download, with a button that cancels it. Deletes itself when it has ended.
class DownloadRow : public QWidget
{
    Q_OBJECT

public:
    /// Shows \a download of the file \a name.
    DownloadRow(const QString &name, const QFuture<ArchiveDownload> &download, QWidget *parent = nullptr);

private:
    void showProgress();

    QFutureWatcher<ArchiveDownload> m_watcher;
    QProgressBar *const m_bar;
    QLabel *const m_bytes;
};

} // namespace Tidel

#endif
