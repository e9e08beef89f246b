// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FILEQUEUE_H
#define TIDEL_FILEQUEUE_H

#include <QStringList>

namespace Tidel {

class Output;
class Store;

// The queue of the archive. All functions report what they did, and failures, to the output.

/// Returns the URIs of the enclosures that wait to be downloaded.
QStringList queuedEnclosures(const Store &store, Output &output);
/// Adds those of the enclosures \a uris whose files are not there.
void queue(const Store &store, const QStringList &uris, Output &output);
/// Takes out those of the enclosures \a uris that wait.
void unqueue(const Store &store, const QStringList &uris, Output &output);
/// Takes out the enclosure \a uri. Returns false on failure; reports nothing else.
bool unqueue(const Store &store, const QString &uri, Output &output);

} // namespace Tidel

#endif
