// SPDX-License-Identifier: LGPL-2.1-or-later
#include "searchfiller.h"

#include "searchindex_p.h"
#include "searchupdate_p.h"

#include <chrono>
#include <future>
#include <optional>

namespace Tidel {

namespace {

constexpr int manyMessages = 5000;

} // namespace

class SearchFiller::Private
{
public:
    explicit Private(const Store &store) : m_store(store) { }

    void add(int count);
    int finish();

private:
    bool isIdle() const;
    void endGroup();
    void beginGroup();

    const Store m_store;
    std::optional<SearchIndex> m_index; // Belongs to the thread while it runs.
    std::future<bool> m_thread; // Returns true if it has added its group.
    int m_all = 0;
    int m_waiting = 0; // The last ones of all.
    bool m_hasFailed = false;
};

void SearchFiller::Private::add(int count)
{
    m_all += count;
    m_waiting += count;
    if (m_waiting < SearchUpdate::groupSize || m_hasFailed || !isIdle())
        return;
    endGroup();
    if (!m_hasFailed)
        beginGroup();
}

bool SearchFiller::Private::isIdle() const
{
    return !m_thread.valid() || m_thread.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

void SearchFiller::Private::endGroup()
{
    if (m_thread.valid())
        m_hasFailed = !m_thread.get();
}

// The texts are read within the transaction, so that no other process adds the same messages.
void SearchFiller::Private::beginGroup()
{
    if (!m_index)
        m_index.emplace(SearchIndex::file());
    m_hasFailed = !m_index->isKept() || !m_index->begin();
    if (m_hasFailed)
        return;
    const auto group =
        SearchUpdate::readAfter(StorePrivate::of(m_store), m_index->lastId(), SearchUpdate::groupSize);
    if (!group) {
        m_index->end(false);
        m_hasFailed = true;
        return;
    }
    m_waiting -= int(group->size());
    m_thread = std::async(std::launch::async, [index = &*m_index, messages = *group] {
        return index->end(index->put(SearchUpdate::inPlainText(messages)));
    });
}

int SearchFiller::Private::finish()
{
    endGroup();
    const int left = m_hasFailed ? m_all : m_waiting;
    // The next search compares each message that was added since the index was last found to be complete.
    const bool isWorthNoting = m_index && !m_hasFailed && m_all >= manyMessages;
    const bool isNoted = isWorthNoting && SearchUpdate(StorePrivate::of(m_store), *m_index, {}).catchUp();
    m_index.reset();
    return isNoted ? 0 : left;
}

SearchFiller::SearchFiller(const Store &store) : d(std::make_unique<Private>(store)) { }

SearchFiller::~SearchFiller() { d->finish(); }

void SearchFiller::add(int count) { d->add(count); }

int SearchFiller::finish() { return d->finish(); }

} // namespace Tidel
