// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rdfitem.h"

#include <QStringList>

#include <syndication/rdf/resource.h>

namespace Tidel {

namespace {

const QString rdfNamespace = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
const QString enclosureNamespace = QStringLiteral("http://purl.oclc.org/net/rss_2.0/enc#");

/// The attribute \a name in the namespace \a ns. Many feeds write it without a namespace.
QString attribute(const QDomElement &element, const QString &ns, const QString &name)
{
    return element.attributeNS(ns, name, element.attribute(name));
}

/// The resource that \a rdf describes; empty if it has no name.
QString aboutOf(const Syndication::RDF::Item &rdf)
{
    const Syndication::RDF::ResourcePtr resource = rdf.resource();
    return resource && !resource->isAnon() ? resource->uri() : QString();
}

} // namespace

RdfItemElements::RdfItemElements(const QDomDocument &document)
{
    const QDomElement root = document.documentElement();
    if (root.namespaceURI() != rdfNamespace)
        return;
    for (QDomElement child = root.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        const QString about = child.attributeNS(rdfNamespace, QStringLiteral("about"));
        if (child.localName() == QLatin1String("item") && !about.isEmpty() && !m_elements.contains(about))
            m_elements.insert(about, child);
    }
}

QDomElement RdfItemElements::element(const QString &about) const { return m_elements.value(about); }

RdfItem::RdfItem(const Syndication::ItemPtr &item, const Syndication::RDF::Item &rdf,
                 const RdfItemElements &elements)
    : FeedItem(item), m_rdf(rdf), m_element(elements.element(aboutOf(rdf)))
{
}

Reference RdfItem::link() const { return {m_rdf.link(), m_element}; }

QString RdfItem::permalink() const { return ownId(); }

QString RdfItem::date() const
{
    return m_element.extractElementTextNS(QStringLiteral("http://purl.org/dc/elements/1.1/"),
                                          QStringLiteral("date"));
}

QList<FileReference> RdfItem::files() const
{
    QList<FileReference> files;
    const auto enclosures = m_element.elementsByTagNameNS(enclosureNamespace, QStringLiteral("enclosure"));
    for (const QDomElement &enclosure : enclosures) {
        files.append({{attribute(enclosure, rdfNamespace, QStringLiteral("resource")), enclosure},
                      attribute(enclosure, enclosureNamespace, QStringLiteral("type")),
                      attribute(enclosure, enclosureNamespace, QStringLiteral("length"))});
    }
    return files;
}

QString RdfItem::ownId() const { return aboutOf(m_rdf); }

QString RdfItem::completeText() const
{
    return QStringList{m_rdf.originalTitle(), m_rdf.link(), m_rdf.originalDescription(), date()}.join(
        QLatin1Char('\n'));
}

} // namespace Tidel
