// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOWNLOADS_H
#define TIDEL_DOWNLOADS_H

#include <QList>
#include <QObject>
#include <QString>

class FeedEnclosure;

namespace Tidel {

class FeedStore;
class Output;

/// The folder that enclosures are downloaded into where no other is named: `tidel` in the user's downloads.
QString downloadFolder();

/// Removes the downloaded files of enclosures that the store lets go, while it lives. A file anywhere but in
/// the download folder is the user's own and stays.
class DownloadRemover
{
public:
    DownloadRemover(FeedStore &store, Output &output);
    Q_DISABLE_COPY(DownloadRemover)

    /// How many enclosures the store has let go.
    int enclosures() const { return m_enclosures; }
    /// How many files were removed.
    int files() const { return m_files; }

private:
    void remove(const QList<FeedEnclosure> &enclosures);

    Output &m_output;
    QObject m_receiver;
    int m_enclosures = 0;
    int m_files = 0;
};

} // namespace Tidel

#endif
