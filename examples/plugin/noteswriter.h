// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef NOTESWRITER_H
#define NOTESWRITER_H

#include "notesfile.h"

#include <TidelReader/store.h>

#include <QStringList>

/// Stores the file of notes at \a address as a new channel. Appends the links of its messages to
/// \a newMessages.
Outcome addNotes(const Tidel::Store &store, const QUrl &address, QStringList *newMessages);

/// Stores the notes that the channel \a channelUri lacks. Appends the links of their messages to
/// \a newMessages.
Outcome refreshNotes(const Tidel::Store &store, const QString &channelUri, QStringList *newMessages);

/// The outcome of an operation that the store ended with \a error.
Outcome storeFailed(const Tidel::Error &error);

#endif
