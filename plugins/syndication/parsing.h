// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_PARSING_H
#define TIDEL_PARSING_H

#include "feeddocument.h"
#include "feedparser.h"

#include <QObject>

#include <memory>
#include <optional>

namespace Tidel {

class ParserThread;

/// Parses a document on another thread, while the thread of this object stores other feeds.
class Parsing : public QObject
{
    Q_OBJECT

public:
    /// Lets \a parser parse \a document. See ParsedFeed::parse().
    Parsing(ParserThread &parser, const FeedDocument &document, const QUrl &link,
            const QSet<QByteArray> &known);
    /// Does not wait: finished() is not emitted any more. Lets the parser go on. Destroy it when the feed is
    /// stored.
    ~Parsing() override;

    /// The feed, or why the document is none. Call it once, after finished().
    tl::expected<ParsedFeed, FeedRefusal> takeResult();

Q_SIGNALS:
    /// Emitted once.
    void finished();

private:
    struct Job;

    ParserThread &m_parser;
    const std::shared_ptr<Job> m_job;
};

} // namespace Tidel

#endif
