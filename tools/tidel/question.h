// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_QUESTION_H
#define TIDEL_QUESTION_H

#include <QString>

#include <optional>

namespace Tidel {

/// Returns true if the standard input and output are a terminal, so that a user can answer; otherwise returns
/// false.
bool canAsk();

/// Writes \a question and returns the line that the user enters; nothing at the end of the input.
std::optional<QString> ask(const QString &question);

} // namespace Tidel

#endif
