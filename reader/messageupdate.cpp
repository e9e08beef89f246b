// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageupdate_p.h"

#include "detailfields_p.h"
#include "likeness_p.h"
#include "messageremoval_p.h"
#include "statements_p.h"

namespace Tidel {

MessageUpdate::MessageUpdate(StorePrivate &store, const QString &channelUri)
    : m_store(store), m_channelUri(channelUri), m_changes(store, channelUri)
{
}

void MessageUpdate::insert(const StorableMessage &message)
{
    const QString uri = newUri();
    QVector<DetailValue> values = detailValues(message.details());
    values.append({Statements::digest, digest(message.message(), m_channelUri)});
    if (!message.key().isEmpty())
        values.append({Statements::itemKey, message.key()});
    m_text += Statements::insertMessage(message.message(), uri, m_channelUri)
        + Statements::insertDetails(uri, values);
    m_addedLinks.append(message.link().toString());
    addEnclosures(message);
}

void MessageUpdate::join(const StorableMessage &message)
{
    const QString link = message.link().toString();
    m_joinedLinks.append(link);
    if (!message.key().isEmpty())
        m_text += Statements::insertKey(link, message.key());
    m_addedLinks.append(link);
    addEnclosures(message);
}

void MessageUpdate::change(const StorableMessage &message, const KnownMessage &known)
{
    m_changes.add(message, known);
}

void MessageUpdate::addEnclosures(const StorableMessage &message)
{
    const QList<FeedEnclosure> enclosures = message.message().enclosures();
    for (const FeedEnclosure &enclosure : enclosures) {
        const QString remoteUrl = enclosure.remoteUrl();
        m_pairs.append({remoteUrl, message.link().toString()});
        if (m_seenRemoteLinks.contains(remoteUrl))
            continue;
        m_seenRemoteLinks.insert(remoteUrl);
        m_remoteLinks.append(remoteUrl);
        m_enclosures.append({enclosure, message.enclosureDetails(remoteUrl)});
    }
}

Result<void> MessageUpdate::run()
{
    const Result<void> compared = m_changes.compare();
    if (!compared)
        return compared;
    for (const StorableMessage &message : m_changes.rewritten())
        addEnclosures(message);
    QString text = m_changes.text() + m_text;
    if (!m_joinedLinks.isEmpty())
        text += Statements::linkMessages(m_joinedLinks, m_channelUri);
    return enclosures().and_then([&](const QString &enclosures) -> Result<void> {
        text += enclosures;
        if (text.isEmpty())
            return {};
        QList<FeedEnclosure> deleted;
        return m_store.updateLoosely(Statements::update(text), "add messages to the store").and_then([&] {
            return deleteReleased(m_store, m_changes.released(), &deleted);
        });
    });
}

Result<QString> MessageUpdate::enclosures() const
{
    if (m_enclosures.isEmpty())
        return QString();
    QSet<QString> known;
    const Result<void> asked = inChunks(m_remoteLinks, [&](const QStringList &links) {
        return m_store.texts(Statements::knownRemoteLinks(links), "look up enclosures in the store")
            .map([&](const QStringList &found) { known.unite(QSet<QString>(found.begin(), found.end())); });
    });
    return asked.map([&] {
        QString text;
        for (const NewEnclosure &candidate : m_enclosures) {
            if (known.contains(candidate.enclosure.remoteUrl()))
                continue;
            const QString uri = newUri();
            text += Statements::insertEnclosure(candidate.enclosure, uri)
                + Statements::insertDetails(uri, detailValues(candidate.details));
        }
        return text + Statements::linkEnclosures(m_pairs);
    });
}

} // namespace Tidel
