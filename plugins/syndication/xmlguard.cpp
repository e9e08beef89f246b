// SPDX-License-Identifier: LGPL-2.1-or-later
#include "xmlguard.h"

#include "tagscanner.h"
#include "xmltext.h"

#include <QXmlStreamReader>

#include <vector>

namespace Tidel {

namespace {

// A reference of a few bytes can stand for an entity of some thousand characters.
constexpr int maximumSizeWithEntities = 256 * 1024;
constexpr int maximumEntityReferences = 16 * 1024;

bool hasTooManyAttributes(const XmlExtent &extent)
{
    return extent.attributes > maximumXmlExtent.attributes
        || extent.attributeSteps > maximumXmlExtent.attributeSteps;
}

bool isTooLarge(const XmlExtent &extent)
{
    return extent.depth > maximumXmlExtent.depth || extent.nodes > maximumXmlExtent.nodes
        || hasTooManyAttributes(extent);
}

QString sizeObstacle(const XmlExtent &extent)
{
    if (extent.depth > maximumXmlExtent.depth)
        return QStringLiteral("the document is too complex: its elements are nested more than %1 deep")
            .arg(maximumXmlExtent.depth);
    if (hasTooManyAttributes(extent))
        return QStringLiteral("the document is too complex: it has too many attributes");
    return QStringLiteral("the document is too complex: it has more than %1 elements, attributes and texts")
        .arg(maximumXmlExtent.nodes);
}

QString errorText(const QXmlStreamReader &reader)
{
    return notWellFormed(reader.lineNumber(), reader.columnNumber(), reader.errorString());
}

/// Counts the tokens of a reader.
class ExtentCounter
{
public:
    void count(const QXmlStreamReader &reader);
    XmlExtent extent() const { return m_extent; }

private:
    std::vector<int> m_openElements;
    int m_openAttributes = 0;
    XmlExtent m_extent;
};

void ExtentCounter::count(const QXmlStreamReader &reader)
{
    ++m_extent.nodes;
    if (reader.isStartElement()) {
        const int attributes = int(reader.attributes().size() + reader.namespaceDeclarations().size());
        m_openElements.push_back(attributes);
        m_openAttributes += attributes;
        m_extent.nodes += 2 * qint64(attributes);
        m_extent.attributes = qMax(m_extent.attributes, m_openAttributes);
        m_extent.attributeSteps += attributes > 0 ? m_openAttributes : 0;
        m_extent.depth = qMax(m_extent.depth, int(m_openElements.size()));
    } else if (reader.isEndElement()) {
        m_openAttributes -= m_openElements.back();
        m_openElements.pop_back();
    }
}

bool declaresTooMuch(const QXmlStreamReader &reader, const QByteArray &document)
{
    return reader.isDTD() && reader.text().contains(QLatin1Char('['))
        && (document.size() > maximumSizeWithEntities || document.count('&') > maximumEntityReferences);
}

/// Does the same as xmlObstacle(), but reads the complete document.
QString exactObstacle(const QByteArray &document, XmlExtent *extent)
{
    ExtentCounter counter;
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        reader.readNext();
        counter.count(reader);
        if (declaresTooMuch(reader, document))
            return QStringLiteral("the document is too complex: it is large and declares entities");
        if (isTooLarge(counter.extent()))
            return sizeObstacle(counter.extent());
    }
    *extent = counter.extent();
    return reader.hasError() ? errorText(reader) : QString();
}

} // namespace

QString xmlObstacle(const QByteArray &document, XmlExtent *extent)
{
    TagScanner scanner(document);
    const bool isCertain = scanner.scan();
    *extent = scanner.extent();
    // Many attributes take QXmlStreamReader as long as the parser.
    if (hasTooManyAttributes(*extent))
        return sizeObstacle(*extent);
    return isCertain && !isTooLarge(*extent) ? QString() : exactObstacle(document, extent);
}

QString xmlError(const QByteArray &document)
{
    QXmlStreamReader reader(document);
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? errorText(reader) : QString();
}

} // namespace Tidel
