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

/// Writes \a question to the standard error and returns what the user enters, which the terminal does not
/// show. Reads the first line of the standard input if that is no terminal. Nothing at its end or after a
/// signal.
std::optional<QString> askSecretly(const QString &question);

} // namespace Tidel

#endif
