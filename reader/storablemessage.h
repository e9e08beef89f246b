// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_STORABLEMESSAGE_H
#define TIDEL_STORABLEMESSAGE_H

#include "details.h"
#include "link.h"
#include "tidelreaderglobal.h"

#include <QSharedDataPointer>

#include <feedmessage.h>

namespace Tidel {

class StorableMessagePrivate;

/**
 * A message whose addresses are fit to be stored: its link and those of its enclosures are Links.
 *
 * \code
 * FeedMessage text;
 * text.setTitle("Episode 1");
 * StorableMessage message(Link::fromText("https://example.org/1"), text);
 * message.addEnclosure(Link::toFile("https://example.org/1.mp3"), FeedEnclosure());
 * \endcode
 */
class TIDELREADER_EXPORT StorableMessage
{
public:
    /// A message with \a link, which is not null, and the texts, dates and id of \a message. Link and
    /// enclosures of \a message are not taken over.
    StorableMessage(const Link &link, const FeedMessage &message);
    /// Shares the value of \a other.
    StorableMessage(const StorableMessage &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    StorableMessage(StorableMessage &&other) noexcept;
    /// Shares the value of \a other.
    StorableMessage &operator=(const StorableMessage &other);
    /// Takes the value of \a other, which may then only be assigned to or destroyed.
    StorableMessage &operator=(StorableMessage &&other) noexcept;
    /// Releases the value.
    ~StorableMessage();

    /// Adds an enclosure with the remote URL \a remoteLink and the properties of \a enclosure, without its
    /// local URL, and with \a details. It takes the place of an enclosure with the same remote URL. A null
    /// link is ignored.
    void addEnclosure(const Link &remoteLink, const FeedEnclosure &enclosure,
                      const EnclosureDetails &details = EnclosureDetails());
    /// Sets what the feed says of the message in addition to \a details.
    void setDetails(const MessageDetails &details);
    /// Sets the itemKey() of the item to \a key. Only an item whose identifier is unique in its document has
    /// one.
    void setKey(const QString &key);

    /// The link, which identifies the message in the store.
    Link link() const;
    /// The key of the item; empty if it is known by its link only.
    QString key() const;
    /// The message with its link and its enclosures.
    FeedMessage message() const;
    /// What the feed says in addition.
    MessageDetails details() const;
    /// What the feed says in addition of the enclosure with the remote URL \a remoteUrl.
    EnclosureDetails enclosureDetails(const QString &remoteUrl) const;
    /// About how many characters of a statement store the message and its enclosures.
    int weight() const;

private:
    QSharedDataPointer<StorableMessagePrivate> d;
};

} // namespace Tidel

#endif
