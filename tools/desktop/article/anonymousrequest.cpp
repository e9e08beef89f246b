// SPDX-License-Identifier: LGPL-2.1-or-later
#include "anonymousrequest.h"

#include <QUrl>

namespace Tidel {

QNetworkRequest anonymousRequest(QUrl address)
{
    address.setUserInfo(QString());
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setRawHeader("User-Agent", "Tidel");
    // The compressed size would say nothing of what arrives.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

} // namespace Tidel
