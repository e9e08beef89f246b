// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDSTORE_H
#define TIDEL_FEEDSTORE_H

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <feedchannel.h>
#include <feedmessage.h>

#include <memory>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QUrl)
class FeedTrackerSparql;
class QSparqlConnection;
class QSparqlQuery;
class QSparqlResult;
class QSparqlResultRow;

namespace Tidel {

/// The user's store: the library's operations, and what they do not answer.
class FeedStore
{
public:
    /// Opens the store; on failure null, and \a error says why.
    static std::unique_ptr<FeedStore> open(QString *error);
    ~FeedStore();
    Q_DISABLE_COPY(FeedStore)

    FeedTrackerSparql &library() const;

    /// All channels by title, each once.
    QList<FeedChannel> channels() const;
    /// Whether there is a channel with the link \a address.
    bool hasChannel(const QUrl &address) const;
    /// Those of \a links that are links of channels.
    QSet<QString> channelLinks(const QSet<QString> &links) const;
    /// Those of \a links that are links of the channel's messages.
    QSet<QString> messageLinks(const QSet<QString> &links, const QString &channelUri) const;
    /// How many messages the channels have, by their URIs; none for a channel without.
    QHash<QString, int> messageCounts() const;
    /// The URI of the message that \a name, a link or a URI, stands for; empty when there is none.
    QString messageUri(const QString &name) const;

    /// \name Statements of our own
    /// @{
    /// The rows of a query; nothing when the store fails.
    std::optional<QList<QSparqlResultRow>> answer(const QSparqlQuery &query) const;
    /// The same, with no rows when the store fails.
    QList<QSparqlResultRow> rows(const QSparqlQuery &query) const;
    /// Whether \a pattern, in which ?x is what is sought and ?:it is \a uri, has a match; also when the store
    /// fails.
    bool isStored(const char *pattern, const QString &uri) const;
    /// Whether the store took the update.
    bool run(const QSparqlQuery &update);
    /// What the store said of the first of them that failed; empty when none did.
    QString failure() const { return m_failure; }
    /// @}

    /// What MessageWriter::write() does with \a messages. What the store refused is a failure as well.
    bool addMessages(const QList<FeedMessage> &messages, const QString &channelUri) const;

    /// Frees what the library has released, which otherwise waits for an event loop.
    void collectGarbage() const;

private:
    explicit FeedStore(std::unique_ptr<QSparqlConnection> connection);

    QSet<QString> found(const QSet<QString> &links, const QString &pattern) const;
    std::unique_ptr<QSparqlResult> finished(const QSparqlQuery &query) const;
    void noteFailure(const QString &text) const;

    std::unique_ptr<QSparqlConnection> m_connection;
    mutable QString m_failure;
};

} // namespace Tidel

#endif
