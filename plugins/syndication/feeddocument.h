// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDDOCUMENT_H
#define TIDEL_FEEDDOCUMENT_H

#include "validators.h"

#include <QByteArray>
#include <QUrl>

#include <TidelReader/feedanswer.h>

namespace Tidel {

/// A document that may be a feed, and what came with it.
struct FeedDocument
{
    QByteArray bytes;
    QUrl address; ///< Where it was read from, after all redirects.
    QByteArray charset; ///< The character set that the server named; empty if it named none.
    QByteArray linkHeader; ///< The `Link:` header; empty if there was none.
    Validators validators;
    FeedAnswer answer = {}; ///< How the document came.
    FeedPlan plan = {}; ///< What the store has of the answers before it.
};

} // namespace Tidel

#endif
