// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagewriter.h"

#include "statements_p.h"
#include "store_p.h"

#include <QPair>
#include <QSet>

namespace Tidel {

namespace {

const char *const attempt = "add messages to the store";

/// The update that stores some messages.
class MessageUpdate
{
public:
    /// \a known are links that the store has got since it was asked for \a use.
    MessageUpdate(StorePrivate &store, const QString &channelUri, const LinkUse &use,
                  const QSet<QString> &known)
        : m_store(store), m_channelUri(channelUri), m_use(use), m_known(known)
    {
    }

    Result<void> write(const QList<StorableMessage> &messages)
    {
        QString text;
        QStringList stored;
        QSet<QString> seen;
        for (const StorableMessage &storable : messages) {
            if (storable.link().isNull())
                return Failure(Error(Error::StoreRefused, QString::fromLatin1(attempt),
                                     QStringLiteral("a message has no link")));
            const FeedMessage message = storable.message();
            addEnclosures(message);
            if (seen.contains(message.link()))
                continue;
            seen.insert(message.link());
            if (m_use.isOfMessage(storable.link()) || m_known.contains(message.link()))
                stored.append(message.link());
            else
                text += Statements::insertMessage(message, newUri(), m_channelUri);
        }
        if (!stored.isEmpty())
            text += Statements::linkMessages(stored, m_channelUri);
        return newEnclosures().and_then([&](const QString &enclosures) {
            return m_store.update(Statements::update(text + enclosures), attempt);
        });
    }

private:
    QString newUri() const { return m_store.connection.createUrn().toString(); }

    void addEnclosures(const FeedMessage &message)
    {
        const QList<FeedEnclosure> enclosures = message.enclosures();
        for (const FeedEnclosure &enclosure : enclosures) {
            m_pairs.append({enclosure.remoteUrl(), message.link()});
            if (m_seenRemoteLinks.contains(enclosure.remoteUrl()))
                continue;
            m_seenRemoteLinks.insert(enclosure.remoteUrl());
            m_remoteLinks.append(enclosure.remoteUrl());
            m_enclosures.append(enclosure);
        }
    }

    /// Inserts the enclosures that the store does not have, and gives all of them to their messages.
    Result<QString> newEnclosures()
    {
        if (m_enclosures.isEmpty())
            return QString();
        QSet<QString> known;
        const Result<void> asked = inChunks(m_remoteLinks, [&](const QStringList &links) {
            return m_store.texts(Statements::knownRemoteLinks(links), "look up enclosures in the store")
                .map([&](const QStringList &found) {
                    known.unite(QSet<QString>(found.begin(), found.end()));
                });
        });
        return asked.map([&] {
            QString text;
            for (const FeedEnclosure &enclosure : m_enclosures) {
                if (!known.contains(enclosure.remoteUrl()))
                    text += Statements::insertEnclosure(enclosure, newUri());
            }
            return text + Statements::linkEnclosures(m_pairs);
        });
    }

    StorePrivate &m_store;
    const QString m_channelUri;
    const LinkUse &m_use;
    const QSet<QString> &m_known;
    QList<FeedEnclosure> m_enclosures;
    QStringList m_remoteLinks;
    QSet<QString> m_seenRemoteLinks;
    QList<QPair<QString, QString>> m_pairs; // remote link, link of the message
};

/// Writes one group, and adds its links to \a known. If the store refuses it because of a value, writes its
/// halves, so that only the messages with such values are left out.
Result<void> writeGroup(StorePrivate &store, const QList<StorableMessage> &messages,
                        const QString &channelUri, const LinkUse &use, QSet<QString> *known)
{
    const Result<void> written = MessageUpdate(store, channelUri, use, *known).write(messages);
    if (written) {
        for (const StorableMessage &message : messages)
            known->insert(message.link().toString());
    }
    const bool canBeSplit = messages.size() > 1;
    if (written || written.error().kind() != Error::StoreRefused || !canBeSplit)
        return written;
    const int half = int(messages.size()) / 2;
    const Result<void> first = writeGroup(store, messages.mid(0, half), channelUri, use, known);
    const Result<void> second = writeGroup(store, messages.mid(half), channelUri, use, known);
    return first ? second : first;
}

} // namespace

MessageWriter::MessageWriter(const Store &store) : m_store(store) { }

Result<void> MessageWriter::write(const QList<StorableMessage> &messages, const QString &channelUri,
                                  const LinkUse &use)
{
    // Other texts would be encoded, and then name another resource.
    if (channelUri.isEmpty()
        || Statements::iri(channelUri) != QLatin1Char('<') + channelUri + QLatin1Char('>'))
        return Failure(
            Error(Error::NotFound, QString::fromLatin1(attempt), QStringLiteral("no such channel")));
    StorePrivate &store = StorePrivate::of(m_store);
    QSet<QString> known;
    Result<void> result;
    for (int from = 0; from < messages.size(); from += chunkSize) {
        const Result<void> written =
            writeGroup(store, messages.mid(from, chunkSize), channelUri, use, &known);
        if (!written && result)
            result = written;
        // Each further try could wait as long for the store as this one.
        if (!written && written.error().kind() == Error::StoreFailed)
            break;
    }
    return result;
}

} // namespace Tidel
