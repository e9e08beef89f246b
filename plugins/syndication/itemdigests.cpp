// SPDX-License-Identifier: LGPL-2.1-or-later
#include "itemdigests.h"

#include "itemdigest.h"

#include <QStringList>

namespace Tidel {

namespace {

// The store writes the note with each reading.
constexpr int maximumDigests = 4000;

// Another version may make another message of the same item.
const char *const version = TIDEL_VERSION;

} // namespace

ItemDigests ItemDigests::fromNote(const QString &note)
{
    const QStringList parts = note.split(QLatin1Char(' '));
    if (parts.size() != 3 || parts.first() != QLatin1String(version))
        return {};
    ItemDigests read;
    read.context = parts.at(1).toLatin1();
    const QByteArray digests = parts.last().toLatin1();
    for (int at = 0; at + itemDigestSize <= digests.size(); at += itemDigestSize)
        read.digests.insert(digests.mid(at, itemDigestSize));
    return read;
}

QString ItemDigests::note() const
{
    if (digests.isEmpty() || digests.size() > maximumDigests)
        return QString();
    QByteArray all;
    for (const QByteArray &digest : digests)
        all += digest;
    return QStringLiteral("%1 %2 %3")
        .arg(QLatin1String(version), QString::fromLatin1(context), QString::fromLatin1(all));
}

} // namespace Tidel
