// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDFILE_H
#define TIDEL_FEEDFILE_H

#include "outcome.h"
#include "validators.h"

#include <QByteArray>

#include <optional>

namespace Tidel {

/// The bytes of the document \a path, at most \a maximumSize; on failure nothing, and \a outcome says why.
std::optional<QByteArray> readDocument(const QString &path, qint64 maximumSize, Outcome *outcome);

/// What tells whether the document \a path has changed since. Its entity tag is empty when nothing does: the
/// file is missing, or so new that it may change once more without a trace.
Validators fileValidators(const QString &path);

} // namespace Tidel

#endif
