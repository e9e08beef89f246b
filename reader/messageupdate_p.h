// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEUPDATE_P_H
#define TIDEL_MESSAGEUPDATE_P_H

#include "messagechanges_p.h"

#include <QHash>
#include <QPair>

namespace Tidel {

/// The update that stores some messages of a channel.
class MessageUpdate
{
public:
    /// The update ends with \a note, a piece of it.
    MessageUpdate(StorePrivate &store, const QString &channelUri, const QString &note);

    /// Adds a message that the store does not have.
    void insert(const StorableMessage &message);
    /// Adds a stored message that becomes a message of the channel too.
    void join(const StorableMessage &message);
    /// Adds a message of the channel, which the store knows as \a known.
    void change(const StorableMessage &message, const KnownMessage &known);
    /// Gives the enclosures of \a message, which was added before, to the message with its link.
    void addEnclosures(const StorableMessage &message);
    /// Asks the store what else it has to know, and changes it. The store refuses the update if it has got a
    /// new message or enclosure in the meantime.
    Result<void> run();
    /// Returns true if the store refused the update for that reason; otherwise returns false.
    Result<bool> isOutOfDate() const;

    /// The links of the messages that are new to the channel.
    const QStringList &addedLinks() const { return m_addedLinks; }
    /// The links of the messages that a person finds changed.
    const QStringList &changedLinks() const { return m_changes.changedLinks(); }

private:
    QString newUri() const { return m_store.connection.createUrn().toString(); }
    /// Asks which enclosures the store does not have.
    Result<void> findNewEnclosures();
    /// Makes the store refuse the update if another program has stored what is new here.
    QString refusals() const;
    /// Gives stored messages to the channel.
    QString joins() const;
    /// Inserts the new enclosures, and gives all enclosures to their messages.
    QString enclosures() const;

    /// An enclosure with a URI of its own.
    struct NewEnclosure
    {
        FeedEnclosure enclosure;
        EnclosureDetails details;
    };

    StorePrivate &m_store;
    const QString m_channelUri;
    const QString m_note;
    const QString m_time;
    MessageChanges m_changes;
    QString m_text;
    QStringList m_newLinks;
    QStringList m_joinedLinks;
    QStringList m_addedLinks;
    QHash<QString, NewEnclosure> m_enclosures; // by remote link
    QStringList m_remoteLinks; // of m_enclosures, in order
    QStringList m_newRemoteLinks; // which the store does not have
    QList<QPair<QString, QString>> m_pairs; // remote link, link of the message
};

} // namespace Tidel

#endif
