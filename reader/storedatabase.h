// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STOREDATABASE_H
#define TIDEL_STOREDATABASE_H

#include "error.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace Tidel {

/// What was saved of a damaged database.
struct SavedContents
{
    int channels = 0;
    int messages = 0;
    int favorites = 0; ///< Of the messages.
    int enclosures = 0;
    QString damagedFolder; ///< Where the damaged files are now.
};

/**
 * The files of the user's store, below Tracker. No Store may be open in this process, because opening a
 * damaged one can fail.
 */
class TIDELREADER_EXPORT StoreDatabase
{
public:
    /// Hears how many of all steps are done.
    using Progress = std::function<void(int done, int all)>;

    /// The folder of the store, which need not exist.
    static QString folder();
    /// Returns true if there is a database; otherwise returns false.
    static bool exists();

    /// What SQLite finds damaged in the database, a line each; empty if it is sound. Changes nothing. Fails
    /// if the file cannot be opened for another reason. The time that this takes grows with the size of the
    /// file, two seconds for a gigabyte or so if it is in memory.
    static Result<QStringList> damage();

    /// Copies what SQLite can read of the damaged database into a new one, which then takes its place. The
    /// old files move to a folder `damaged-DATE` in the folder of the store, and nothing is deleted. Messages
    /// whose channel is lost get a channel with the title "Salvaged messages". Run StoreCheck::repair()
    /// afterwards, because values can be lost too. Takes a WriteTurn for the whole time. If it fails or is
    /// interrupted, it can be repeated.
    static Result<SavedContents> salvage(const Progress &progress = {});
};

} // namespace Tidel

#endif
