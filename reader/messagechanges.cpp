// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagechanges_p.h"

#include "detailfields_p.h"
#include "earlierversions_p.h"
#include "itemkey_p.h"
#include "likeness_p.h"
#include "statements_p.h"

#include <QSet>

#include <algorithm>

namespace Tidel {

namespace {

const char *const attempt = "compare messages with the store";

/// The part of a digest that does not depend on the channel.
QString content(const QString &digest) { return digest.section(QLatin1Char('-'), 1); }

} // namespace

MessageChanges::MessageChanges(StorePrivate &store, const QString &channelUri)
    : m_store(store), m_channelUri(channelUri)
{
}

bool MessageChanges::saysSame(const KnownMessage &known, const QString &digest)
{
    return !known.digest.isEmpty() && content(known.digest) == content(digest);
}

void MessageChanges::add(const StorableMessage &message, const KnownMessage &known)
{
    if (!message.key().isEmpty() && !known.hasKey)
        m_text += Statements::insertDetails(known.uri, {{Statements::itemKey, message.key()}});
    const QString said = digest(message.message(), m_channelUri);
    if (!saysSame(known, said))
        m_candidates.append({message, known, said});
}

Result<void> MessageChanges::compare()
{
    if (m_candidates.isEmpty())
        return {};
    QStringList uris;
    for (const Candidate &candidate : qAsConst(m_candidates))
        uris.append(candidate.known.uri);
    return readTexts(uris).and_then([&] { return readFiles(uris); }).map([&] {
        for (const Candidate &candidate : qAsConst(m_candidates)) {
            const Stored stored = m_stored.value(candidate.known.uri);
            if (!isOfOtherChannel(candidate.known, stored))
                compare(candidate, stored);
        }
    });
}

Result<void> MessageChanges::readTexts(const QStringList &uris)
{
    return m_store.run(Statements::texts(uris), attempt).map([&](const Answer &answer) {
        while (answer->next()) {
            Stored &stored = m_stored[answer->value(0).toString()];
            stored.message.setTitle(answer->value(1).toString());
            stored.message.setDescription(answer->value(2).toString());
            stored.message.setSummary(answer->value(3).toString());
            stored.earlierVersions = answer->value(4).toString();
            stored.channels.append(answer->value(5).toString());
        }
    });
}

Result<void> MessageChanges::readFiles(const QStringList &uris)
{
    return m_store.run(Statements::filesOf(uris), attempt).map([&](const Answer &answer) {
        while (answer->next()) {
            FeedEnclosure enclosure;
            enclosure.setUri(answer->value(1).toString());
            enclosure.setRemoteUrl(answer->value(2).toString());
            enclosure.setLocalUrl(answer->value(3).toString());
            m_stored[answer->value(0).toString()].message.addEnclosure(enclosure);
        }
    });
}

bool MessageChanges::isOfOtherChannel(const KnownMessage &known, const Stored &stored) const
{
    return !known.digest.startsWith(itemKeyPrefix(m_channelUri))
        && std::any_of(stored.channels.begin(), stored.channels.end(), [&](const QString &channel) {
               return known.digest.startsWith(itemKeyPrefix(channel));
           });
}

void MessageChanges::compare(const Candidate &candidate, const Stored &stored)
{
    const FeedMessage message = candidate.message.message();
    // An older version left no digest. What it stored may differ for other reasons than a change of the feed.
    const bool hasDigest = !candidate.known.digest.isEmpty();
    const bool isChanged = hasDigest && !readAlike(stored.message, message);
    if (hasDigest && !isChanged)
        return;
    QVector<DetailValue> values = detailValues(candidate.message.details());
    values.append({Statements::digest, candidate.digest});
    // It may also have been another item with the same link, whose text must not be lost.
    const bool isRenamed = !stored.message.title().isEmpty() && stored.message.title() != message.title();
    if (isChanged || isRenamed) {
        const EarlierVersion earlier{QDateTime::currentDateTimeUtc(), stored.message.title(),
                                     stored.message.description(), stored.message.summary()};
        values.append({Statements::earlierVersionsName, withVersion(earlier, stored.earlierVersions)});
    }
    if (isChanged)
        m_changedLinks.append(message.link());
    m_uris.append(candidate.known.uri);
    m_text += Statements::insertTexts(message, candidate.known.uri)
        + Statements::insertDetails(candidate.known.uri, values);
    m_rewritten.append(candidate.message);
    compareFiles(candidate.message, candidate.known, stored);
}

void MessageChanges::compareFiles(const StorableMessage &message, const KnownMessage &known,
                                  const Stored &stored)
{
    QSet<QString> named;
    const QList<FeedEnclosure> enclosures = message.message().enclosures();
    for (const FeedEnclosure &enclosure : enclosures)
        named.insert(enclosure.remoteUrl());
    QStringList released;
    const QList<FeedEnclosure> files = stored.message.enclosures();
    for (const FeedEnclosure &file : files) {
        if (named.contains(file.remoteUrl()))
            m_text += Statements::deleteDetails({file.uri()}, detailNames<EnclosureDetails>())
                + Statements::insertDetails(file.uri(),
                                            detailValues(message.enclosureDetails(file.remoteUrl())));
        else if (file.localUrl().isEmpty())
            released.append(file.uri());
    }
    if (!released.isEmpty())
        m_text += Statements::release(released, known.uri);
    m_released += released;
}

QString MessageChanges::text() const
{
    if (m_uris.isEmpty())
        return m_text;
    const QStringList names =
        detailNames<MessageDetails>() + QStringList{Statements::digest, Statements::earlierVersionsName};
    // A plug-in that is interrupted before its note must not find the items of before.
    return Statements::deleteTexts(m_uris) + Statements::deleteDetails(m_uris, names) + m_text
        + Statements::forgetItemNote(m_channelUri);
}

} // namespace Tidel
