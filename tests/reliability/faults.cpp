// SPDX-License-Identifier: LGPL-2.1-or-later
// Stands in front of the functions of the C library that change files, if it is named in LD_PRELOAD. The
// environment says what it does to changes below the folder TIDEL_FAULTS_FOLDER:
//   TIDEL_FAULTS_KILL     N: ends the process before change N, counted from 1
//   TIDEL_FAULTS_TEAR     N: the same, but if change N is a write, its first half is written
//   TIDEL_FAULTS_SPACE    bytes by which files may grow together; then the disk is full
//   TIDEL_FAULTS_JOURNAL  the file to which each change is appended once it is done
// Without them it only lets the standard output write each line at once, so that a line is seen before its
// process is killed.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

template <typename Function> Function *realFunction(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

#define REAL(name) static const auto real = realFunction<decltype(::name)>(#name)

std::string setting(const char *name)
{
    const char *value = getenv(name);
    return value ? value : std::string();
}

long number(const char *name, long otherwise)
{
    const std::string value = setting(name);
    return value.empty() ? otherwise : std::stol(value);
}

const std::string folder = setting("TIDEL_FAULTS_FOLDER");
const std::string journalName = setting("TIDEL_FAULTS_JOURNAL");
const long killAt = number("TIDEL_FAULTS_KILL", 0);
const long tearAt = number("TIDEL_FAULTS_TEAR", 0);
std::atomic<long> space{number("TIDEL_FAULTS_SPACE", LONG_MAX / 2)};
std::atomic<long> changes{0};

const bool linesAreWritten = setvbuf(stdout, nullptr, _IOLBF, 0) == 0;

/// A record of the journal. `path`, `target` and the data follow it.
struct Record
{
    char kind;
    std::uint32_t pathSize;
    std::uint32_t targetSize;
    std::uint64_t offset;
    std::uint64_t dataSize;
} __attribute__((packed));

bool isWatched(const std::string &path)
{
    return !folder.empty() && path.compare(0, folder.size(), folder) == 0;
}

std::string absolute(const char *path)
{
    if (path[0] == '/')
        return path;
    char current[PATH_MAX];
    return std::string(getcwd(current, sizeof current) ? current : "") + '/' + path;
}

std::string pathOf(int file)
{
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t size = folder.empty() ? -1 : readlink(link.c_str(), path, sizeof path);
    return size > 0 ? std::string(path, size_t(size)) : std::string();
}

void append(int journal, const void *bytes, size_t size)
{
    REAL(write);
    if (size > 0 && real(journal, bytes, size) != ssize_t(size))
        abort();
}

void note(char kind, const std::string &path, std::uint64_t offset = 0, const void *data = nullptr,
          size_t size = 0, const std::string &target = std::string())
{
    if (journalName.empty())
        return;
    static std::mutex mutex;
    const std::lock_guard<std::mutex> guard(mutex);
    REAL(open);
    static const int journal = real(journalName.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const Record record{kind, std::uint32_t(path.size()), std::uint32_t(target.size()), offset, size};
    append(journal, &record, sizeof record);
    append(journal, path.data(), path.size());
    append(journal, target.data(), target.size());
    append(journal, data, size);
}

[[noreturn]] void die()
{
    kill(getpid(), SIGKILL);
    for (;;)
        pause();
}

/// Counts a change of \a path. Returns true if half of it is to be done; otherwise returns false. Does not
/// return if the process ends before it.
bool isTorn(const std::string &path)
{
    if (!isWatched(path))
        return false;
    const long count = ++changes;
    if (count == killAt)
        die();
    return count == tearAt;
}

bool takeSpace(long bytes)
{
    if (bytes <= 0 || (space -= bytes) >= 0)
        return true;
    space = 0;
    errno = ENOSPC;
    return false;
}

long sizeOf(int file)
{
    struct stat status = {};
    return fstat(file, &status) == 0 ? long(status.st_size) : 0;
}

/// The bytes that the disk gets back when the entry \a name goes; 0 if the file has another name.
long sizeOf(const char *name)
{
    struct stat status = {};
    return lstat(name, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 ? long(status.st_size)
                                                                                        : 0;
}

bool exists(const char *path)
{
    const int before = errno;
    const bool is = faccessat(AT_FDCWD, path, F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    errno = before;
    return is;
}

/// Writes through \a write, a function of the place where data begins and its size.
template <typename Write> ssize_t change(int file, const void *data, size_t size, long offset, Write write)
{
    const std::string path = pathOf(file);
    if (!isWatched(path))
        return write(size);
    if (isTorn(path)) {
        write(size / 2);
        die();
    }
    if (!takeSpace(offset + long(size) - sizeOf(file)))
        return -1;
    const ssize_t written = write(size);
    if (written > 0)
        note('w', path, std::uint64_t(offset), data, size_t(written));
    return written;
}

int opened(const char *name, int flags, mode_t mode, int (*real)(const char *, int, ...))
{
    const std::string path = absolute(name);
    if (!isWatched(path) || (flags & (O_CREAT | O_TRUNC)) == 0)
        return real(name, flags, mode);
    const bool isNew = !exists(name);
    if (isTorn(path))
        die();
    if (isNew && (flags & O_CREAT) && space <= 0) {
        errno = ENOSPC;
        return -1;
    }
    const int file = real(name, flags, mode);
    if (file >= 0 && isNew)
        note('c', path);
    else if (file >= 0 && (flags & O_TRUNC))
        note('t', path);
    return file;
}

/// Runs \a action, which changes the entry \a name of a folder, and notes it.
template <typename Action>
int changeEntry(char kind, const char *name, Action action, const std::string &target = std::string())
{
    const std::string path = absolute(name);
    if (isTorn(path))
        die();
    if (kind == 'd' && isWatched(path) && space <= 0 && !exists(name)) {
        errno = ENOSPC;
        return -1;
    }
    const int before = errno;
    const long freed = kind == 'u' ? sizeOf(name) : kind == 'r' ? sizeOf(target.c_str()) : 0;
    errno = before;
    const int result = action();
    if (result == 0 && isWatched(path)) {
        space += freed;
        note(kind, path, 0, nullptr, 0, target);
    }
    return result;
}

template <typename Action> int resized(int file, long size, Action action)
{
    const std::string path = pathOf(file);
    if (!isWatched(path))
        return action();
    if (isTorn(path))
        die();
    const long before = sizeOf(file);
    if (!takeSpace(size - before))
        return -1;
    const int result = action();
    const long after = sizeOf(file);
    space += std::max(size, before) - after;
    if (after != before)
        note('t', path, std::uint64_t(after));
    return result;
}

int synced(int file, int (*real)(int))
{
    const std::string path = pathOf(file);
    if (isTorn(path))
        die();
    const int result = real(file);
    if (result == 0 && isWatched(path))
        note('s', path);
    return result;
}

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) ? mode_t(va_arg(arguments, unsigned int)) : 0;
}

} // namespace

#define OPEN(name)                                                                                           \
    extern "C" int name(const char *path, int flags, ...)                                                    \
    {                                                                                                        \
        REAL(name);                                                                                          \
        va_list arguments;                                                                                   \
        va_start(arguments, flags);                                                                          \
        const mode_t mode = modeOf(flags, arguments);                                                        \
        va_end(arguments);                                                                                   \
        return opened(path, flags, mode, real);                                                              \
    }

OPEN(open)
OPEN(open64)

#define SYNC(name)                                                                                           \
    extern "C" int name(int file)                                                                            \
    {                                                                                                        \
        REAL(name);                                                                                          \
        return synced(file, real);                                                                           \
    }

SYNC(fsync)
SYNC(fdatasync)

#define WRITE_AT(name, Offset)                                                                               \
    extern "C" ssize_t name(int file, const void *data, size_t size, Offset offset)                          \
    {                                                                                                        \
        REAL(name);                                                                                          \
        return change(file, data, size, long(offset),                                                        \
                      [&](size_t part) { return real(file, data, part, offset); });                          \
    }

WRITE_AT(pwrite, off_t)
WRITE_AT(pwrite64, off64_t)

#define RESIZE(name, Offset)                                                                                 \
    extern "C" int name(int file, Offset size) noexcept                                                      \
    {                                                                                                        \
        REAL(name);                                                                                          \
        return resized(file, long(size), [&] { return real(file, size); });                                  \
    }

RESIZE(ftruncate, off_t)
RESIZE(ftruncate64, off64_t)

#define ALLOCATE(name, Offset)                                                                               \
    extern "C" int name(int file, int mode, Offset offset, Offset size)                                      \
    {                                                                                                        \
        REAL(name);                                                                                          \
        const auto action = [&] { return real(file, mode, offset, size); };                                  \
        return resized(file, long(offset + size), action);                                                   \
    }

ALLOCATE(fallocate, off_t)
ALLOCATE(fallocate64, off64_t)

extern "C" ssize_t write(int file, const void *data, size_t size)
{
    REAL(write);
    const bool isAppending = (fcntl(file, F_GETFL) & O_APPEND) != 0;
    const long offset = isAppending ? sizeOf(file) : long(lseek(file, 0, SEEK_CUR));
    return change(file, data, size, offset, [&](size_t part) { return real(file, data, part); });
}

extern "C" int mkdir(const char *path, mode_t mode) noexcept
{
    REAL(mkdir);
    return changeEntry('d', path, [&] { return real(path, mode); });
}

extern "C" int unlink(const char *path) noexcept
{
    REAL(unlink);
    return changeEntry('u', path, [&] { return real(path); });
}

extern "C" int remove(const char *path) noexcept
{
    REAL(remove);
    return changeEntry('u', path, [&] { return real(path); });
}

extern "C" int rmdir(const char *path) noexcept
{
    REAL(rmdir);
    return changeEntry('u', path, [&] { return real(path); });
}

extern "C" int rename(const char *path, const char *target) noexcept
{
    REAL(rename);
    return changeEntry(
        'r', path, [&] { return real(path, target); }, absolute(target));
}

extern "C" int renameat2(int oldFolder, const char *path, int newFolder, const char *target,
                         unsigned int flags) noexcept
{
    REAL(renameat2);
    return changeEntry(
        'r', path, [&] { return real(oldFolder, path, newFolder, target, flags); }, absolute(target));
}
