// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_WORDDIFF_H
#define TIDEL_WORDDIFF_H

#include "tidelreaderglobal.h"

#include <QString>
#include <QVector>

namespace Tidel {

/// A piece of two texts.
struct DiffPiece
{
    enum Kind {
        Same, ///< Is in both texts.
        Removed, ///< Is in the first one only.
        Added ///< Is in the second one only.
    };

    Kind kind = Same;
    QString text;
};

/// What has to be removed from and added to the words of \a before to make \a after. The pieces that are not
/// Added are \a before, and those that are not Removed are \a after. A word includes the white space after
/// it.
///
/// The time grows with the number of different words. From a few thousand on, all that lies between the first
/// and the last of them counts as different.
TIDELREADER_EXPORT QVector<DiffPiece> wordDiff(const QString &before, const QString &after);

} // namespace Tidel

#endif
