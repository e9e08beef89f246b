// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messageupdate_p.h"

#include "detailfields_p.h"
#include "likeness_p.h"
#include "messageremoval_p.h"
#include "statements_p.h"

namespace Tidel {

MessageUpdate::MessageUpdate(StorePrivate &store, const QString &channelUri, const QString &note)
    : m_store(store), m_channelUri(channelUri), m_note(note), m_time(Statements::localTimeText()),
      m_changes(store, channelUri)
{
}

void MessageUpdate::insert(const StorableMessage &message)
{
    const QString uri = newUri();
    QVector<DetailValue> values = detailValues(message.details());
    values.append({Statements::digest, digest(message.message(), m_channelUri)});
    if (!message.key().isEmpty())
        values.append({Statements::itemKey, message.key()});
    m_text += Statements::insertMessage(message.message(), uri, m_channelUri, m_time)
        + Statements::insertDetails(uri, values);
    m_newLinks.append(message.link().toString());
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
        if (m_enclosures.contains(remoteUrl))
            continue;
        m_remoteLinks.append(remoteUrl);
        m_enclosures.insert(remoteUrl, {enclosure, message.enclosureDetails(remoteUrl)});
    }
}

Result<void> MessageUpdate::run()
{
    const Result<void> compared = m_changes.compare();
    if (!compared)
        return compared;
    for (const StorableMessage &message : m_changes.rewritten())
        addEnclosures(message);
    const Result<void> asked = findNewEnclosures();
    if (!asked)
        return asked;
    const QString text = refusals() + m_changes.text() + m_text + joins() + enclosures()
        + deletionOfReleased(m_changes.released()) + m_note;
    return text.isEmpty() ? Result<void>()
                          : m_store.updateLoosely(Statements::update(text), "add messages to the store");
}

Result<bool> MessageUpdate::isOutOfDate() const
{
    const char *const attempt = "look up in the store what it refused";
    const auto isKnown = [&](const QStringList &links, QSparqlQuery (*question)(const QStringList &)) {
        bool isAnyKnown = false;
        return inChunks(links,
                        [&](const QStringList &some) {
                            return m_store.texts(question(some), attempt).map([&](const QStringList &found) {
                                isAnyKnown |= !found.isEmpty();
                            });
                        })
            .map([&] { return isAnyKnown; });
    };
    return isKnown(m_newLinks, Statements::knownLinks).and_then([&](bool isAnyKnown) {
        return isAnyKnown ? Result<bool>(true) : isKnown(m_newRemoteLinks, Statements::knownRemoteLinks);
    });
}

QString MessageUpdate::refusals() const
{
    QString text;
    if (!m_newLinks.isEmpty())
        text += Statements::refuseLinks(m_newLinks);
    for (int from = 0; from < m_newRemoteLinks.size(); from += chunkSize)
        text += Statements::refuseRemoteLinks(m_newRemoteLinks.mid(from, chunkSize));
    return text;
}

QString MessageUpdate::joins() const
{
    return m_joinedLinks.isEmpty() ? QString() : Statements::linkMessages(m_joinedLinks, m_channelUri);
}

Result<void> MessageUpdate::findNewEnclosures()
{
    QSet<QString> known;
    return inChunks(m_remoteLinks,
                    [&](const QStringList &links) {
                        return m_store
                            .texts(Statements::knownRemoteLinks(links), "look up enclosures in the store")
                            .map([&](const QStringList &found) {
                                known.unite(QSet<QString>(found.begin(), found.end()));
                            });
                    })
        .map([&] {
            for (const QString &link : qAsConst(m_remoteLinks)) {
                if (!known.contains(link))
                    m_newRemoteLinks.append(link);
            }
        });
}

QString MessageUpdate::enclosures() const
{
    QString text;
    for (const QString &link : m_newRemoteLinks) {
        const NewEnclosure candidate = m_enclosures.value(link);
        const QString uri = newUri();
        text += Statements::insertEnclosure(candidate.enclosure, uri)
            + Statements::insertDetails(uri, detailValues(candidate.details));
    }
    return m_pairs.isEmpty() ? text : text + Statements::linkEnclosures(m_pairs);
}

} // namespace Tidel
