// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMPLETE_H
#define TIDEL_COMPLETE_H

#include <QStringList>

namespace Tidel {

class Output;

/// Writes what the last of \a words, which follow the name of the program, can be completed to: a line for
/// each candidate, with a tab before what it means. The scripts for shells call this as `tidel --complete
/// WORD...`.
void complete(const QStringList &words, Output &output);

} // namespace Tidel

#endif
