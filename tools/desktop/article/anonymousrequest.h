// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_ANONYMOUSREQUEST_H
#define TIDEL_DESKTOP_ANONYMOUSREQUEST_H

#include <QNetworkRequest>

namespace Tidel {

/// A request for \a address that says nothing of the user: no cookies, no user name and no address of a page.
QNetworkRequest anonymousRequest(QUrl address);

} // namespace Tidel

#endif
