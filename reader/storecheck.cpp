// SPDX-License-Identifier: LGPL-2.1-or-later
#include "storecheck.h"

#include "filecheck_p.h"
#include "merge_p.h"
#include "messageremoval_p.h"
#include "orphans.h"
#include "statements_p.h"
#include "store_p.h"
#include "writeturn.h"

namespace Tidel {

namespace {

using Statements::Kind;

/// A property that each resource of a kind must have.
struct Property
{
    Kind kind;
    const char *name;
};

// Without these, no list shows a message.
const Property necessaryTexts[] = {{Kind::Channel, "nie:title"},
                                   {Kind::Message, "nie:title"},
                                   {Kind::Message, "nie:description"},
                                   {Kind::Message, "nie:subject"}};
const Property necessaryLinks[] = {{Kind::Channel, "nie:links"}, {Kind::Message, "nie:links"}};
const Property downloadTime{Kind::Message, "mfo:downloadedTime"};

QString nameOf(const Property &property) { return QLatin1String(property.name); }

Result<QStringList> unite(StorePrivate &store, const QVector<QSparqlQuery> &questions)
{
    QStringList all;
    for (const QSparqlQuery &question : questions) {
        const Result<QStringList> found = store.texts(question, "check the store");
        if (!found)
            return found;
        all += *found;
    }
    all.removeDuplicates();
    return all;
}

template <Kind kind> Result<QStringList> findSameLinks(StorePrivate &store)
{
    return unite(store, {Statements::linksOfSeveral(kind)});
}

Result<QStringList> findMissingValues(StorePrivate &store)
{
    QVector<QSparqlQuery> questions{Statements::channelsWithoutTime(),
                                    Statements::withoutValue(downloadTime.kind, nameOf(downloadTime))};
    for (const Property &property : necessaryTexts)
        questions.append(Statements::withoutValue(property.kind, nameOf(property)));
    for (const Property &property : necessaryLinks)
        questions.append(Statements::withoutValue(property.kind, nameOf(property)));
    return unite(store, questions);
}

Result<QStringList> findSeveralValues(StorePrivate &store)
{
    QVector<QSparqlQuery> questions;
    for (const Kind kind : {Kind::Channel, Kind::Message, Kind::Enclosure}) {
        const QStringList properties = Statements::singleProperties(kind);
        for (const QString &property : properties)
            questions.append(Statements::withSeveralValues(kind, property));
    }
    return unite(store, questions);
}

Result<QStringList> findOrphanMessages(StorePrivate &store)
{
    return unite(store, {Statements::orphanMessages()});
}

Result<QStringList> findOrphanEnclosures(StorePrivate &store)
{
    return readFiles(store, Statements::orphanEnclosures(), "check the store")
        .map([](const QList<FeedEnclosure> &enclosures) {
            QStringList links;
            for (const FeedEnclosure &enclosure : enclosures)
                links.append(enclosure.remoteUrl());
            return links;
        });
}

struct Search
{
    Finding::Kind kind;
    Result<QStringList> (*find)(StorePrivate &);
};

const Search searches[] = {{Finding::SameChannels, findSameLinks<Kind::Channel>},
                           {Finding::SameMessages, findSameLinks<Kind::Message>},
                           {Finding::SameEnclosures, findSameLinks<Kind::Enclosure>},
                           {Finding::MissingValues, findMissingValues},
                           {Finding::SeveralValues, findSeveralValues},
                           {Finding::OrphanMessages, findOrphanMessages},
                           {Finding::OrphanEnclosures, findOrphanEnclosures},
                           {Finding::MissingFiles, findMissingFiles},
                           {Finding::UnfinishedFiles, findUnfinishedFiles},
                           {Finding::UnknownFiles, findUnknownFiles}};

Result<void> addMissingLinks(StorePrivate &store)
{
    for (const Property &property : necessaryLinks) {
        const auto uris = unite(store, {Statements::withoutValue(property.kind, nameOf(property))});
        if (!uris)
            return Failure(uris.error());
        const Result<void> added = inChunks(*uris, [&](const QStringList &some) {
            QString text;
            for (const QString &uri : some)
                text += Statements::insertLink(uri, store.connection.createUrn().toString());
            return store.update(Statements::update(text), "add missing links to the store");
        });
        if (!added)
            return added;
    }
    return {};
}

Result<void> addMissingValues(StorePrivate &store)
{
    const Result<WriteTurn> turn = WriteTurn::take();
    if (!turn)
        return Failure(turn.error());
    return addMissingLinks(store).and_then([&] {
        // The feed may still show what is missing.
        QString text = Statements::forgetReadings() + Statements::insertSubscriptionTimes()
            + Statements::insertDownloadTimes() + Statements::insertTitlesOfChannels();
        for (const Property &property : necessaryTexts)
            text += Statements::insertEmptyTexts(property.kind, nameOf(property));
        return store.update(Statements::update(text), "add missing values to the store");
    });
}

} // namespace

StoreCheck::StoreCheck(const Store &store) : m_store(store) { }

Result<QList<Finding>> StoreCheck::find(const Progress &progress) const
{
    QList<Finding> findings;
    const int all = int(std::size(searches));
    for (const Search &search : searches) {
        if (progress)
            progress(int(findings.size()), all);
        const Result<QStringList> places = search.find(StorePrivate::of(m_store));
        if (!places)
            return Failure(places.error());
        findings.append({search.kind, *places});
    }
    return findings;
}

Result<void> StoreCheck::repair(const QList<Finding> &findings, const RemovalStep &step)
{
    StorePrivate &store = StorePrivate::of(m_store);
    const auto mend = [&](const Finding &finding) -> Result<void> {
        switch (finding.kind) {
        case Finding::SameChannels: return mergeSameLinks(store, Kind::Channel, finding.places);
        case Finding::SameMessages: return mergeSameLinks(store, Kind::Message, finding.places);
        case Finding::SameEnclosures: return mergeSameLinks(store, Kind::Enclosure, finding.places);
        case Finding::MissingValues: return addMissingValues(store);
        case Finding::OrphanMessages:
        case Finding::OrphanEnclosures: return Orphans(m_store).remove(step);
        case Finding::MissingFiles: return forgetMissingFiles(store);
        case Finding::UnfinishedFiles: return removeUnfinishedFiles(finding.places);
        case Finding::SeveralValues:
        case Finding::UnknownFiles: break;
        }
        return {};
    };
    for (const Finding &finding : findings) {
        const Result<void> mended = finding.places.isEmpty() ? Result<void>() : mend(finding);
        if (!mended)
            return mended;
    }
    return {};
}

} // namespace Tidel
