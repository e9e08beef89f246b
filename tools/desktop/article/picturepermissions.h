// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_PICTUREPERMISSIONS_H
#define TIDEL_DESKTOP_PICTUREPERMISSIONS_H

#include <QString>

namespace Tidel {

/// Which pictures the user allows, who are told by it what he reads. The settings keep what is allowed for a
/// channel.
class PicturePermissions
{
public:
    /// Allows the pictures of the message \a uri until another message is allowed.
    void allowOnce(const QString &uri) { m_message = uri; }
    /// Allows the pictures of the channel \a uri, or takes that back.
    void setAllowedForChannel(const QString &uri, bool isAllowed);
    /// Returns true if the pictures of the channel \a uri are allowed; otherwise returns false.
    bool isAllowedForChannel(const QString &uri) const;
    /// Returns true if the pictures of the message \a message of \a channel may be fetched; otherwise returns
    /// false.
    bool isAllowed(const QString &message, const QString &channel) const;

private:
    QString m_message;
};

} // namespace Tidel

#endif
