// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STOREFOLDER_P_H
#define STOREFOLDER_P_H

#include "qsparqlerror.h"

#include <QDir>
#include <QFile>
#include <QLockFile>

/**
 * The folder of a store, for as long as a database is opened in it. Two processes that create one database at
 * once spoil it for each other, so that they enter one after the other.
 */
class StoreFolder
{
public:
    explicit StoreFolder(const QString &path);

    QString path() const { return m_dir.path(); }

    /// Makes the folder where there is none, and waits until nobody else is in it.
    QSparqlError enter();

    /// Whether there is a database whose making was not cut short.
    bool hasDatabase() const;

    /// Marks that a database is being made, unless there is one. Tracker never again opens one whose making
    /// was cut short. Such a one holds nothing yet, since the folder is not left until it is whole, so that
    /// whoever finds the mark begins anew. False when the folder cannot be written to.
    bool beginMaking();
    /// False when the mark is still there, or was taken over by somebody else.
    bool endMaking();

private:
    QDir m_dir;
    QLockFile m_lock;
    QFile m_mark;
};

#endif
