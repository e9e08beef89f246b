// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEARCHUPDATE_P_H
#define TIDEL_SEARCHUPDATE_P_H

#include "search.h"
#include "searchindex_p.h"
#include "store_p.h"

namespace Tidel {

/// A message as the store has it.
struct StoredTexts
{
    SearchableMessage message; ///< Without title and text.
    QString title;
    QString html;
    QString summary; ///< HTML.
};

/// Brings the index up to what the store holds.
class SearchUpdate
{
public:
    /// While a group is read and written, no other process can write to the index.
    static constexpr int groupSize = 500;

    SearchUpdate(StorePrivate &store, SearchIndex &index, const Search::Progress &progress);

    /// Adds at most \a count messages that were stored after the last one of the index. The time that it
    /// takes does not depend on the size of the store.
    Result<void> addNew(int count);
    /// Brings the index up to date with the store. Does nothing if the files of the store have not changed.
    Result<void> catchUp();

    /// The first \a limit messages after the number \a last.
    static Result<QVector<StoredTexts>> readAfter(StorePrivate &store, qlonglong last, int limit);
    /// \a messages for the index. The function is reentrant.
    static QVector<SearchableMessage> inPlainText(const QVector<StoredTexts> &messages);
    /// The messages \a ids.
    static Result<QVector<SearchableMessage>> read(StorePrivate &store, const QVector<qlonglong> &ids);

private:
    using Ids = QVector<qlonglong>;

    Result<int> addGroup(int limit);
    Result<void> addAll();
    Result<void> replaceRenumbered(qint64 since);
    Result<void> replaceDifferent(const QVector<QPair<qlonglong, qlonglong>> &hashes);
    bool hasSameSums() const;
    Result<void> compare();
    Result<void> replace(const Ids &ids);
    Result<void> checked(bool isDone) const;

    StorePrivate &m_store;
    SearchIndex &m_index;
    const Search::Progress m_progress;
};

} // namespace Tidel

#endif
