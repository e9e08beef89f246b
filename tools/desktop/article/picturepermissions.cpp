// SPDX-License-Identifier: LGPL-2.1-or-later
#include "picturepermissions.h"

#include <QSettings>

namespace Tidel {

namespace {

QString key(const QString &channel) { return QStringLiteral("pictures/") + channel; }

} // namespace

void PicturePermissions::setAllowedForChannel(const QString &uri, bool isAllowed)
{
    QSettings settings;
    if (isAllowed)
        settings.setValue(key(uri), true);
    else
        settings.remove(key(uri));
}

bool PicturePermissions::isAllowedForChannel(const QString &uri) const
{
    return !uri.isEmpty() && QSettings().value(key(uri)).toBool();
}

bool PicturePermissions::isAllowed(const QString &message, const QString &channel) const
{
    return (!message.isEmpty() && message == m_message) || isAllowedForChannel(channel);
}

} // namespace Tidel
