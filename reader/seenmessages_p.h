// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEENMESSAGES_P_H
#define TIDEL_SEENMESSAGES_P_H

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QUuid>
#include <QVector>

#include <variant>

namespace Tidel {

/// The URI of a message in as little memory as possible.
class PackedUri
{
public:
    PackedUri() = default;
    explicit PackedUri(const QString &uri);

    QString text() const;
    bool operator==(const PackedUri &other) const { return m_uri == other.m_uri; }

private:
    std::variant<QUuid, QByteArray> m_uri; // The library gives each resource a UUID, other programs need not.
};

/// What the store said of a message. An archive may have 100,000 of them.
struct SeenMessage
{
    qlonglong number;
    qlonglong mark;
    PackedUri uri;
    quint32 digestHash;
    bool isRead;
    bool isFavorite;
};

/// What the store said of the resources of a block of numbers, in the order of their numbers.
struct SeenBlock
{
    using Pairs = QVector<QPair<qlonglong, qlonglong>>;

    QVector<SeenMessage> messages;
    Pairs enclosures; ///< Number and mark.
    Pairs parts; ///< Number, and number of the message or channel that it belongs to.

    /// The message \a number; null if there is none.
    const SeenMessage *message(qlonglong number) const;
    /// Returns true if \a number is that of an enclosure; otherwise returns false.
    bool hasEnclosure(qlonglong number) const;
};

} // namespace Tidel

#endif
