// SPDX-License-Identifier: LGPL-2.1-or-later
#include "feedtree.h"

#include "xmlguard.h"
#include "xmltext.h"

#include <Syndication/DocumentSource>
#include <Syndication/Global>
#include <Syndication/ParserCollection>

namespace Tidel {

namespace {

// The time to parse RDF grows with the square of the number of elements.
constexpr qint64 maximumRdfNodes = 150000;

bool isRdf(const QDomDocument &elements)
{
    return elements.documentElement().namespaceURI()
        == QLatin1String("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
}

QString parseError(const QByteArray &document)
{
    const QString error = xmlError(document);
    return error.isEmpty() ? QStringLiteral("the document is not well-formed XML") : error;
}

const QString webPage =
    QStringLiteral("the document is a web page, not a feed; look for the address of the feed on the page");

/// Returns true if \a document is HTML, which is rarely well-formed XML; otherwise returns false.
bool isWebPage(const QByteArray &document)
{
    const QByteArray start = document.left(1024).trimmed().toLower();
    return start.startsWith("<!doctype html") || start.startsWith("<html");
}

QString notAFeed(const QDomDocument &elements)
{
    const QString root = elements.documentElement().tagName();
    return root == QLatin1String("html")
        ? webPage
        : QStringLiteral("the document is XML but not a feed: its root element is <%1>").arg(root);
}

} // namespace

std::optional<FeedTree> parseFeedTree(const QByteArray &document, QString *error)
{
    const std::optional<QByteArray> xml = readableXml(document, error);
    if (!xml)
        return std::nullopt;
    if (isWebPage(*xml)) {
        *error = webPage;
        return std::nullopt;
    }
    XmlExtent extent;
    *error = xmlObstacle(*xml, &extent);
    if (!error->isEmpty())
        return std::nullopt;

    const Syndication::DocumentSource source(*xml, QString());
    FeedTree tree;
    tree.elements = source.asDomDocument();
    if (tree.elements.documentElement().isNull()) {
        *error = parseError(*xml);
        return std::nullopt;
    }
    if (isRdf(tree.elements) && extent.nodes > maximumRdfNodes) {
        *error =
            QStringLiteral(
                "the document is too complex: it is RDF with more than %1 elements, attributes and texts")
                .arg(maximumRdfNodes);
        return std::nullopt;
    }
    tree.feed = Syndication::parserCollection()->parse(source);
    if (!tree.feed) {
        *error = notAFeed(tree.elements);
        return std::nullopt;
    }
    return tree;
}

} // namespace Tidel
