// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeddownload.h"

#include "droppedlinks.h"
#include "feedfile.h"
#include "feedparser.h"
#include "feedstore.h"
#include "links.h"
#include "writeturn.h"

#include <feedtrackersparql.h>

#include <algorithm>

namespace Tidel {

namespace {

const char *const feedTypes = "application/rss+xml, application/atom+xml, application/rdf+xml, "
                              "application/xml;q=0.9, text/xml;q=0.9, */*;q=0.5";

QNetworkRequest conditionalRequest(const QUrl &address, const Validators &known)
{
    QNetworkRequest request = politeRequest(address);
    request.setRawHeader("Accept", feedTypes);
    if (!known.entityTag.isEmpty())
        request.setRawHeader("If-None-Match", known.entityTag.toLatin1());
    if (!known.lastModified.isEmpty())
        request.setRawHeader("If-Modified-Since", known.lastModified.toLatin1());
    return request;
}

Outcome alreadyStored() { return {FeedDownloadAlreadyStored, QStringLiteral("is subscribed already")}; }

/// Messages without a date are as old as they are in the store: the first that came is the first to be
/// dropped.
QList<FeedMessage> oldestFirst(QList<FeedMessage> messages)
{
    std::reverse(messages.begin(), messages.end());
    return messages;
}

/// \a what the store did not do, why if it says, and \a advice.
Outcome storeFailed(const FeedStore &store, const char *what, const char *advice)
{
    const QString why = store.failure().isEmpty() ? QString() : QStringLiteral(" (%1)").arg(store.failure());
    return {FeedDownloadStoreFailed, QLatin1String(what) + why + QLatin1String("; ") + QLatin1String(advice)};
}

} // namespace

FeedDownload::FeedDownload(const DownloadTools &tools, bool isSubscription)
    : Download(tools), m_isSubscription(isSubscription)
{
}

std::unique_ptr<FeedDownload> FeedDownload::ofNewChannel(const DownloadTools &tools, const QUrl &address)
{
    std::unique_ptr<FeedDownload> download(new FeedDownload(tools, true));
    download->m_address = address;
    return download;
}

std::unique_ptr<FeedDownload> FeedDownload::ofChannel(const DownloadTools &tools, const QString &channelUri)
{
    std::unique_ptr<FeedDownload> download(new FeedDownload(tools, false));
    download->m_channelUri = channelUri;
    return download;
}

void FeedDownload::start()
{
    const Outcome prepared = prepare();
    if (!prepared.isFine()) {
        finish(prepared);
    } else if (m_address.isLocalFile()) {
        readFile();
    } else {
        m_document.open(QIODevice::WriteOnly);
        transfer(conditionalRequest(m_address, m_known), m_document);
    }
}

/// Finds out what to read, and what is known of it.
Outcome FeedDownload::prepare()
{
    if (m_isSubscription) {
        if (store().hasChannel(m_address))
            return alreadyStored();
    } else {
        const auto notes = feedNotes(store(), m_channelUri);
        if (!notes)
            return {FeedDownloadNotFound, QStringLiteral("no such channel")};
        m_address = QUrl(notes->link);
        m_itemBase = notes->itemBase;
        m_known = notes->validators;
    }
    if (!canTransfer(m_address))
        return {FeedDownloadBadAddress, QStringLiteral("is neither a file nor an http or https address")};
    return {};
}

void FeedDownload::readFile()
{
    const QString path = m_address.toLocalFile();
    const Validators validators = fileValidators(path);
    if (!validators.entityTag.isEmpty() && validators.entityTag == m_known.entityTag) {
        finish();
        return;
    }
    Outcome outcome;
    const auto document = readDocument(path, maximumSize(), &outcome);
    finish(document ? read(*document, m_address, validators) : outcome);
}

void FeedDownload::transferred(const Transfer &transfer)
{
    finish(transfer.isUnchanged() ? Outcome()
                                  : read(m_document.data(), transfer.address(), transfer.validators()));
}

Outcome FeedDownload::read(const QByteArray &document, const QUrl &source, const Validators &validators)
{
    if (document.isEmpty())
        return {FeedDownloadNotAFeed, QStringLiteral("is empty")};
    QString error;
    auto feed = ParsedFeed::parse(document, m_address, &error, source);
    if (!feed)
        return {FeedDownloadNotAFeed, error};
    if (!m_itemBase.isEmpty())
        feed->nameItemsAfter(m_itemBase);
    const WriteTurn turn;
    return m_isSubscription ? addChannel(*feed, validators) : addMessages(*feed, validators);
}

Outcome FeedDownload::addChannel(const ParsedFeed &feed, const Validators &validators)
{
    FeedChannel channel = feed.channel();
    const FeedEnclosure icon = channel.icon();
    // The library would make the icon an enclosure of the URI that the channel does not have yet.
    channel.setIcon(FeedEnclosure());
    m_channelUri = store().library().addChannel(channel);
    if (m_channelUri.isEmpty() && store().hasChannel(m_address)) // another download was quicker
        return alreadyStored();
    if (m_channelUri.isEmpty())
        return {FeedDownloadStoreFailed, QStringLiteral("the store did not take the channel")};
    if (!icon.remoteUrl().isEmpty())
        store().library().addEnclosures({icon}, m_channelUri);
    if (!write(feed.messages(linkUse(feed, {}).reserved), validators))
        return storeFailed(store(), "subscribed, but the store did not take its messages",
                           "a refresh tries again");
    return {};
}

Outcome FeedDownload::addMessages(const ParsedFeed &feed, const Validators &validators)
{
    // It may have been deleted while its feed was on the way.
    if (!feedNotes(store(), m_channelUri))
        return {FeedDownloadNotFound, QStringLiteral("the channel has been deleted meanwhile")};
    const QSet<QString> dropped = droppedLinks(store(), m_channelUri);
    const LinkUse use = linkUse(feed, dropped);
    if (!write(feed.messages(use.reserved, use.known), validators))
        return storeFailed(store(), "the store did not take the new messages", "refresh again to try again");
    if (!dropped.isEmpty())
        forgetDropped(store(), m_channelUri, (dropped - feed.links(use.reserved)).values());
    return {};
}

/// Stores what is new, and what is to be known of it next time.
bool FeedDownload::write(const QList<FeedMessage> &messages, const Validators &validators)
{
    const QList<FeedMessage> ordered = oldestFirst(messages);
    for (const FeedMessage &message : ordered)
        m_newMessages.append(message.link());
    return store().addMessages(ordered, m_channelUri) && noteReading(store(), m_channelUri, validators);
}

FeedDownload::LinkUse FeedDownload::linkUse(const ParsedFeed &feed, const QSet<QString> &dropped) const
{
    LinkUse use{dropped, {}};
    QSet<QString> found;
    // Messages get other links in the place of reserved ones.
    do {
        const QSet<QString> links = feed.links(use.reserved) - use.known;
        if (!m_isSubscription)
            use.known += store().messageLinks(links, m_channelUri);
        found = store().channelLinks(links - use.known);
        use.reserved += found;
    } while (!found.isEmpty());
    return use;
}

} // namespace Tidel
