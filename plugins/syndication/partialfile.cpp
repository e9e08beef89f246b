// SPDX-License-Identifier: LGPL-2.1-or-later
#include "partialfile.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <TidelReader/downloadfolder.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tidel {

namespace {

const QLatin1String addressKey("address");
const QLatin1String validatorKey("validator");
const QLatin1String totalKey("total");

constexpr qint64 maximumNoteSize = 64LL * 1024;

/// The permissions of a new file. Only its owner can read an unfinished one.
mode_t usualMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// Returns true if \a descriptor is the regular file at \a path; otherwise returns false.
bool isAt(int descriptor, const QByteArray &path)
{
    struct stat opened = {};
    struct stat named = {};
    return fstat(descriptor, &opened) == 0 && lstat(path.constData(), &named) == 0
        && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino && S_ISREG(opened.st_mode);
}

} // namespace

PartialFile::~PartialFile()
{
    if (!resumePoint().isValid() && !isComplete())
        discard();
}

bool PartialFile::open(const QString &folder, const QString &address)
{
    return openShared(folder + QLatin1Char('/') + DownloadFolder::partName(address)) || openPrivate(folder);
}

bool PartialFile::openShared(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int descriptor = ::open(name.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    // The one who had the lock may have moved the file to its place in the meantime.
    const bool isMine = flock(descriptor, LOCK_EX | LOCK_NB) == 0 && isAt(descriptor, name);
    if (!isMine
        || !m_file.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered, QFile::AutoCloseHandle)) {
        close(descriptor);
        return false;
    }
    m_path = path;
    m_isShared = true;
    readNote();
    return m_file.seek(m_file.size());
}

bool PartialFile::openPrivate(const QString &folder)
{
    QByteArray name = QFile::encodeName(folder + QLatin1String("/.tidel-XXXXXX.part"));
    const int descriptor = mkostemps(name.data(), 5, O_CLOEXEC);
    if (descriptor < 0)
        return false;
    m_path = QFile::decodeName(name);
    return m_file.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered, QFile::AutoCloseHandle);
}

QString PartialFile::notePath() const { return DownloadFolder::noteOfPart(m_path); }

void PartialFile::readNote()
{
    QFile file(notePath());
    const QByteArray json = file.open(QIODevice::ReadOnly) ? file.read(maximumNoteSize) : QByteArray();
    const QJsonObject note = QJsonDocument::fromJson(json).object();
    m_origin.address = QUrl::fromEncoded(note.value(addressKey).toString().toLatin1());
    m_origin.validator = note.value(validatorKey).toString().toLatin1();
    m_origin.total = qint64(note.value(totalKey).toDouble(-1));
}

void PartialFile::writeNote() const
{
    const QJsonObject note{{addressKey, QString::fromLatin1(m_origin.address.toEncoded())},
                           {validatorKey, QString::fromLatin1(m_origin.validator)},
                           {totalKey, double(m_origin.total)}};
    QFile file(notePath());
    // Without a note the next download begins again.
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        file.write(QJsonDocument(note).toJson(QJsonDocument::Compact));
    }
}

ResumePoint PartialFile::resumePoint() const
{
    ResumePoint point = m_origin;
    point.offset = m_isShared && !m_path.isEmpty() ? m_file.size() : 0;
    return point;
}

bool PartialFile::isComplete() const
{
    const ResumePoint point = resumePoint();
    return !point.validator.isEmpty() && point.total > 0 && point.offset == point.total;
}

// At any moment the bytes in the file are the beginning of what the note says, or there is no note.
void PartialFile::restart(const ResumePoint &point)
{
    if (m_isShared)
        QFile::remove(notePath());
    // A closed file takes no bytes.
    if (!m_file.resize(0) || !m_file.seek(0))
        m_file.close();
    m_origin = point;
    if (m_isShared && !point.validator.isEmpty())
        writeNote();
}

bool PartialFile::finish()
{
    return fdatasync(m_file.handle()) == 0 && fchmod(m_file.handle(), usualMode()) == 0;
}

bool PartialFile::moveTo(const QString &path)
{
    if (!QFile::rename(m_path, path))
        return false;
    if (m_isShared)
        QFile::remove(notePath());
    m_path.clear();
    return true;
}

void PartialFile::discard()
{
    if (m_path.isEmpty())
        return;
    if (m_isShared)
        QFile::remove(notePath());
    QFile::remove(m_path);
    m_path.clear();
}

} // namespace Tidel
