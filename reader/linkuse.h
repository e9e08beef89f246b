// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_LINKUSE_H
#define TIDEL_LINKUSE_H

#include "error.h"
#include "link.h"
#include "store.h"

#include <QSharedDataPointer>

namespace Tidel {

class LinkUsePrivate;
struct KnownMessage;

/// What the store uses links for, seen from one channel.
class TIDELREADER_EXPORT LinkUse
{
public:
    /// Asks \a store about \a links, with one question for each hundred. The same link may be there twice.
    static Result<LinkUse> of(const Store &store, const QList<Link> &links, const QString &channelUri);

    /// Shares the value of \a other.
    LinkUse(const LinkUse &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    LinkUse(LinkUse &&other) noexcept;
    /// Shares the value of \a other.
    LinkUse &operator=(const LinkUse &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    LinkUse &operator=(LinkUse &&other) noexcept;
    /// Releases the value.
    ~LinkUse();

    /// Returns true if \a link is the link of a channel; otherwise returns false.
    bool isOfChannel(const Link &link) const;
    /// Returns true if \a link is the link of a message; otherwise returns false.
    bool isOfMessage(const Link &link) const;
    /// Returns true if \a link is the link of a message of the channel; otherwise returns false.
    bool isInChannel(const Link &link) const;
    /// Returns true if \a link is the link of a message of the channel that the store knows by the key of its
    /// item; otherwise returns false. An item with another key is another message.
    bool isOfKnownItem(const Link &link) const;

private:
    friend class MessageWriter;
    Q_DECL_HIDDEN explicit LinkUse(LinkUsePrivate *d);
    /// Null if \a link is not the link of a message of the channel.
    Q_DECL_HIDDEN const KnownMessage *message(const QString &link) const;

    QSharedDataPointer<LinkUsePrivate> d;
};

} // namespace Tidel

#endif
