// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_TERMINALTEXT_H
#define TIDEL_TERMINALTEXT_H

#include <QString>

namespace Tidel {

/// Returns \a text as one line that cannot control a terminal: line breaks and tabs become blanks, control
/// characters, characters that change the direction of text, and passwords in addresses are removed.
QString terminalText(const QString &text);

/// Returns the number of columns of \a text on a terminal, in the locale of the process.
int displayWidth(const QString &text);

/// Returns \a text if it has at most \a width columns on a terminal; otherwise returns its beginning and "…",
/// which together have at most as many.
QString cut(const QString &text, int width);

} // namespace Tidel

#endif
