// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_ENCLOSUREFINDER_H
#define TIDEL_ENCLOSUREFINDER_H

#include <QStringList>

namespace Tidel {

class Output;
class Store;

/// Returns the URIs of the enclosures of \a store that \a names identify, each once: enclosures, or messages
/// as chooseMessage() finds them. Reports names without any to \a output.
QStringList findEnclosures(const Store &store, const QStringList &names, Output &output);

/// Returns the URIs of the newest \a count enclosures that were never downloaded, of the channels that \a
/// channels identify, or of all. Reports to \a output if there are none.
QStringList newestEnclosures(const Store &store, int count, const QStringList &channels, Output &output);

} // namespace Tidel

#endif
