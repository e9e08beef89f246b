// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SEARCH_H
#define TIDEL_SEARCH_H

#include "error.h"
#include "messagefilter.h"
#include "store.h"

#include <QDateTime>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <feedmessage.h>

#include <functional>
#include <memory>

namespace Tidel {

/// What to look for.
struct SearchQuery : MessageFilter
{
    /// Words that must all be in a message, in any case and with or without accents: `garden`, `"two beans"`
    /// for words that follow each other, `gard*` for the beginning of a word. Nothing else has a meaning.
    QString words;
    int limit = 20; ///< The number of hits.
};

/// A plain text in which the words that were found are marked.
struct MarkedText
{
    QString text;
    QVector<QPair<int, int>> marks; ///< Position and length of each, in the order of the text.
};

/// A message that a search has found.
struct SearchHit
{
    QString uri;
    FeedMessage message; ///< With title, link and date.
    QStringList channels; ///< The titles of its channels.
    MarkedText title;
    MarkedText excerpt; ///< What surrounds the words in the text, or the beginning of the text.
};

/**
 * Finds messages by the words of their titles, summaries and texts.
 *
 * \code
 * SearchQuery query;
 * query.words = "runner beans";
 * const Result<QList<SearchHit>> hits = Search(store).find(query);
 * \endcode
 *
 * The words of all messages are in an index beside the store. It is only a cache: who deletes it loses
 * nothing. Keep an object of this class to search again and again, for example while the user types.
 */
class TIDELREADER_EXPORT Search
{
public:
    /// Hears how many of all messages are in the index. Heard only if there are many to add.
    using Progress = std::function<void(int done, int all)>;

    /// Works on \a store.
    explicit Search(const Store &store);
    /// Closes the index.
    ~Search();

    /// The messages that have all words of \a query, the best first: a word in the title counts more than one
    /// in the text, and a rare one more than a frequent one. If thousands match, only those that were stored
    /// last are compared. What was stored before is found, whichever program has stored it. The first search
    /// after a change compares the index with the store, and the first of all makes the index, which takes
    /// ten seconds or so for 100,000 messages. Fails with Error::StoreRefused if there are no words, and with
    /// Error::StoreFailed.
    Result<QList<SearchHit>> find(const SearchQuery &query, const Progress &progress = {});

    /// The URIs of all messages that find() would compare, in any order and whether they are read or not.
    Result<QStringList> uris(const SearchQuery &query, const Progress &progress = {});

    /// Adds at most \a count messages that were stored since, so that the next search need not do so. The
    /// time that this takes does not depend on the size of the store. Fails with Error::StoreFailed.
    Result<void> addNewMessages(int count);

    /// Returns true if the index is sound or missing; otherwise empties it and returns false. The next search
    /// makes it again. Reads all of it.
    bool check();

private:
    Q_DISABLE_COPY(Search)

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace Tidel

#endif
