// SPDX-License-Identifier: LGPL-2.1-or-later
#include "parsing.h"

#include <QRunnable>
#include <QThreadPool>

#include <mutex>

namespace Tidel {

/// What both threads use. The document belongs to the thread of the pool, the rest to who holds the mutex.
struct Parsing::Job
{
    void run();
    bool isWanted()
    {
        const std::lock_guard lock(mutex);
        return receiver != nullptr;
    }

    const FeedDocument document;
    const QUrl link;
    const QSet<QByteArray> known;
    std::mutex mutex;
    Parsing *receiver; // Null after its end.
    std::optional<tl::expected<ParsedFeed, FeedRefusal>> result;
};

void Parsing::Job::run()
{
    if (!isWanted())
        return;
    auto parsed = ParsedFeed::parse(document, link, known);
    const std::lock_guard lock(mutex);
    if (!receiver)
        return;
    result.emplace(std::move(parsed));
    QMetaObject::invokeMethod(receiver, &Parsing::finished, Qt::QueuedConnection);
}

Parsing::Parsing(QThreadPool &pool, const FeedDocument &document, const QUrl &link,
                 const QSet<QByteArray> &known)
    : m_job(new Job{document, link, known, {}, this, {}})
{
    pool.start(QRunnable::create([job = m_job] { job->run(); }));
}

Parsing::~Parsing()
{
    const std::lock_guard lock(m_job->mutex);
    m_job->receiver = nullptr;
}

tl::expected<ParsedFeed, FeedRefusal> Parsing::takeResult()
{
    const std::lock_guard lock(m_job->mutex);
    return std::move(*m_job->result);
}

} // namespace Tidel
