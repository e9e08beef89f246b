// SPDX-License-Identifier: LGPL-2.1-or-later
#include "writeturn.h"

#include "../qtsparql/boundedwait_p.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>

#include <sys/file.h>

namespace Tidel {

namespace {

// QLockFile is not used here: it polls less and less often, and removes a lock that was held for long.
std::unique_ptr<QFile> openLock(const char *name)
{
    auto file = std::make_unique<QFile>(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                                        + QLatin1String("/tidel/") + QLatin1String(name));
    file->open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    return file;
}

bool lock(const QFile &file) { return flock(file.handle(), LOCK_EX | LOCK_NB) == 0; }

Failure failure(const QString &reason)
{
    return Failure(Error(Error::StoreFailed, QStringLiteral("write to the store"), reason));
}

/// What a process writes into the lock file when its turn begins.
struct Holder
{
    qint64 process;
    qint64 since; // seconds since 1970
    QString name;
};

constexpr int noteSize = 200;

// The note has always the same size: some file systems wait for the disk when a file that was cut is closed.
void note(QFile *file, const Holder &holder)
{
    const QString text = QStringLiteral("%1 %2 %3").arg(holder.process).arg(holder.since).arg(holder.name);
    file->seek(0);
    file->write(text.toUtf8().leftJustified(noteSize, ' ', true));
}

Holder holderOf(QFile *file)
{
    const QString text = QString::fromUtf8(file->read(noteSize)).simplified();
    const QLatin1Char space(' ');
    return {text.section(space, 0, 0).toLongLong(), text.section(space, 1, 1).toLongLong(),
            text.section(space, 2)};
}

QString waitedFor(const Holder &holder)
{
    return QStringLiteral(
               "%1 (process %2) has been writing for %3 seconds; wait until it has ended, or end it")
        .arg(holder.name)
        .arg(holder.process)
        .arg(QDateTime::currentSecsSinceEpoch() - holder.since);
}

} // namespace

// Who waits for the turn has the lock of the next one. A program that has ended its turn needs this lock
// first, and so cannot overtake.
Result<WriteTurn> WriteTurn::take(int seconds)
{
    const std::unique_ptr<QFile> next = openLock("writing-next.lock");
    std::unique_ptr<QFile> turn = openLock("writing.lock");
    for (const QFile *file : {next.get(), turn.get()}) {
        if (!file->isOpen())
            return failure(QStringLiteral("cannot open %1: %2; check the permissions and the free space")
                               .arg(file->fileName(), file->errorString()));
    }
    bool isNext = false;
    const auto isReached = [&] {
        isNext = isNext || lock(*next);
        return isNext && lock(*turn);
    };
    // Who waits may have been stopped; that is no reason to fail while nobody has the turn.
    const bool isMine = waitUntil(isReached, seconds * 1000) || lock(*turn);
    if (!isMine)
        return failure(waitedFor(holderOf(turn.get())));
    const qint64 process = QCoreApplication::applicationPid();
    const bool followsOwn = holderOf(turn.get()).process == process;
    note(turn.get(), {process, QDateTime::currentSecsSinceEpoch(), QCoreApplication::applicationName()});
    return WriteTurn(std::move(turn), followsOwn);
}

WriteTurn::WriteTurn(std::unique_ptr<QFile> lock, bool followsOwn)
    : m_lock(std::move(lock)), m_followsOwn(followsOwn)
{
}

WriteTurn::WriteTurn(WriteTurn &&other) noexcept = default;
WriteTurn::~WriteTurn() = default;

} // namespace Tidel
