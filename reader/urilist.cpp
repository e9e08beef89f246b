// SPDX-License-Identifier: LGPL-2.1-or-later
#include "urilist.h"

#include <algorithm>

namespace Tidel {

QString UriList::at(int row) const { return QString::fromUtf8(m_text.constData() + m_starts.at(row)); }

int UriList::indexOf(const QString &uri) const
{
    const QByteArray text = uri.toUtf8();
    const std::string_view wanted(text.constData(), size_t(text.size()));
    for (int row = 0; row < size(); ++row) {
        if (viewAt(row) == wanted)
            return row;
    }
    return -1;
}

void UriList::append(const QString &uri)
{
    m_starts.append(int(m_text.size()));
    m_text.append(uri.toUtf8());
    m_text.append('\0');
}

void UriList::remove(int first, int count) { m_starts.remove(first, count); }

void UriList::restore(int first, int count, const UriList &list)
{
    Q_ASSERT(m_text.constData() == list.m_text.constData());
    m_starts.insert(first, count, 0);
    std::copy_n(list.m_starts.cbegin() + first, count, m_starts.begin() + first);
}

} // namespace Tidel
