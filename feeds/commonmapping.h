// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_COMMONMAPPING_H
#define TIDEL_COMMONMAPPING_H

#include "element.h"

#include <algorithm>
#include <iterator>

namespace Tidel {

/// Returns true if \a element is one of \a names; otherwise returns false.
template <size_t Size> bool isOneOf(const Element &element, const ElementName (&names)[Size])
{
    return std::any_of(std::begin(names), std::end(names),
                       [&](const ElementName &name) { return element.is(name); });
}

/// The first of \a names that is in \a parent and has a text; null if there is none.
template <size_t Size> const Element *firstOf(const Element &parent, const ElementName (&names)[Size])
{
    for (const ElementName &name : names) {
        const Element *found = parent.find(name);
        if (found && !found->text.empty())
            return found;
    }
    return nullptr;
}

/// The time in \a element, in UTC; invalid if there is none or if \a element is null.
QDateTime dateIn(const Element *element);

/// The first valid time in the elements \a names of \a parent.
template <size_t Size> QDateTime firstDateOf(const Element &parent, const ElementName (&names)[Size])
{
    for (const ElementName &name : names) {
        const QDateTime date = dateIn(parent.find(name));
        if (date.isValid())
            return date;
    }
    return QDateTime();
}

/// The link of \a parent with the relation \a relation, to a page if there is one; null if there is none.
const Element *linkOf(const Element &parent, std::string_view relation);

/// The address of the page that \a parent, a feed or item, is about.
Address websiteOf(const Element &parent);

/// Appends \a name to \a names if it is a new one and there are not too many.
void addName(QStringList &names, const QString &name);

/// The names of the authors of \a parent, a feed or item; mail addresses where there is no name.
QStringList authorsOf(const Element &parent);

} // namespace Tidel

#endif
