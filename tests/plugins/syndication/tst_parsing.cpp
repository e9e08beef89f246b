// SPDX-License-Identifier: LGPL-2.1-or-later
#include "parserthread.h"
#include "parsing.h"

#include <soon.h>

#include <QSignalSpy>
#include <QtTest>

using namespace Tidel;

namespace {

FeedDocument document(int items)
{
    QByteArray text = "<rss version='2.0'><channel><title>Feed</title>";
    for (int i = 0; i < items; ++i)
        text += "<item><guid>" + QByteArray::number(i) + "</guid><title>&lt;b&gt;Title</title></item>";
    return {text + "</channel></rss>", QUrl("https://example.org/feed"), {}, {}, {}};
}

} // namespace

class TestParsing : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_parser = std::make_unique<ParserThread>(); }

    void feed();
    void noFeed();
    void severalAtOnce();
    void oneFeedAhead();
    void endsBeforeTheResult();

private:
    std::unique_ptr<Parsing> parsing(const FeedDocument &of)
    {
        return std::make_unique<Parsing>(*m_parser, of, of.address, QSet<QByteArray>());
    }

    std::unique_ptr<ParserThread> m_parser;
};

void TestParsing::feed()
{
    const auto job = parsing(document(3));
    QSignalSpy ends(job.get(), &Parsing::finished);
    // The result waits for the event loop.
    QVERIFY(m_parser->waitForDone());
    QCOMPARE(int(ends.size()), 0);
    COMPARE_SOON(int(ends.size()), 1);
    QCOMPARE(int(job->takeResult()->items().size()), 3);
}

void TestParsing::noFeed()
{
    const auto job = parsing({"Nothing", QUrl("https://example.org/feed"), {}, {}, {}});
    QSignalSpy ends(job.get(), &Parsing::finished);
    COMPARE_SOON(int(ends.size()), 1);
    QCOMPARE(job->takeResult().error().reason,
             QString("the document is not a feed: it is neither XML nor JSON"));
}

void TestParsing::severalAtOnce()
{
    std::vector<std::unique_ptr<Parsing>> jobs(20);
    QVector<int> sizes;
    for (size_t i = 0; i < jobs.size(); ++i) {
        jobs[i] = parsing(document(20 - int(i)));
        connect(jobs[i].get(), &Parsing::finished, this, [&sizes, &job = jobs[i]] {
            sizes.append(int(job->takeResult()->items().size()));
            job.release()->deleteLater();
        });
    }
    COMPARE_SOON(int(sizes.size()), 20);
    QVERIFY(std::is_sorted(sizes.rbegin(), sizes.rend()));
}

void TestParsing::oneFeedAhead()
{
    std::vector<std::unique_ptr<Parsing>> jobs;
    QVector<int> ends;
    for (int i = 0; i < 5; ++i) {
        jobs.push_back(parsing(document(1)));
        connect(jobs.back().get(), &Parsing::finished, this, [&ends, i] { ends.append(i); });
    }
    const auto endsNow = [&] {
        m_parser->waitForDone();
        QCoreApplication::processEvents();
        return ends;
    };
    QCOMPARE(endsNow(), QVector<int>({0, 1}));
    // One that has not begun leaves no gap.
    jobs[2].reset();
    QCOMPARE(endsNow(), QVector<int>({0, 1}));
    jobs[1].reset();
    QCOMPARE(endsNow(), QVector<int>({0, 1, 3}));
    jobs[0].reset();
    QCOMPARE(endsNow(), QVector<int>({0, 1, 3, 4}));
}

void TestParsing::endsBeforeTheResult()
{
    for (const int items : {0, 10, 1000}) {
        std::vector<std::unique_ptr<Parsing>> jobs;
        int ends = 0;
        for (int i = 0; i < 10; ++i) {
            jobs.push_back(parsing(document(items)));
            connect(jobs.back().get(), &Parsing::finished, this, [&ends] { ++ends; });
        }
        jobs.clear();
        QVERIFY(m_parser->waitForDone());
        QCoreApplication::processEvents();
        QCOMPARE(ends, 0);
    }
}

QTEST_GUILESS_MAIN(TestParsing)
#include "tst_parsing.moc"
