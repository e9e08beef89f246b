// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef DEBUGLIST_P_H
#define DEBUGLIST_P_H

#include <QDebug>
#include <QList>

/// Writes \a list as "(a, b)" and a blank. Qt's own output of a list is another one in Qt 5 than in Qt 6.
/// The stream is left in spacing mode, so what follows an inner list in an outer one has automatic blanks.
template <typename T> void writeDebugList(QDebug &debug, const QList<T> &list)
{
    debug.nospace() << "(";
    bool first = true;
    for (const T &element : list) {
        if (!first)
            debug << ", ";
        first = false;
        debug << element;
    }
    debug << ")";
    debug.space();
}

#endif
