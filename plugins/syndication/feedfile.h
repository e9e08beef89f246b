// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDFILE_H
#define TIDEL_FEEDFILE_H

#include "outcome.h"
#include "validators.h"

#include <QByteArray>

#include <optional>

namespace Tidel {

/// Returns the content of the file \a path, at most \a maximumSize bytes. Returns nothing on failure, and
/// sets \a outcome to the reason.
std::optional<QByteArray> readDocument(const QString &path, qint64 maximumSize, Outcome *outcome);

/// Returns the validators of the file \a path. They are empty if the file is missing, or if it is so new that
/// it may change again without a new time.
Validators fileValidators(const QString &path);

} // namespace Tidel

#endif
