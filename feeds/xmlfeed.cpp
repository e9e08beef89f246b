// SPDX-License-Identifier: LGPL-2.1-or-later
#include "xmlfeed.h"

#include "channelmapping.h"
#include "elementbuilder.h"
#include "itemlist.h"
#include "parsingcost.h"
#include "rootelement.h"
#include "xmlmender.h"

#include <memory>

namespace Tidel {

namespace {

constexpr int maximumShownName = 100;

/// What was read of a document.
struct Reading
{
    explicit Reading(const QSet<QByteArray> &known) : items(known) { }

    ItemList items;
    ElementBuilder builder{[this](const Element &item) { items.add(item); }};
    XmlOutcome outcome;
};

std::unique_ptr<Reading> read(std::string_view document, OnXmlError onError, const QSet<QByteArray> &known)
{
    auto reading = std::make_unique<Reading>(known);
    reading->outcome = parseXml(document, onError, reading->builder);
    return reading;
}

std::string_view view(const QByteArray &text) { return {text.constData(), size_t(text.size())}; }

tl::unexpected<FeedRefusal> refusal(const QString &reason, bool isPage = false)
{
    return tl::make_unexpected(FeedRefusal{reason, isPage});
}

/// Why the document has to be mended; empty if it only lacks entities.
QString errorOf(const Reading &reading)
{
    // Tags without end tags are nested ever deeper.
    const bool mayLackEndTags = reading.outcome.error.isEmpty() && !reading.builder.obstacle().isEmpty();
    return mayLackEndTags ? QStringLiteral("tags have no end tags") : reading.outcome.error;
}

/// Why \a reading is not that of a feed; empty if it is.
QString obstacleOf(const Reading &reading)
{
    const Element &root = reading.builder.root();
    if (reading.outcome.expandsTooMuch)
        return QStringLiteral("the document is too complex: its entities stand for too much text");
    if (!reading.builder.obstacle().isEmpty())
        return reading.builder.obstacle();
    if (root.name.empty())
        return QStringLiteral("the document is not a feed: it is neither XML nor JSON");
    if (root.name == "encrypteddata")
        return QStringLiteral("the document is encrypted");
    const bool isEmpty = reading.items.isEmpty() && !root.find({Vocabulary::Core, "channel"});
    if (!isRootOfFeed(root.name) || (root.name != "feed" && isEmpty))
        return QStringLiteral("the document is XML but not a feed: its root element is <%1>")
            .arg(QString::fromStdString(root.name).left(maximumShownName));
    return QString();
}

QString formatOf(const Element &root)
{
    if (root.name == "feed")
        return QStringLiteral("atom");
    return root.name == "rdf" ? QStringLiteral("rdf") : QStringLiteral("rss");
}

} // namespace

tl::expected<FeedRecord, FeedRefusal> readXmlFeed(const QByteArray &document, const QSet<QByteArray> &known)
{
    if (isWebPage(view(document)))
        return refusal(QStringLiteral("the document is a web page, not a feed"), true);
    FeedRecord feed;
    std::unique_ptr<Reading> reading;
    if (!isCostlyToParse(view(document)))
        reading = read(view(document), OnXmlError::Stop, known);
    if (!reading || reading->outcome.needsMending() || !reading->builder.obstacle().isEmpty()) {
        const QString error = reading ? errorOf(*reading) : QStringLiteral("it declares too much");
        if (!error.isEmpty())
            feed.notes.append(QStringLiteral("was not well-formed: ") + error);
        reading.reset();
        const std::optional<std::string> mended = XmlMender::mended(view(document));
        if (!mended)
            return refusal(QStringLiteral("the document is too complex: too much of it must be mended"));
        reading = read(*mended, OnXmlError::GoOn, known);
    }
    const QString obstacle = obstacleOf(*reading);
    if (!obstacle.isEmpty())
        return refusal(obstacle);
    if (reading->items.mayHaveTooManyFiles())
        return readXmlFeed(document);
    feed.format = formatOf(reading->builder.root());
    reading->items.moveTo(feed);
    mapChannel(reading->builder.root(), feed);
    return feed;
}

} // namespace Tidel
