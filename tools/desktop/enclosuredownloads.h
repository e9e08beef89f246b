// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ENCLOSUREDOWNLOADS_H
#define TIDEL_DESKTOP_ENCLOSUREDOWNLOADS_H

#include <TidelReader/archivedownload.h>

#include <QFuture>
#include <QSet>
#include <QWidget>

namespace Tidel {

class Archive;

/// Downloads enclosures to the folder of downloads, and shows a row for each one that is under way.
class EnclosureDownloads : public QWidget
{
    Q_OBJECT

public:
    explicit EnclosureDownloads(Archive *archive, QWidget *parent = nullptr);

    /// Downloads the enclosure \a uri, whose file is \a name, unless that is under way.
    void download(const QString &uri, const QString &name);

Q_SIGNALS:
    /// An enclosure was downloaded to the file \a path.
    void downloaded(const QString &path);
    /// The user has canceled a download. What has come may be there for the next one.
    void canceled();
    /// An enclosure could not be downloaded; \a text is for the user.
    void failed(const QString &text);

private:
    void tell(const QFuture<ArchiveDownload> &download);

    Archive *const m_archive;
    QSet<QString> m_running;
};

} // namespace Tidel

#endif
