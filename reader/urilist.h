// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_URILIST_H
#define TIDEL_URILIST_H

#include "tidelreaderglobal.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <string_view>

namespace Tidel {

/// The URIs of a long list in its order. A list of 100,000 takes about 5 MB. Copies share their contents.
class TIDELREADER_EXPORT UriList
{
public:
    /// The number of URIs.
    int size() const { return int(m_starts.size()); }
    /// Returns true if there are none; otherwise returns false.
    bool isEmpty() const { return m_starts.isEmpty(); }
    /// The URI in \a row.
    QString at(int row) const;
    /// The URI in \a row as UTF-8, which is valid until the list is changed or goes.
    std::string_view viewAt(int row) const { return m_text.constData() + m_starts.at(row); }
    /// The first row with \a uri; -1 if there is none. Compares all.
    int indexOf(const QString &uri) const;

    /// Appends \a uri.
    void append(const QString &uri);
    /// Removes \a count URIs from the row \a first on. Their memory is in use until the list goes.
    void remove(int first, int count);
    /// Puts \a count URIs back that were removed from this copy of \a list: those from its row \a first on,
    /// to the same row.
    void restore(int first, int count, const UriList &list);

private:
    QByteArray m_text; // Each URI ends with a null byte.
    QVector<int> m_starts;
};

} // namespace Tidel

#endif
