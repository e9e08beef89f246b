// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_OUTCOME_H
#define TIDEL_OUTCOME_H

#include <QString>

#include <feedplugininterface.h>

namespace Tidel {

/// How a download ended: a FeedDownloadError or an HTTP status, and what to tell the user of it.
struct Outcome
{
    int error = FeedDownloadNoError;
    QString reason;

    bool isFine() const { return error == FeedDownloadNoError; }
};

inline Outcome canceledOutcome() { return {FeedDownloadCanceled, QStringLiteral("canceled")}; }

} // namespace Tidel

#endif
