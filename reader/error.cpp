// SPDX-License-Identifier: LGPL-2.1-or-later
#include "error.h"

#include "usertext.h"

namespace Tidel {

class ErrorPrivate : public QSharedData
{
public:
    ErrorPrivate(Error::Kind ofKind, const QString &whatWasTried, const QString &why)
        : kind(ofKind), attempt(whatWasTried), reason(why)
    {
    }

    Error::Kind kind;
    QString attempt;
    QString reason;
};

Error::Error(Kind kind, const QString &attempt, const QString &reason)
    : d(new ErrorPrivate(kind, attempt, shownReason(reason)))
{
}

Error::Error(const Error &other) = default;
Error::Error(Error &&other) noexcept = default;
Error &Error::operator=(const Error &other) = default;
Error &Error::operator=(Error &&other) noexcept = default;
Error::~Error() = default;

Error::Kind Error::kind() const { return d->kind; }

QString Error::attempt() const { return d->attempt; }

QString Error::reason() const { return d->reason; }

QString Error::text() const
{
    return d->attempt.isEmpty() ? d->reason : QStringLiteral("could not %1: %2").arg(d->attempt, d->reason);
}

} // namespace Tidel
