// SPDX-License-Identifier: LGPL-2.1-or-later
#include "itemlist.h"

#include "feedlimits.h"
#include "limitedhtml.h"

#include <algorithm>

namespace Tidel {

void ItemList::add(ItemRecord &&item)
{
    for (QString ItemRecord::*const text : {&ItemRecord::title, &ItemRecord::text, &ItemRecord::summary}) {
        const QString limited = limitedHtml(item.*text, maximumTextSize);
        m_hasLongTexts |= limited != item.*text;
        item.*text = limited;
    }
    const int files = std::min({int(item.files.size()), maximumFiles, maximumFilesOfFeed - m_files});
    m_hasManyFiles |= files < item.files.size();
    item.files.resize(files);
    m_files += files;
    m_items.push_back(std::move(item));
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
