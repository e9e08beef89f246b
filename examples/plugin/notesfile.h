// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef NOTESFILE_H
#define NOTESFILE_H

#include <TidelReader/storablemessage.h>

#include <feedplugininterface.h>

#include <QList>
#include <QString>
#include <QUrl>

/// How an operation ended.
struct Outcome
{
    int error = FeedDownloadNoError;
    QString reason; ///< For the user; empty if the operation succeeded.
};

/**
 * Reads the text file at \a address, such as "notes:///home/ann/garden.notes", and appends its notes to
 * \a messages. A note is a line with a date, a blank and a text, the oldest one first:
 *
 * 2026-11-20 Sowed the beans
 *
 * Other lines are left out. Notes have no addresses, and are named after \a base.
 */
Outcome readNotes(const QUrl &address, const QString &base, QList<Tidel::StorableMessage> *messages);

#endif
