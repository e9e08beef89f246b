// SPDX-License-Identifier: LGPL-2.1-or-later
#include "seenmessages_p.h"

#include <algorithm>

namespace Tidel {

namespace {

const QLatin1String scheme("urn:uuid:");

} // namespace

PackedUri::PackedUri(const QString &uri)
{
    const QUuid uuid = uri.startsWith(scheme) ? QUuid(uri.mid(scheme.size())) : QUuid();
    m_uri = uuid;
    if (text() != uri)
        m_uri = uri.toUtf8();
}

QString PackedUri::text() const
{
    const auto *uuid = std::get_if<QUuid>(&m_uri);
    return uuid ? scheme + uuid->toString(QUuid::WithoutBraces)
                : QString::fromUtf8(std::get<QByteArray>(m_uri));
}

const SeenMessage *SeenBlock::message(qlonglong number) const
{
    const auto found =
        std::lower_bound(messages.cbegin(), messages.cend(), number,
                         [](const SeenMessage &message, qlonglong other) { return message.number < other; });
    return found != messages.cend() && found->number == number ? &*found : nullptr;
}

bool SeenBlock::hasEnclosure(qlonglong number) const
{
    const auto found = std::lower_bound(enclosures.cbegin(), enclosures.cend(), number,
                                        [](const auto &pair, qlonglong other) { return pair.first < other; });
    return found != enclosures.cend() && found->first == number;
}

} // namespace Tidel
