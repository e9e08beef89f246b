// SPDX-License-Identifier: LGPL-2.1-or-later
#include "downloadrow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>

namespace Tidel {

namespace {

/// \a done of \a all KiB, which are 0 if they are unknown.
QString shownProgress(int done, int all)
{
    const auto size = [](int kibibytes) { return QLocale().formattedDataSize(kibibytes * qint64(1024), 1); };
    if (all <= 0)
        return done > 0 ? size(done) : QString();
    return DownloadRow::tr("%1 of %2 (%3%)").arg(size(done), size(all)).arg(qint64(done) * 100 / all);
}

} // namespace

DownloadRow::DownloadRow(const QString &name, const QFuture<ArchiveDownload> &download, QWidget *parent)
    : QWidget(parent), m_bar(new QProgressBar(this)), m_bytes(new QLabel(this))
{
    auto *nameLabel =
        new QLabel(fontMetrics().elidedText(name, Qt::ElideMiddle, fontMetrics().averageCharWidth() * 40));
    nameLabel->setTextFormat(Qt::PlainText);
    auto *cancel = new QPushButton(tr("Cancel"), this);
    cancel->setAccessibleName(tr("Cancel the download of %1").arg(name));
    m_bar->setAccessibleName(tr("Progress of the download of %1").arg(name));
    m_bar->setRange(0, 0);
    m_bar->setTextVisible(false);
    m_bar->setFixedWidth(fontMetrics().averageCharWidth() * 25);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 2, 6, 2);
    layout->addWidget(nameLabel, 1);
    layout->addWidget(m_bytes);
    layout->addWidget(m_bar);
    layout->addWidget(cancel);
    connect(cancel, &QPushButton::clicked, &m_watcher, &QFutureWatcherBase::cancel);
    connect(&m_watcher, &QFutureWatcherBase::progressRangeChanged, this, &DownloadRow::showProgress);
    connect(&m_watcher, &QFutureWatcherBase::progressValueChanged, this, &DownloadRow::showProgress);
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &QObject::deleteLater);
    m_watcher.setFuture(download);
}

void DownloadRow::showProgress()
{
    const int done = m_watcher.progressValue();
    const int all = m_watcher.progressMaximum();
    m_bar->setRange(0, all);
    m_bar->setValue(done);
    m_bytes->setText(shownProgress(done, all));
}

} // namespace Tidel
