// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_OUTCOME_H
#define TIDEL_OUTCOME_H

#include <QString>

#include <feedplugininterface.h>

#include <TidelReader/error.h>

namespace Tidel {

/// How a download ended: a FeedDownloadError or an HTTP status, and the reason for the user.
struct Outcome
{
    int error = FeedDownloadNoError;
    QString reason;

    bool isFine() const { return error == FeedDownloadNoError; }
};

/// The outcome of a download that the store has failed with \a error. \a advice says what to do.
inline Outcome storeFailed(const Error &error, const char *advice)
{
    return {FeedDownloadStoreFailed, error.text() + QLatin1String("; ") + QLatin1String(advice)};
}

inline Outcome canceledOutcome() { return {FeedDownloadCanceled, QStringLiteral("canceled")}; }

} // namespace Tidel

#endif
