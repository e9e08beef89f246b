// SPDX-License-Identifier: LGPL-2.1-or-later
#include "itemkey_p.h"

#include <QCryptographicHash>

namespace Tidel {

namespace {

QString hashOf(const QString &text, int hexDigits)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QString::fromLatin1(hash.left(hexDigits));
}

} // namespace

QString itemKey(const QString &channelUri, const QString &id)
{
    return itemKeyPrefix(channelUri) + hashOf(id, 32);
}

QString itemKeyPrefix(const QString &channelUri) { return hashOf(channelUri, 8) + QLatin1Char('-'); }

} // namespace Tidel
