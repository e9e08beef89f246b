// SPDX-License-Identifier: LGPL-2.1-or-later
#include "obstacle_p.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <iterator>

#include <fcntl.h>
#include <unistd.h>

namespace {

struct Obstacle
{
    int error;
    const char *text;
};

const Obstacle obstacles[] = {
    {ENOSPC, "the disk is full; free some space and try again"},
    {EDQUOT, "the space that this user may fill is full; free some space and try again"},
    {EACCES, "this user may not write there; check the owner and the permissions"},
    {EPERM, "this user may not write there; check the owner and the permissions"},
    {EROFS, "the file system is read-only; mount it for writing"},
};

// As much as SQLite needs for the index of its log.
constexpr off_t sizeOfTrial = 65536;

/// Returns 0 if a new file can be written in \a folder; otherwise returns the error number.
int tryToWrite(const QString &folder)
{
    QByteArray path = QFile::encodeName(folder) + "/trial-XXXXXX";
    const int file = mkostemp(path.data(), O_CLOEXEC);
    if (file < 0)
        return errno;
    const int error = posix_fallocate(file, 0, sizeOfTrial);
    ::close(file);
    unlink(path.constData());
    return error;
}

} // namespace

QString obstacle(int error)
{
    const auto known = std::find_if(std::begin(obstacles), std::end(obstacles),
                                    [error](const Obstacle &each) { return each.error == error; });
    return known == std::end(obstacles) ? qt_error_string(error) : QString::fromLatin1(known->text);
}

QString obstacleIn(const QString &folder)
{
    const int error = tryToWrite(folder);
    return error == 0 ? QString() : obstacle(error);
}
