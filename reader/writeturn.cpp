// SPDX-License-Identifier: LGPL-2.1-or-later
#include "writeturn.h"

#include "../qtsparql/filelock_p.h"
#include "../qtsparql/obstacle_p.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <atomic>

namespace Tidel {

namespace {

std::unique_ptr<FileLock> openLock(const char *name)
{
    return std::make_unique<FileLock>(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                                      + QLatin1String("/tidel/") + QLatin1String(name));
}

Failure failure(const QString &reason)
{
    return Failure(Error(Error::StoreFailed, QStringLiteral("write to the store"), reason));
}

std::atomic<int> turns(0);

} // namespace

// Who waits for the turn has the lock of the next one. A program that has ended its turn needs this lock
// first, and so cannot overtake.
Result<WriteTurn> WriteTurn::take(int seconds)
{
    const std::unique_ptr<FileLock> next = openLock("writing-next.lock");
    std::unique_ptr<FileLock> turn = openLock("writing.lock");
    for (const FileLock *file : {next.get(), turn.get()}) {
        if (file->error() != 0)
            return failure(QStringLiteral("cannot open %1: %2").arg(file->path(), obstacle(file->error())));
    }
    bool isNext = false;
    const auto isReached = [&] {
        isNext = isNext || next->tryLock();
        return isNext && turn->tryLock();
    };
    PatientWait wait(seconds * 1000, "writing");
    while (!isReached()) {
        if (wait.goOn([&] { return turn->holder(); }))
            continue;
        // Who waits may have been stopped; that is no reason to fail while nobody has the turn.
        if (turn->tryLock())
            break;
        return failure(wait.failure(turn->holder()));
    }
    const bool followsOwn = turn->holder().process == QCoreApplication::applicationPid();
    turn->note();
    ++turns;
    return WriteTurn(std::move(turn), followsOwn);
}

int WriteTurn::count() { return turns; }

WriteTurn::WriteTurn(std::unique_ptr<FileLock> lock, bool followsOwn)
    : m_lock(std::move(lock)), m_followsOwn(followsOwn)
{
}

WriteTurn::WriteTurn(WriteTurn &&other) noexcept = default;
WriteTurn::~WriteTurn() = default;

} // namespace Tidel
