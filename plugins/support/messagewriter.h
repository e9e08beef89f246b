// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_MESSAGEWRITER_H
#define TIDEL_MESSAGEWRITER_H

#include <QList>
#include <QString>

#include <feedmessage.h>

class QSparqlConnection;

namespace Tidel {

/**
 * Stores a feed's messages as FeedTrackerSparql::addMessages() does, but with one update for dozens of them
 * and their enclosures, one question for the messages and one for the enclosures.
 *
 * - A message is stored together with its enclosures or not at all. A reader that takes what is stored for
 *   done can write what failed again, and misses nothing.
 * - What is stored already is not stored twice: it becomes a message of this channel too, and gets the
 *   enclosures that it lacks.
 * - Messages with a link, or an enclosure's, that is empty or not encoded, and groups of messages that the
 *   store refuses in this form are handed to addMessages(), which does with them what it can.
 *
 * All calls belong to the thread of the library and of the connection.
 */
class MessageWriter
{
public:
    /// Writes through \a connection, which has to stay, and through the library, to one and the same store.
    explicit MessageWriter(QSparqlConnection &connection);

    /// Stores \a messages under the channel; of several with one link the first. True when all are stored;
    /// when it is false some may be.
    bool write(const QList<FeedMessage> &messages, const QString &channelUri);

    /// What the store said when it last refused a group; empty when it refused none.
    QString refusal() const { return m_refusal; }

private:
    bool writeGroup(const QList<FeedMessage> &messages, const QString &channelUri);
    bool insert(const QList<FeedMessage> &messages, const QString &channelUri);

    QSparqlConnection &m_connection;
    QString m_refusal;
};

} // namespace Tidel

#endif
