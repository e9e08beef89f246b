// SPDX-License-Identifier: LGPL-2.1-or-later
#include "itemlist.h"

#include "feedlimits.h"
#include "itemdigest.h"
#include "itemmapping.h"
#include "limitedhtml.h"

#include <algorithm>

namespace Tidel {

namespace {

// An item with more of them is read each time, so that those of recognized items need not be counted.
constexpr int maximumRecognizedFiles = 10;

} // namespace

void ItemList::add(const Element &item)
{
    ItemRecord record;
    const QByteArray digest = itemDigest(item);
    if (m_known.contains(digest)) {
        record.id = identifierOf(item);
        record.isRecognized = true;
        ++m_recognized;
    } else {
        record = mapItem(item);
    }
    record.digest = digest;
    add(std::move(record));
}

void ItemList::add(ItemRecord &&item)
{
    bool hasLongText = false;
    for (QString ItemRecord::*const text : {&ItemRecord::title, &ItemRecord::text, &ItemRecord::summary}) {
        const QString limited = limitedHtml(item.*text, maximumTextSize);
        hasLongText |= limited != item.*text;
        item.*text = limited;
    }
    m_hasLongTexts |= hasLongText;
    if (hasLongText || item.files.size() > maximumRecognizedFiles)
        item.digest.clear();
    const int files = std::min({int(item.files.size()), maximumFiles, maximumFilesOfFeed - m_files});
    m_hasManyFiles |= files < item.files.size();
    item.files.resize(files);
    m_files += files;
    m_items.push_back(std::move(item));
}

bool ItemList::mayHaveTooManyFiles() const
{
    return m_recognized > 0 && m_files + m_recognized * maximumRecognizedFiles > maximumFilesOfFeed;
}

void ItemList::moveTo(FeedRecord &feed)
{
    feed.items = std::move(m_items);
    if (feed.items.empty())
        feed.notes.append(QStringLiteral("has no items"));
    if (m_hasLongTexts)
        feed.notes.append(QStringLiteral("has texts of more than %1 MiB: the rest of them was left out")
                              .arg(maximumTextSize / 1024 / 1024));
    if (m_hasManyFiles)
        feed.notes.append(QStringLiteral("has messages with more than %1 enclosures, or more than %2 in all: "
                                         "the first ones are kept")
                              .arg(maximumFiles)
                              .arg(maximumFilesOfFeed));
}

} // namespace Tidel
