// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RDFITEM_H
#define TIDEL_RDFITEM_H

#include "feeditem.h"

#include <QHash>

#include <syndication/rdf/item.h>

namespace Tidel {

/// Finds the item elements of an RDF document by the resource that they describe. Other documents have none.
class RdfItemElements
{
public:
    /// Collects the item elements of \a document.
    explicit RdfItemElements(const QDomDocument &document);

    /// The element that describes the resource \a about; null if there is none.
    QDomElement element(const QString &about) const;

private:
    QHash<QString, QDomElement> m_elements;
};

/// An item of RSS 0.90 or 1.0. Syndication reads it from an RDF model, which has neither enclosures nor the
/// original text of dates. This class reads them from the element of the item.
class RdfItem : public FeedItem
{
public:
    /// Creates the item of \a rdf, which \a item wraps. \a elements has the elements of its document.
    RdfItem(const Syndication::ItemPtr &item, const Syndication::RDF::Item &rdf,
            const RdfItemElements &elements);

    Reference link() const override;
    QString permalink() const override;
    QString date() const override;
    QList<FileReference> files() const override;

protected:
    QString ownId() const override;
    QString completeText() const override;

private:
    Syndication::RDF::Item m_rdf;
    Syndication::ElementWrapper m_element;
};

} // namespace Tidel

#endif
