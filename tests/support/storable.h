// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef STORABLE_H
#define STORABLE_H

#include <TidelReader/storablemessage.h>

#include <QList>

/// \a message as a download plug-in hands it to the store. Links that are not encoded become null.
inline Tidel::StorableMessage storable(const FeedMessage &message)
{
    Tidel::StorableMessage result(Tidel::Link::fromEncoded(message.link()), message);
    const QList<FeedEnclosure> enclosures = message.enclosures();
    for (const FeedEnclosure &enclosure : enclosures)
        result.addEnclosure(Tidel::Link::fromEncoded(enclosure.remoteUrl()), enclosure);
    return result;
}

inline QList<Tidel::StorableMessage> storable(const QList<FeedMessage> &messages)
{
    QList<Tidel::StorableMessage> result;
    for (const FeedMessage &message : messages)
        result.append(storable(message));
    return result;
}

inline QList<Tidel::Link> linksOf(const QList<Tidel::StorableMessage> &messages)
{
    QList<Tidel::Link> links;
    for (const Tidel::StorableMessage &message : messages)
        links.append(message.link());
    return links;
}

#endif
