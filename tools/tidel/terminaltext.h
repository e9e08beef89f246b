// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TERMINALTEXT_H
#define TIDEL_TERMINALTEXT_H

#include <QString>

namespace Tidel {

/// \a text as one line that a terminal shows and does not obey: line breaks and tabs become blanks, control
/// characters and those that turn the direction of what follows go.
QString terminalText(const QString &text);

/// The number of columns that a terminal gives to \a text, after the rules of the process's locale.
int displayWidth(const QString &text);

} // namespace Tidel

#endif
