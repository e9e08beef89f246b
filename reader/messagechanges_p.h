// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGECHANGES_P_H
#define TIDEL_MESSAGECHANGES_P_H

#include "knownmessage_p.h"
#include "storablemessage.h"
#include "store_p.h"

#include <QHash>
#include <QList>
#include <QStringList>

namespace Tidel {

/**
 * Finds out which messages of a channel say something else than the store has, and how to change the store.
 *
 * The text of a message of several channels follows the channel that brought it, so that two feeds do not
 * overwrite each other at every refresh.
 */
class MessageChanges
{
public:
    MessageChanges(StorePrivate &store, const QString &channelUri);

    /// Returns true if \a digest is that of what the store has of \a known; otherwise returns false.
    static bool saysSame(const KnownMessage &known, const QString &digest);

    /// Considers \a message, which the store knows as \a known.
    void add(const StorableMessage &message, const KnownMessage &known);
    /// Compares what was added with what the store has. Asks nothing if all digests are those of the store.
    Result<void> compare();

    /// The pieces of the update.
    QString text() const;
    /// The messages that are written anew.
    const QList<StorableMessage> &rewritten() const { return m_rewritten; }
    /// The links of those that a person finds changed.
    const QStringList &changedLinks() const { return m_changedLinks; }
    /// The enclosures that the update takes from messages which do not name them any more.
    const QStringList &released() const { return m_released; }

private:
    struct Candidate;
    struct Stored;

    Result<void> readTexts(const QStringList &uris);
    Result<void> readFiles(const QStringList &uris);
    /// Returns true if the text of the candidate follows another channel; otherwise returns false.
    bool isOfOtherChannel(const KnownMessage &known, const Stored &stored) const;
    /// Writes the candidate anew if it has changed or has no digest.
    void compare(const Candidate &candidate, const Stored &stored);
    /// Replaces the details of the enclosures that the message still names, and releases the others, except
    /// downloaded ones.
    void compareFiles(const StorableMessage &message, const KnownMessage &known, const Stored &stored);

    StorePrivate &m_store;
    const QString m_channelUri;
    QList<Candidate> m_candidates;
    QHash<QString, Stored> m_stored; // by message URI
    QStringList m_uris; // of the rewritten messages
    QString m_text;
    QList<StorableMessage> m_rewritten;
    QStringList m_changedLinks;
    QStringList m_released;
};

struct MessageChanges::Candidate
{
    StorableMessage message;
    KnownMessage known;
    QString digest;
};

struct MessageChanges::Stored
{
    FeedMessage message; ///< Texts and enclosures.
    QString earlierVersions;
    QStringList channels;
};

} // namespace Tidel

#endif
