// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_CANDIDATES_H
#define TIDEL_CANDIDATES_H

#include "lastlist.h"

#include <QList>
#include <QString>

namespace Tidel {

class Output;

/// What a name of the user may mean.
struct Candidate
{
    QString uri;
    QString link;
    QString text; ///< One line for the user.
};

constexpr int maximumCandidates = 20; ///< More are not shown.

/// Reports to \a output that \a name may be each of \a candidates, which are \a nouns, and remembers them as
/// the last list of \a kind. If there are more than maximumCandidates, the last one is not shown.
void showCandidates(const QString &name, const char *nouns, LastList::Kind kind,
                    const QList<Candidate> &candidates, Output &output);

/// Returns the error of a row that the last list does not have.
QString beyondList(int row, int rows, const char *nouns);

} // namespace Tidel

#endif
