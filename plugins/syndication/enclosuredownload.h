// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCLOSUREDOWNLOAD_H
#define TIDEL_ENCLOSUREDOWNLOAD_H

#include "download.h"

#include <QTemporaryFile>
#include <QVariantMap>

#include <feedenclosure.h>

namespace Tidel {

/// Downloads the file of an enclosure to a folder, and stores where it is.
class EnclosureDownload : public Download
{
    Q_OBJECT

public:
    EnclosureDownload(const DownloadTools &tools, const QString &enclosureUri, const QString &folder);

    void start() override;

    /// The argument of FeedPluginInterface::downloadEnclosureFinished() after a successful download.
    QVariantMap results() const;

Q_SIGNALS:
    void progressed(qint64 bytesReceived, qint64 bytesTotal);

protected:
    void transferred(const Transfer &transfer) override;

private:
    Outcome prepare();
    Outcome readEnclosure();
    Outcome keepFile(const QUrl &address);
    Outcome noteFile(const QString &mimeType);

    const QString m_uri;
    const QString m_folder;
    FeedEnclosure m_enclosure;
    QTemporaryFile m_file;
    QString m_path; // of the complete file
};

} // namespace Tidel

#endif
