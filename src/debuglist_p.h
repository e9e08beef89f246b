// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef DEBUGLIST_P_H
#define DEBUGLIST_P_H

#include <QDebug>
#include <QList>

/// Writes \a list as "(a, b)" and a blank. Qt 5 and Qt 6 write lists differently, so neither form is used.
// contract: leaves the stream in spacing mode, so automatic blanks follow an inner list. Log readers know the
// text.
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
