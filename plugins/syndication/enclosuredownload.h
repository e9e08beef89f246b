// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCLOSUREDOWNLOAD_H
#define TIDEL_ENCLOSUREDOWNLOAD_H

#include "download.h"
#include "partialfile.h"

#include <QVariantMap>

#include <feedenclosure.h>

namespace Tidel {

/// Downloads the file of an enclosure to a folder and stores its location.
class EnclosureDownload : public Download
{
    Q_OBJECT

public:
    /// Creates the download of the enclosure \a enclosureUri to \a folder, which is created if necessary.
    EnclosureDownload(const DownloadTools &tools, const QString &enclosureUri, const QString &folder);

    void start() override;

    /// The argument of FeedPluginInterface::downloadEnclosureFinished() after a successful download.
    QVariantMap results() const;

Q_SIGNALS:
    /// Emitted when bytes have arrived. \a bytesTotal is -1 if the size is unknown.
    void progressed(qint64 bytesReceived, qint64 bytesTotal);

protected:
    void transferred(const Transfer &transfer) override { complete(transfer.mimeType()); }
    void failed(const Outcome &outcome) override;

private:
    /// Reads the enclosure and opens a partial file, unless the enclosure was downloaded before.
    Outcome prepare();
    /// Reads the enclosure from the store.
    Outcome readEnclosure();
    /// Asks for the file, or for what follows \a part.
    void ask(const ResumePoint &part);
    /// Ends the download, whose file is complete.
    void complete(const QString &mimeType);
    /// Stores where the complete file will be, and moves it there.
    Outcome keepFile(const QString &mimeType);
    /// The first path in the folder for a file from \a address that does not exist.
    QString freePath(const QUrl &address) const;
    /// Stores \a path and the size and type of the file.
    Outcome noteFile(const QString &path, const QString &mimeType);

    const QString m_uri;
    const QString m_folder;
    FeedEnclosure m_enclosure;
    PartialFile m_file;
    bool m_isResumed = false;
    QString m_path; // The path of the complete file.
};

} // namespace Tidel

#endif
