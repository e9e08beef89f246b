// SPDX-License-Identifier: LGPL-2.1-or-later
#include "importexport.h"

#include "answer.h"
#include "subscriptionfiles.h"

#include <QFileDialog>

namespace Tidel {

ImportExport::ImportExport(Archive *archive, QWidget *window)
    : QObject(window), m_archive(archive), m_window(window)
{
}

void ImportExport::importFile()
{
    const QString path = QFileDialog::getOpenFileName(m_window, tr("Import Channels"), {},
                                                      tr("Lists of channels (*.opml *.xml);;All files (*)"));
    if (path.isEmpty())
        return;
    whenAnswered(importChannels(m_archive, path), this, [this](const Result<ImportOutcome> &outcome) {
        Q_EMIT ended(outcome ? outcome->toString() : outcome.error().text());
        if (outcome && !outcome->uris.isEmpty())
            Q_EMIT imported(outcome->uris);
    });
}

void ImportExport::exportFile()
{
    const QString path = QFileDialog::getSaveFileName(m_window, tr("Export Channels"), tr("channels.opml"),
                                                      tr("OPML (*.opml)"));
    if (path.isEmpty())
        return;
    whenAnswered(exportChannels(m_archive, path), this, [this](const Result<int> &count) {
        Q_EMIT ended(count ? tr("Exported %n channel(s)", nullptr, *count) : count.error().text());
    });
}

} // namespace Tidel
