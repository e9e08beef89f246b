// SPDX-License-Identifier: LGPL-2.1-or-later
#include "resumepoint.h"

#include "freshness.h"

namespace Tidel {

namespace {

// Longer validators are ignored, because they would be sent with a request.
constexpr int maximumValidatorSize = 1024;

QUrl withoutVariables(const QUrl &url)
{
    return url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

/// The tag of \a head if files with this tag have the same bytes; otherwise empty.
QByteArray strongTag(const AnswerHead &head)
{
    const QByteArray tag = head.header("etag");
    return tag.startsWith('"') ? tag : QByteArray();
}

/// The date of \a head if the file cannot have changed again in the same second; otherwise empty.
QByteArray strongDate(const AnswerHead &head)
{
    const QByteArray modified = head.header("last-modified");
    const qint64 date = dateOf(modified);
    return date >= 0 && date < dateOf(head.header("date")) ? modified : QByteArray();
}

} // namespace

ResumePoint ResumePoint::of(const AnswerHead &head, const QUrl &address)
{
    ResumePoint point;
    point.address = withoutVariables(address);
    point.total = head.announcedSize();
    const QByteArray tag = strongTag(head);
    const QByteArray validator = tag.isEmpty() ? strongDate(head) : tag;
    const bool isSized = point.total > 0 && head.header("transfer-encoding").isEmpty();
    if (isSized && validator.size() <= maximumValidatorSize)
        point.validator = validator;
    return point;
}

bool ResumePoint::isOf(const QUrl &url) const { return withoutVariables(url) == address; }

bool ResumePoint::isContinuedBy(const AnswerHead &head) const
{
    const QByteArray rest = QByteArray("bytes ") + QByteArray::number(offset) + '-'
        + QByteArray::number(total - 1) + '/' + QByteArray::number(total);
    const QByteArray modified = head.header("last-modified");
    const bool hasTag = validator.startsWith('"');
    // An answer to If-Range must have the tag, but need not have the date.
    const bool isSame =
        hasTag ? head.header("etag") == validator : modified.isEmpty() || modified == validator;
    return isSame && head.header("content-range").simplified() == rest
        && head.header("content-encoding").isEmpty();
}

} // namespace Tidel
