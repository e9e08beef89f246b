// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_FEEDITEM_H
#define TIDEL_FEEDITEM_H

#include "feedtree.h"

#include <QList>
#include <QString>

#include <Syndication/ElementWrapper>
#include <Syndication/Item>

#include <memory>
#include <vector>

namespace Tidel {

/// An address as a document writes it.
struct Reference
{
    QString address; ///< May be relative.
    Syndication::ElementWrapper where; ///< The element whose base address it is relative to.
};

/// A file of an item, as the document writes it.
struct FileReference
{
    Reference url; ///< The address of the file.
    QString mimeType; ///< The media type; may be empty or invalid.
    QString length; ///< The size in bytes; may be empty or invalid.
};

/// One item of a feed as its document writes it. Subclasses read what differs between the formats. Each
/// function reads the document when it is called.
class FeedItem
{
public:
    /// Creates an item from \a item.
    explicit FeedItem(const Syndication::ItemPtr &item);
    virtual ~FeedItem();

    /// The title, as HTML.
    QString title() const;
    /// The longest text of the item, as HTML.
    QString text() const;
    /// The summary, as HTML; empty if text() is the only text.
    QString summary() const;
    /// Identifies the item in its feed: the identifier in the document, or a hash of the item without one.
    QString id() const;
    /// Distinguishes different items that have the same identifier by mistake.
    QString variant() const;

    /// The link of the item.
    virtual Reference link() const = 0;
    /// The identifier if it may be an address; otherwise empty.
    virtual QString permalink() const = 0;
    /// The date of publication, or of the last update if there is none; may be empty.
    virtual QString date() const = 0;
    /// The files of the item.
    virtual QList<FileReference> files() const = 0;

protected:
    /// The identifier in the document; empty if there is none.
    virtual QString ownId() const = 0;
    /// The complete text of the item, from which id() makes a hash.
    virtual QString completeText() const = 0;

private:
    Syndication::ItemPtr m_item;
};

/// Returns the items of \a tree in the order of the document.
std::vector<std::unique_ptr<FeedItem>> feedItems(const FeedTree &tree);

} // namespace Tidel

#endif
