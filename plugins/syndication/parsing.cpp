// SPDX-License-Identifier: LGPL-2.1-or-later
#include "parsing.h"

#include "parserthread.h"

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

    FeedDocument document;
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
    document = {};
    const std::lock_guard lock(mutex);
    if (!receiver)
        return;
    result.emplace(std::move(parsed));
    QMetaObject::invokeMethod(receiver, &Parsing::finished, Qt::QueuedConnection);
}

Parsing::Parsing(ParserThread &parser, const FeedDocument &document, const QUrl &link,
                 const QSet<QByteArray> &known)
    : m_parser(parser), m_job(new Job{document, link, known, {}, this, {}})
{
    m_parser.enter(this, [job = m_job] { job->run(); });
}

Parsing::~Parsing()
{
    m_parser.leave(this);
    const std::lock_guard lock(m_job->mutex);
    m_job->receiver = nullptr;
}

tl::expected<ParsedFeed, FeedRefusal> Parsing::takeResult()
{
    const std::lock_guard lock(m_job->mutex);
    return std::move(*m_job->result);
}

} // namespace Tidel
