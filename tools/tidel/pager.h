// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PAGER_H
#define TIDEL_PAGER_H

#include <QByteArray>

namespace Tidel {

/// Shows \a text in the program that the environment variable `PAGER` names, `less` if it is not set, and
/// waits until the user has ended it. Returns false if there is no such program.
bool showInPager(const QByteArray &text);

} // namespace Tidel

#endif
