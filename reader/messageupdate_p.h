// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEUPDATE_P_H
#define TIDEL_MESSAGEUPDATE_P_H

#include "messagechanges_p.h"

#include <QPair>
#include <QSet>

namespace Tidel {

/// The update that stores some messages of a channel.
class MessageUpdate
{
public:
    MessageUpdate(StorePrivate &store, const QString &channelUri);

    /// Adds a message that the store does not have.
    void insert(const StorableMessage &message);
    /// Adds a stored message that becomes a message of the channel too.
    void join(const StorableMessage &message);
    /// Adds a message of the channel, which the store knows as \a known.
    void change(const StorableMessage &message, const KnownMessage &known);
    /// Gives the enclosures of \a message, which was added before, to the message with its link.
    void addEnclosures(const StorableMessage &message);
    /// Asks the store what else it has to know, and changes it.
    Result<void> run();

    /// The links of the messages that are new to the channel.
    const QStringList &addedLinks() const { return m_addedLinks; }
    /// The links of the messages that a person finds changed.
    const QStringList &changedLinks() const { return m_changes.changedLinks(); }

private:
    QString newUri() const { return m_store.connection.createUrn().toString(); }
    /// Inserts the enclosures that the store does not have, and gives all of them to their messages.
    Result<QString> enclosures() const;

    /// An enclosure with a URI of its own.
    struct NewEnclosure
    {
        FeedEnclosure enclosure;
        EnclosureDetails details;
    };

    StorePrivate &m_store;
    const QString m_channelUri;
    MessageChanges m_changes;
    QString m_text;
    QStringList m_joinedLinks;
    QStringList m_addedLinks;
    QList<NewEnclosure> m_enclosures;
    QStringList m_remoteLinks;
    QSet<QString> m_seenRemoteLinks;
    QList<QPair<QString, QString>> m_pairs; // remote link, link of the message
};

} // namespace Tidel

#endif
