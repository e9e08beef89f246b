// SPDX-License-Identifier: LGPL-2.1-or-later
#include "channels.h"
#include "logins.h"
#include "shownaddress_p.h"

namespace Tidel {

Result<QVector<QUrl>> addressesShownAs(const Store &store, const QUrl &address)
{
    QVector<QUrl> addresses{address};
    if (address.userName().isEmpty() || !address.password().isEmpty())
        return addresses;
    const QString password = Logins::of(address).password;
    if (!password.isEmpty()) {
        QUrl complete(address);
        complete.setPassword(password, QUrl::DecodedMode);
        addresses.append(complete);
    }
    return Channels(store).all().map([&](const QList<FeedChannel> &channels) {
        for (const FeedChannel &channel : channels) {
            const QUrl link(channel.link());
            QUrl candidate(address);
            candidate.setPassword(link.password(QUrl::FullyDecoded), QUrl::DecodedMode);
            const bool isOfServer =
                link.scheme() == address.scheme() && link.authority() == candidate.authority();
            if (isOfServer && !addresses.contains(candidate))
                addresses.append(candidate);
        }
        return addresses;
    });
}

} // namespace Tidel
