// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_RDFITEM_H
#define TIDEL_RDFITEM_H

#include "feeditem.h"

#include <QHash>

#include <syndication/rdf/item.h>

namespace Tidel {

/// The item elements of an RDF document by the resource that they are about; none for other documents.
class RdfItemElements
{
public:
    explicit RdfItemElements(const QDomDocument &document);

    QDomElement element(const QString &about) const;

private:
    QHash<QString, QDomElement> m_elements;
};

/// An item of RSS 0.90 or 1.0. Syndication reads it from the RDF model of the document, which has no
/// enclosures and no dates as they were written, so these come from its element.
class RdfItem : public FeedItem
{
public:
    RdfItem(const Syndication::ItemPtr &item, const Syndication::RDF::Item &rdf,
            const RdfItemElements &elements);

    Reference link() const override;
    QString permalink() const override;
    QString date() const override;
    QList<FileReference> files() const override;

protected:
    QString ownId() const override;
    QString wording() const override;

private:
    Syndication::RDF::Item m_rdf;
    Syndication::ElementWrapper m_element;
};

} // namespace Tidel

#endif
