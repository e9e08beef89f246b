// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feeddownload.h"

#include "feedfile.h"
#include "feedparser.h"
#include "feedwriter.h"
#include "parsing.h"

#include <TidelReader/channels.h>
#include <TidelReader/feeds.h>
#include <TidelReader/itemkey.h>
#include <TidelReader/writeturn.h>

#include <QElapsedTimer>

#include <algorithm>

namespace Tidel {

namespace {

const char *const feedTypes = "application/rss+xml, application/atom+xml, application/rdf+xml, "
                              "application/xml;q=0.9, text/xml;q=0.9, */*;q=0.5";

// In milliseconds. For so long the event loop hears nothing, a signal for instance.
constexpr int maximumPause = 200;

const char *const deletedMeanwhile = "the channel was deleted during the download";

Outcome channelNotRead(const Error &error, const char *reasonIfMissing, const char *advice)
{
    return error.kind() == Error::NotFound
        ? Outcome{FeedDownloadNotFound, QString::fromLatin1(reasonIfMissing)}
        : storeFailed(error, advice);
}

/// Returns true if \a outcome ends a subscription, whatever other addresses there are; otherwise returns
/// false.
bool isFinal(const Outcome &outcome)
{
    return outcome.error == FeedDownloadCanceled || outcome.error == FeedDownloadAlreadyStored
        || outcome.error == FeedDownloadStoreFailed;
}

} // namespace

FeedDownload::FeedDownload(const DownloadTools &tools, bool isSubscription)
    : Download(tools), m_isSubscription(isSubscription)
{
}

FeedDownload::~FeedDownload() = default;

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
        failed(prepared);
    } else if (m_address.isLocalFile()) {
        readFile();
    } else {
        m_buffer.close();
        m_buffer.open(QIODevice::WriteOnly | QIODevice::Truncate);
        transfer({m_address, feedTypes, true, m_known}, m_buffer);
    }
}

Outcome FeedDownload::prepare()
{
    if (m_isSubscription) {
        const Result<QString> known = Channels(store()).uri(Link::encoded(m_address));
        if (!known)
            return storeFailed(known.error(), "try again");
        if (!known->isEmpty())
            return {FeedDownloadAlreadyStored, QStringLiteral("the feed is already subscribed")};
    } else {
        const Result<FeedState> state = Feeds(store()).state(m_channelUri);
        if (!state)
            return channelNotRead(state.error(), "no such channel", "try again");
        m_address = QUrl(state->link());
        m_itemBase = state->itemBase();
        m_known = {state->entityTag(), state->lastModified()};
        m_lastError = state->lastError();
    }
    if (!canTransfer(m_address))
        return badAddress();
    return {};
}

void FeedDownload::readFile()
{
    const QString path = m_address.toLocalFile();
    const Validators validators = fileValidators(path);
    if (!validators.entityTag.isEmpty() && validators.entityTag == m_known.entityTag) {
        endUnchanged();
        return;
    }
    Outcome outcome;
    const auto document = readDocument(path, maximumSize(), &outcome);
    if (document)
        read({*document, m_address, {}, {}, validators, {}});
    else
        failed(outcome);
}

void FeedDownload::transferred(const Transfer &transfer)
{
    if (transfer.isUnchanged())
        endUnchanged();
    else
        read({m_buffer.data(), transfer.address(), transfer.charset(), transfer.linkHeader(),
              transfer.validators(), transfer.answer()});
}

void FeedDownload::endUnchanged()
{
    // Of a file there is nothing to note but that it can be read again.
    const bool isKnown = m_address.isLocalFile() && m_lastError.isEmpty();
    const Result<void> noted = isKnown
        ? Result<void>()
        : Feeds(store()).noteAnswer(m_channelUri, answer(), QDateTime::currentDateTimeUtc());
    followMove();
    finish(noted ? Outcome() : storeFailed(noted.error(), "refresh again"));
}

void FeedDownload::noteFailure(const Outcome &outcome)
{
    const bool isOfFeed = outcome.error != FeedDownloadCanceled && outcome.error != FeedDownloadStoreFailed;
    if (m_isSubscription || m_address.isEmpty() || !isOfFeed)
        return;
    FeedAnswer failure = answer();
    failure.error = outcome.error;
    failure.reason = outcome.reason;
    // The user hears of the failure, and needs no second one.
    static_cast<void>(Feeds(store()).noteAnswer(m_channelUri, failure, QDateTime::currentDateTimeUtc()));
}

void FeedDownload::followMove()
{
    if (m_isSubscription || answer().movedTo.isNull())
        return;
    const Result<QString> moved = Feeds(store()).followMove(m_channelUri);
    if (!moved)
        m_moves.append(moved.error().text());
    else if (!moved->isEmpty())
        m_moves.append(*moved);
}

void FeedDownload::read(const FeedDocument &document)
{
    m_document = document;
    m_buffer.setData(QByteArray());
    if (!m_isSubscription)
        m_itemNote = Feeds(store()).itemNote(m_channelUri).value_or(ItemNote());
    m_digests = ItemDigests::fromNote(m_itemNote.text);
    m_parsing = std::make_unique<Parsing>(parser(), document, m_address, m_digests.digests);
    connect(m_parsing.get(), &Parsing::finished, this, &FeedDownload::parsed);
}

void FeedDownload::parsed()
{
    if (isOver())
        return;
    auto feed = m_parsing->takeResult();
    if (!feed) {
        // Others need not wait until the next address has answered.
        m_parsing.release()->deleteLater();
        // A page that a page has led to is not followed.
        if (feed.error().isWebPage && m_isSubscription && !m_page)
            m_page.emplace(m_document);
        failed({FeedDownloadNotAFeed, feed.error().reason});
        return;
    }
    setFeed(std::move(*feed));
    const QString note = m_itemNote.text;
    FeedMemory memory;
    const Outcome begun = m_isSubscription ? addChannel() : remember(&memory);
    if (!begun.isFine()) {
        finish(begun);
        return;
    }
    if (m_itemNote.text != note || !recognizedRightly(memory))
        ParsedFeed::parse(m_document, m_address).map([this](ParsedFeed &&whole) {
            setFeed(std::move(whole));
        });
    m_document.bytes.clear();
    m_writer = std::make_unique<FeedWriter>(store(), m_channelUri, m_isSubscription);
    m_writer->begin(*m_feed, m_document, memory, m_itemNote);
    writeSome();
}

void FeedDownload::setFeed(ParsedFeed &&feed)
{
    m_feed = std::make_unique<ParsedFeed>(std::move(feed));
    if (!m_itemBase.isEmpty())
        m_feed->nameItemsAfter(m_itemBase);
}

bool FeedDownload::recognizedRightly(const FeedMemory &memory) const
{
    const std::vector<NamedItem> &items = m_feed->items();
    const auto isRecognized = [](const NamedItem &item) { return item.record.isRecognized; };
    if (std::none_of(items.begin(), items.end(), isRecognized))
        return true;
    const auto isDropped = [&](const NamedItem &item) {
        return isRecognized(item) && memory.droppedKeys.contains(itemKey(m_channelUri, item.record.id));
    };
    const bool isAnyDropped = !memory.droppedLinks.isEmpty()
        || (!memory.droppedKeys.isEmpty() && std::any_of(items.begin(), items.end(), isDropped));
    return !isAnyDropped && m_digests.context == m_feed->context()
        && m_feed->uniqueIds().size() == int(items.size());
}

void FeedDownload::failed(const Outcome &outcome)
{
    if (!m_page || isFinal(outcome)) {
        noteFailure(outcome);
        finish(outcome);
        return;
    }
    const QUrl place = m_page->takePlace();
    if (place.isEmpty()) {
        finish(m_page->conclusion(outcome));
        return;
    }
    m_address = place;
    start();
}

QVector<FeedLink> FeedDownload::foundFeeds() const
{
    if (!m_subscribedPlace.isEmpty())
        return {{QString(), m_subscribedPlace}};
    if (!m_page)
        return {};
    const bool isGuessed =
        m_page->feeds().isEmpty() && (outcome().isFine() || outcome().error == FeedDownloadAlreadyStored);
    return isGuessed ? QVector<FeedLink>{{QString(), m_address}} : m_page->feeds();
}

Outcome FeedDownload::addChannel()
{
    if (m_document.address != m_address) {
        const Result<QString> known = Channels(store()).uri(Link::encoded(m_document.address));
        if (!known)
            return storeFailed(known.error(), "try again");
        if (!known->isEmpty()) {
            m_subscribedPlace = m_document.address;
            return {FeedDownloadAlreadyStored, QStringLiteral("the address leads to a subscribed feed")};
        }
    }
    const Result<QString> added = WriteTurn::take().and_then(
        [&](const WriteTurn &) { return Channels(store()).add(m_feed->channel()); });
    if (!added && added.error().kind() == Error::AlreadyStored)
        return {FeedDownloadAlreadyStored, added.error().reason()};
    if (!added)
        return storeFailed(added.error(), "try again");
    m_channelUri = *added;
    return {};
}

Outcome FeedDownload::remember(FeedMemory *memory)
{
    const Result<FeedMemory> remembered = WriteTurn::take().and_then([&](const WriteTurn &) {
        return Feeds(store())
            .state(m_channelUri)
            .and_then([&](const FeedState &state) {
                return state.wasRead() ? Result<void>()
                                       : Channels(store()).describe(m_channelUri, m_feed->channel());
            })
            .and_then([&] { return Feeds(store()).itemNote(m_channelUri); })
            .map([&](const ItemNote &note) { m_itemNote = note; })
            .and_then([&] {
                // A file is asked for at any time.
                const bool isNoted = !m_document.answer.host.isEmpty() || !m_lastError.isEmpty();
                return isNoted ? Feeds(store()).plan(m_channelUri) : FeedPlan();
            })
            .map([&](const FeedPlan &plan) { m_document.plan = plan; })
            .and_then([&] { return Feeds(store()).memory(m_channelUri); });
    });
    if (!remembered)
        return channelNotRead(remembered.error(), deletedMeanwhile, "refresh again");
    *memory = *remembered;
    return {};
}

void FeedDownload::writeSome()
{
    QElapsedTimer time;
    time.start();
    while (!isOver() && !m_writer->isOver() && time.elapsed() < maximumPause)
        m_writer->writeNext();
    if (isOver())
        return;
    if (m_writer->isOver()) {
        followMove();
        finish(writingOutcome());
    } else {
        QMetaObject::invokeMethod(this, &FeedDownload::writeSome, Qt::QueuedConnection);
    }
}

Outcome FeedDownload::writingOutcome() const
{
    if (m_writer->result())
        return {};
    const Error &error = m_writer->result().error();
    if (m_isSubscription)
        return storeFailed(error, "the channel is subscribed, refresh it");
    return channelNotRead(error, deletedMeanwhile, "refresh again");
}

QStringList FeedDownload::newMessages() const { return m_writer ? m_writer->written().added : QStringList(); }

QStringList FeedDownload::changedMessages() const
{
    return m_writer ? m_writer->written().changed : QStringList();
}

QList<FeedMessage> FeedDownload::headlines() const
{
    return m_writer ? m_writer->headlines() : QList<FeedMessage>();
}

QStringList FeedDownload::newNotes() const
{
    return (m_writer ? m_writer->newNotes() : QStringList()) + m_moves;
}

} // namespace Tidel
