// SPDX-License-Identifier: LGPL-2.1-or-later
#include "archivemerge_p.h"

#include "archivemarks_p.h"
#include "itemkey_p.h"
#include "statements_p.h"
#include "storedfacts_p.h"
#include "writeturn.h"

#include <QSet>

namespace Tidel {

namespace {

using Statements::Kind;
using FactsByUri = QHash<QString, StoredFacts>;

const char *const attempt = "merge the archives";

/// The address or text of \a term. Links and keys have no escapes.
QString bare(const QString &term) { return term.mid(1, term.size() - 2); }

QStringList bare(QStringList terms)
{
    for (QString &term : terms)
        term = bare(term);
    return terms;
}

/// Returns the resource that \a facts describe: the one with \a link, or with one of their keys. Leaves them
/// the keys that no other resource has.
QString targetOf(const QHash<QString, QString> &byLink, const QHash<QString, QString> &byKey,
                 const QString &link, StoredFacts *facts)
{
    QString target = byLink.value(link);
    const QStringList keys = bare(valuesNamed(*facts, "itemKey"));
    for (const QString &key : keys)
        target = target.isEmpty() ? byKey.value(key) : target;
    for (QStringList &terms : *facts) {
        for (const QString &key : keys) {
            if (byKey.value(key, target) != target)
                terms.removeAll(Statements::literal(key));
        }
    }
    return target;
}

/// The values of the property \a name by their resources.
Result<QHash<QString, QStringList>> allNamed(StorePrivate &store, const QString &name)
{
    return store.run(Statements::everyDetail(name), attempt).map([](const Answer &answer) {
        QHash<QString, QStringList> values;
        while (answer->next())
            values[answer->value(0).toString()].append(answer->value(1).toString());
        return values;
    });
}

/// Merges one archive into another one.
class Merge
{
public:
    Merge(StorePrivate &source, StorePrivate &target) : m_source(source), m_target(target) { }

    Result<void> run()
    {
        return mergeCommonRule()
            .and_then([this] { return mergeAll(Kind::Channel); })
            .and_then([this] { return mergeAll(Kind::Message); })
            .and_then([this] { return mergeDropped(); });
    }

private:
    Result<void> mergeCommonRule();
    Result<void> mergeAll(Kind kind);
    Result<QString> changes(Kind kind, const QStringList &uris);
    Result<QString> changesOfEnclosures(const QStringList &owners);
    Result<QString> changesOfLinks(const QStringList &links);
    Result<QSet<QString>> find(Kind kind, const QStringList &uris, FactsByUri *facts);
    Result<void> mergeDropped();
    Result<void> mergeDropped(const QString &channel, const QString &name, const QStringList &own,
                              const QStringList &others);
    Result<QSet<QString>> present(const QString &channel, const QString &name, const QStringList &values);
    QString adapted(const QString &key) const;
    void adapt(StoredFacts *facts) const;

    StorePrivate &m_source;
    StorePrivate &m_target;
    QHash<QString, QString> m_uris; // of the target, by those of the source
    QHash<QString, QString> m_prefixes; // of the keys of items, in the same way
};

Result<void> Merge::mergeCommonRule()
{
    const auto question = Statements::everyDetail(Statements::retention);
    const auto theirs = m_source.values(question, attempt);
    const auto own = m_target.values(question, attempt);
    if (!theirs || !own)
        return Failure(theirs ? own.error() : theirs.error());
    const QString rule = theirs->value(Statements::everyChannel);
    if (rule.isEmpty() || own->contains(Statements::everyChannel))
        return {};
    return m_target.update(Statements::update(Statements::replaceRetention(QString(), rule)), attempt);
}

Result<void> Merge::mergeAll(Kind kind)
{
    const Result<QStringList> uris = m_source.texts(Statements::resourcesOf(kind), attempt);
    if (!uris)
        return Failure(uris.error());
    return inChunks(*uris, [&](const QStringList &some) -> Result<void> {
        const Result<WriteTurn> turn = WriteTurn::take();
        if (!turn)
            return Failure(turn.error());
        return changes(kind, some).and_then([this](const QString &text) {
            return text.isEmpty() ? Result<void>() : m_target.update(Statements::update(text), attempt);
        });
    });
}

/// The pieces of the update that merges the resources \a uris of the source.
Result<QString> Merge::changes(Kind kind, const QStringList &uris)
{
    Result<FactsByUri> facts = storedFacts(m_source, uris, attempt);
    if (!facts)
        return Failure(facts.error());
    for (StoredFacts &some : *facts)
        adapt(&some);
    const Result<QSet<QString>> added = find(kind, uris, &*facts);
    if (!added)
        return Failure(added.error());
    QStringList known;
    for (const QString &uri : uris) {
        if (!added->contains(m_uris.value(uri)))
            known.append(m_uris.value(uri));
    }
    Result<FactsByUri> own = storedFacts(m_target, known, attempt);
    if (!own)
        return Failure(own.error());
    QString text;
    QStringList links;
    for (const QString &uri : uris) {
        StoredFacts &others = (*facts)[uri];
        StoredFacts &mine = (*own)[m_uris.value(uri)];
        if (added->contains(uri)) {
            text += Statements::insertResource(uri, Statements::className(kind), others);
            mine = others;
            links += bare(valuesNamed(others, "links"));
        } else {
            text += laterMarks(m_uris.value(uri), mine, &others);
            text += takeOver(m_uris.value(uri), &mine, others);
        }
    }
    const auto ofLinks = kind == Kind::Channel ? changesOfLinks(links) : Result<QString>(QString());
    const auto ofParts = kind == Kind::Enclosure ? Result<QString>(QString()) : changesOfEnclosures(uris);
    if (!ofLinks || !ofParts)
        return Failure(ofLinks ? ofParts.error() : ofLinks.error());
    return text + *ofLinks + *ofParts;
}

/// The pieces for the enclosures of the channels or messages \a owners.
Result<QString> Merge::changesOfEnclosures(const QStringList &owners)
{
    return m_source.texts(Statements::enclosuresOfOwners(owners), attempt).and_then([this](QStringList uris) {
        uris.removeDuplicates();
        return changes(Kind::Enclosure, uris);
    });
}

/// The pieces that give \a links of new channels their times of subscription.
Result<QString> Merge::changesOfLinks(const QStringList &links)
{
    const auto others = storedFacts(m_source, links, attempt);
    const auto own = storedFacts(m_target, links, attempt);
    if (!others || !own)
        return Failure(others ? own.error() : others.error());
    QString text;
    for (const QString &link : links) {
        if (!own->contains(link))
            text += Statements::insertResource(link, "nie:DataObject", others->value(link));
    }
    return text;
}

/// Finds the resources \a uris of the source in the target, and returns those that it lacks.
Result<QSet<QString>> Merge::find(Kind kind, const QStringList &uris, FactsByUri *facts)
{
    const char *const linkName = kind == Kind::Enclosure ? "remoteLink" : "links";
    QStringList links;
    QStringList keys;
    for (const StoredFacts &some : qAsConst(*facts)) {
        links += bare(valuesNamed(some, linkName));
        keys += bare(valuesNamed(some, "itemKey"));
    }
    links.removeAll(QString());
    auto byLink = m_target.values(Statements::resourcesWithLinks(kind, links), attempt);
    const auto byKey = keys.isEmpty() ? Result<QHash<QString, QString>>(QHash<QString, QString>())
                                      : m_target.values(Statements::messagesWithKeys(keys), attempt);
    const auto byUri = m_target.texts(Statements::resourcesAmong(kind, uris), attempt);
    if (!byLink || !byKey || !byUri)
        return Failure(!byLink ? byLink.error() : !byKey ? byKey.error() : byUri.error());

    QSet<QString> added;
    for (const QString &uri : uris) {
        StoredFacts &some = (*facts)[uri];
        const QString link = bare(valuesNamed(some, linkName).value(0));
        const QString target = targetOf(*byLink, *byKey, link, &some);
        if (target.isEmpty() && !byUri->contains(uri)) {
            added.insert(uri);
            if (!link.isEmpty())
                byLink->insert(link, uri);
        }
        m_uris.insert(uri, target.isEmpty() ? uri : target);
        if (kind == Kind::Channel)
            m_prefixes.insert(itemKeyPrefix(uri), itemKeyPrefix(m_uris.value(uri)));
    }
    return added;
}

QString Merge::adapted(const QString &key) const
{
    const QString prefix = key.section(QLatin1Char('-'), 0, 0) + QLatin1Char('-');
    return m_prefixes.value(prefix, prefix) + key.mid(prefix.size());
}

/// Says \a facts of the source in the words of the target.
void Merge::adapt(StoredFacts *facts) const
{
    // The next refresh reads whole documents, and tells what these archives have of them.
    removeNamed(facts, {"entityTag", "lastModified", "itemDigests", "droppedLink", "droppedKey"});
    for (auto fact = facts->begin(); fact != facts->end(); ++fact) {
        const QString name = Statements::detailName(fact.key());
        const bool isKey = name == QLatin1String("itemKey");
        if (!isKey && name != QLatin1String("isLogicalPartOf"))
            continue;
        QStringList terms;
        const QStringList texts = bare(*fact);
        for (const QString &text : texts) {
            if (isKey)
                terms.append(Statements::literal(adapted(text)));
            else if (m_uris.contains(text))
                terms.append(Statements::iri(m_uris.value(text)));
        }
        *fact = terms;
    }
}

/// Merges what channels know of dropped messages. A message that is there was not dropped.
Result<void> Merge::mergeDropped()
{
    for (const QString &name : {Statements::droppedLink, Statements::droppedKey}) {
        auto theirs = allNamed(m_source, name);
        const auto own = allNamed(m_target, name);
        if (!theirs || !own)
            return Failure(theirs ? own.error() : theirs.error());
        const QStringList channels = m_uris.keys();
        for (const QString &channel : channels) {
            const QString target = m_uris.value(channel);
            QStringList others = theirs->value(channel);
            for (QString &value : others)
                value = name == Statements::droppedKey ? adapted(value) : value;
            const Result<void> merged = mergeDropped(target, name, own->value(target), others);
            if (!merged)
                return merged;
        }
    }
    return {};
}

Result<void> Merge::mergeDropped(const QString &channel, const QString &name, const QStringList &own,
                                 const QStringList &others)
{
    if (own.isEmpty() && others.isEmpty())
        return {};
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn)
        return Failure(turn.error());
    return present(channel, name, own + others).and_then([&](const QSet<QString> &there) -> Result<void> {
        const QSet<QString> known(own.begin(), own.end());
        QVector<QPair<QString, QVariant>> more;
        QStringList less;
        for (const QString &value : others) {
            if (!there.contains(value) && !known.contains(value))
                more.append({name, value});
        }
        for (const QString &value : own) {
            if (there.contains(value))
                less.append(value);
        }
        const QString text = Statements::insertDetails(channel, more)
            + (less.isEmpty() ? QString() : Statements::deleteDropped(channel, name, less));
        return text.isEmpty() ? Result<void>() : m_target.update(Statements::update(text), attempt);
    });
}

/// Those of \a values, links or keys, whose messages are in the channel.
Result<QSet<QString>> Merge::present(const QString &channel, const QString &name, const QStringList &values)
{
    QSet<QString> there;
    const Result<void> asked = inChunks(values, [&](const QStringList &some) {
        const QSparqlQuery question = name == Statements::droppedKey
            ? Statements::messagesWithKeys(some)
            : Statements::resourcesWithLinks(Kind::Message, some);
        return m_target.values(question, attempt).and_then([&](const QHash<QString, QString> &messages) {
            return m_target.texts(Statements::messagesAmong(messages.values(), channel), attempt)
                .map([&](const QStringList &inChannel) {
                    for (auto message = messages.cbegin(); message != messages.cend(); ++message) {
                        if (inChannel.contains(*message))
                            there.insert(message.key());
                    }
                });
        });
    });
    return asked.map([&] { return there; });
}

} // namespace

Result<void> mergeArchive(StorePrivate &source, StorePrivate &target) { return Merge(source, target).run(); }

} // namespace Tidel
