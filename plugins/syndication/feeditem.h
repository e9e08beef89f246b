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

/// An address as a document writes it, and the element whose base it is relative to.
struct Reference
{
    QString address;
    Syndication::ElementWrapper where;
};

/// A file that an item names, as its document writes it.
struct FileReference
{
    Reference url;
    QString mimeType;
    QString length;
};

/// One item of a feed as its document writes it: what Syndication reads alike in all formats, and what each
/// format has of its own. Nothing is read before it is asked for.
class FeedItem
{
public:
    explicit FeedItem(const Syndication::ItemPtr &item);
    virtual ~FeedItem();

    /// HTML.
    QString title() const;
    /// HTML: the whole text, or what there is of it.
    QString text() const;
    /// HTML: the short text beside a whole one, else empty.
    QString summary() const;
    /// What tells the item from the others of its feed: its identifier, else a hash of what it says.
    QString id() const;
    /// What items that were given one identifier by mistake differ in.
    QString variant() const;

    virtual Reference link() const = 0;
    /// The identifier where it is meant to be an address, else empty.
    virtual QString permalink() const = 0;
    /// When it was published, else when it was updated; empty when it does not say.
    virtual QString date() const = 0;
    virtual QList<FileReference> files() const = 0;

protected:
    virtual QString ownId() const = 0;
    /// Everything that the item says about itself.
    virtual QString wording() const = 0;

private:
    Syndication::ItemPtr m_item;
};

/// The items of \a tree in the order of the document.
std::vector<std::unique_ptr<FeedItem>> feedItems(const FeedTree &tree);

} // namespace Tidel

#endif
