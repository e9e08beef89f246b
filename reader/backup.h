// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_BACKUP_H
#define TIDEL_BACKUP_H

#include "error.h"
#include "store.h"

#include <QString>

namespace Tidel {

/**
 * Copies of the whole archive as one file: Turtle that is compressed with gzip, so that every program for RDF
 * can read it. It holds all that the store knows of channels, messages and enclosures, but no downloaded
 * file.
 *
 * \code
 * const Result<Backup::Size> size = Backup(store).write("/media/disk/archive.ttl.gz");
 * \endcode
 */
class TIDELREADER_EXPORT Backup
{
public:
    /// What an archive holds.
    struct Size
    {
        int channels = 0; ///< The number of channels.
        int messages = 0; ///< The number of messages.
        int enclosures = 0; ///< The number of enclosures, with the images of channels.
    };

    /// Works on \a store.
    explicit Backup(const Store &store);

    /// Writes the archive to \a fileName, which only the user may read, and returns its size. Replaces a file
    /// of this name when the copy is complete and on the disk. The copy shows the archive at one moment;
    /// other programs can write to the archive at the same time. Fails with Error::StoreFailed or
    /// Error::FileFailed.
    Result<Size> write(const QString &fileName) const;

    /// Fills the archive, which must be empty, from \a fileName, and returns its size then. Holds a
    /// WriteTurn. If it fails, the archive is still empty. Fails with Error::StoreFailed, Error::FileFailed
    /// if the file is no backup or cannot be read, or Error::NotEmpty.
    Result<Size> restore(const QString &fileName);

    /// Adds to the archive what it lacks of \a fileName, and returns how much that was. A channel is known by
    /// its link, a message by its link or its item, an enclosure by its address, and each of them by its URI
    /// if the archives are copies of one. Nothing is added twice, and nothing is deleted. Of texts that
    /// differ those of the archive stay; a message is a favorite or read as it was marked last. Takes a
    /// WriteTurn for each hundred messages: after an interruption, another call goes on. Fails as restore()
    /// does.
    Result<Size> merge(const QString &fileName);

private:
    Result<Size> size() const;

    Store m_store;
};

} // namespace Tidel

#endif
