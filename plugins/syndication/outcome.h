// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_OUTCOME_H
#define TIDEL_OUTCOME_H

#include <QString>

#include <feedplugininterface.h>

#include <TidelReader/error.h>

namespace Tidel {

/// The HTTP status of a host that wants to be asked less often.
constexpr int tooManyRequests = 429;

/// The HTTP status of an answer that is a part of a document.
constexpr int partialContent = 206;
/// The HTTP status of a server that has no such part.
constexpr int noSuchPart = 416;

/// How a download ended.
struct Outcome
{
    int error = FeedDownloadNoError; ///< A FeedDownloadError or an HTTP status.
    QString reason; ///< The reason of the failure, for the user.

    /// Returns true if the download succeeded; otherwise returns false.
    bool isFine() const { return error == FeedDownloadNoError; }
};

/// The outcome after the error \a error of the store. \a advice says what the user can do.
inline Outcome storeFailed(const Error &error, const char *advice)
{
    return {FeedDownloadStoreFailed, error.text() + QLatin1String("; ") + QLatin1String(advice)};
}

/// The outcome of a canceled download.
inline Outcome canceledOutcome() { return {FeedDownloadCanceled, QStringLiteral("canceled")}; }

/// The outcome if canTransfer() is false.
inline Outcome badAddress()
{
    return {FeedDownloadBadAddress, QStringLiteral("only files and http and https addresses are supported")};
}

/// The outcome if the end of an answer is missing.
inline Outcome closedTooEarly()
{
    return {FeedDownloadConnectionFailed,
            QStringLiteral("the server closed the connection too early; try again later")};
}

/// The outcome if a file could not be written because of \a reason.
inline Outcome notWritten(const QString &reason)
{
    return {FeedDownloadNotWritten, QLatin1String("could not write the file: ") + reason};
}

} // namespace Tidel

#endif
