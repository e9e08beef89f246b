// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channels.h>
#include <TidelReader/feeds.h>
#include <TidelReader/schedule.h>

#include <feedplugininterface.h>

using namespace Tidel;

namespace {

constexpr int minute = 60;
constexpr int hour = 60 * minute;
constexpr int day = 24 * hour;

// A Sunday.
const QDateTime now(QDate(2026, 11, 22), QTime(12, 30), Qt::UTC);

FeedAnswer answer(qint64 wait = 0)
{
    FeedAnswer value;
    value.wait = wait;
    value.host = "example.org";
    return value;
}

FeedAnswer failure(int error, qint64 wait = 0)
{
    FeedAnswer value = answer(wait);
    value.error = error;
    value.reason = "reason";
    return value;
}

} // namespace

class TestSchedule : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void withoutWishes();
    void wishes_data();
    void wishes();
    void ownInterval();
    void failures_data();
    void failures();
    void successEndsFailures();
    void refusal();
    void refusalOfHost();
    void gone();
    void skippedTimes_data();
    void skippedTimes();
    void files();
    void linkThatIsNoPlace();
    void move();
    void moveBack();
    void moveToOtherChannel();
    void editForgets();
    void costs();
    void deletedChannel();

private:
    Feeds feeds() const { return Feeds(reader()); }
    FeedChannel channel(const QString &name) const
    {
        return *Channels::find(*Channels(reader()).all(), channelUri(name));
    }
    Schedule scheduleAt(const QDateTime &time) const { return *Schedule::read(reader(), time); }
    /// The seconds from now until the channel is due; -1 if it is never.
    qint64 wait(const QString &name) const
    {
        const QDateTime due = scheduleAt(now).due(channel(name));
        return due.isValid() ? now.secsTo(due) : -1;
    }
    void note(const FeedAnswer &value, const QString &name = "news") const
    {
        VERIFY_OK(feeds().noteAnswer(channelUri(name), value, now));
    }
    void describe(const ChannelDetails &details) const
    {
        VERIFY_OK(feeds().noteReading(channelUri("news"), {{}, {}, details, {}, {}}));
    }
};

void TestSchedule::init()
{
    ReaderTestCase::init();
    addChannel("news");
    addChannel("radio");
}

void TestSchedule::withoutWishes()
{
    note(answer());
    const Schedule schedule = scheduleAt(now);
    QVERIFY(schedule.isDue(channel("news")) && schedule.isDue(channel("radio")));
    QVERIFY(!schedule.isRefused(channel("news")));
}

void TestSchedule::wishes_data()
{
    QTest::addColumn<int>("wait");
    QTest::addColumn<int>("minutesToLive");
    QTest::addColumn<QString>("period");
    QTest::addColumn<int>("frequency");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("server") << 600 << 0 << "" << 0 << Q_INT64_C(600);
    QTest::newRow("minutes to live") << 0 << 90 << "" << 0 << qint64(90 * minute);
    QTest::newRow("period") << 0 << 0 << "daily" << 0 << qint64(day);
    QTest::newRow("frequency") << 0 << 0 << "daily" << 4 << qint64(6 * hour);
    QTest::newRow("largest") << 2 * hour << 90 << "hourly" << 1 << qint64(2 * hour);
    QTest::newRow("at most a week") << 0 << 0 << "yearly" << 1 << qint64(7 * day);
    QTest::newRow("ten years") << 3650 * day << 0 << "" << 0 << qint64(7 * day);
    QTest::newRow("largest number") << 0 << std::numeric_limits<int>::max() << "" << 0 << qint64(7 * day);
    QTest::newRow("negative numbers") << 0 << -5 << "hourly" << -1 << qint64(hour);
}

void TestSchedule::wishes()
{
    QFETCH(int, wait);
    QFETCH(int, minutesToLive);
    QFETCH(QString, period);
    QFETCH(int, frequency);
    QFETCH(qint64, expected);
    ChannelDetails details;
    details.minutesToLive = minutesToLive;
    details.updatePeriod = period;
    details.updateFrequency = frequency;
    describe(details);
    note(answer(wait));
    QCOMPARE(this->wait("news"), expected);
    QCOMPARE(this->wait("radio"), Q_INT64_C(0));
    const QDateTime due = now.addSecs(expected);
    QVERIFY(!scheduleAt(due.addSecs(-1)).isDue(channel("news")));
    QVERIFY(scheduleAt(due).isDue(channel("news")));
    // A user who names the channel may ask for it.
    QVERIFY(!scheduleAt(now).isRefused(channel("news")));
}

void TestSchedule::ownInterval()
{
    Channels channels(reader());
    note(answer(hour));
    VERIFY_OK(channels.setInterval(channelUri("news"), 2 * hour));
    QCOMPARE(wait("news"), Q_INT64_C(0));
    note(answer(hour));
    QCOMPARE(wait("news"), qint64(2 * hour));
    VERIFY_OK(channels.setInterval(channelUri("news"), 30 * day));
    note(answer(hour));
    QCOMPARE(wait("news"), qint64(30 * day));
    VERIFY_OK(channels.setInterval(channelUri("news"), 0));
    note(answer(hour));
    QCOMPARE(wait("news"), qint64(hour));
}

void TestSchedule::failures_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("count");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("first") << 404 << 1 << Q_INT64_C(0);
    QTest::newRow("second") << 404 << 2 << qint64(15 * minute);
    QTest::newRow("fifth") << 404 << 5 << qint64(2 * hour);
    QTest::newRow("many") << 404 << 40 << qint64(day);
    QTest::newRow("no feed") << int(FeedDownloadNotAFeed) << 40 << qint64(day);
    QTest::newRow("no network") << int(FeedDownloadNotFound) << 40 << qint64(30 * minute);
    QTest::newRow("no connection") << int(FeedDownloadConnectionFailed) << 40 << qint64(30 * minute);
    QTest::newRow("no answer") << int(FeedDownloadTimedOut) << 40 << qint64(30 * minute);
}

void TestSchedule::failures()
{
    QFETCH(int, error);
    QFETCH(int, count);
    QFETCH(qint64, expected);
    for (int i = 0; i < count; ++i)
        note(failure(error));
    QCOMPARE(wait("news"), expected);
    QVERIFY(!scheduleAt(now).isRefused(channel("news")));
    QCOMPARE(scheduleAt(now).notes(channelUri("news")).error, QString("reason"));
    QCOMPARE(feeds().state(channelUri("news"))->lastError(), QString("reason"));
}

void TestSchedule::successEndsFailures()
{
    for (int i = 0; i < 5; ++i)
        note(failure(500));
    note(answer());
    QCOMPARE(wait("news"), Q_INT64_C(0));
    QCOMPARE(scheduleAt(now).notes(channelUri("news")).error, QString());
    note(failure(500));
    QCOMPARE(wait("news"), Q_INT64_C(0));
    const auto plan = feeds().plan(channelUri("news"));
    VERIFY_OK(plan);
    VERIFY_OK(feeds().noteReading(channelUri("news"), {{}, {}, {}, {}, {}, answer(), *plan}));
    QCOMPARE(feeds().state(channelUri("news"))->lastError(), QString());
}

void TestSchedule::refusal()
{
    note(failure(503, 600));
    QCOMPARE(wait("news"), Q_INT64_C(600));
    QCOMPARE(wait("radio"), Q_INT64_C(0));
    QVERIFY(scheduleAt(now).isRefused(channel("news")));
    QCOMPARE(scheduleAt(now).refusedUntil(channel("news")), now.addSecs(600));
    QVERIFY(!scheduleAt(now.addSecs(600)).isRefused(channel("news")));
    note(failure(503, 3650 * qint64(day)));
    QCOMPARE(wait("news"), qint64(7 * day));
}

// All of the test's channels are on one host.
void TestSchedule::refusalOfHost()
{
    note(failure(429, 600));
    QCOMPARE(wait("news"), Q_INT64_C(600));
    QCOMPARE(wait("radio"), Q_INT64_C(600));
    QVERIFY(scheduleAt(now).isRefused(channel("radio")));
    QCOMPARE(scheduleAt(now.addSecs(600)).due(channel("radio")), now.addSecs(600));
    // Another host, to which a redirect has led, speaks for itself.
    FeedAnswer elsewhere = failure(429, 900);
    elsewhere.host = "example.com";
    note(elsewhere);
    QCOMPARE(wait("news"), Q_INT64_C(900));
    QCOMPARE(wait("radio"), Q_INT64_C(0));
}

void TestSchedule::gone()
{
    note(failure(410));
    QCOMPARE(wait("news"), Q_INT64_C(-1));
    QVERIFY(!scheduleAt(now.addYears(10)).isDue(channel("news")));
    QVERIFY(scheduleAt(now.addYears(10)).isRefused(channel("news")));
    QCOMPARE(wait("radio"), Q_INT64_C(0));
    note(answer());
    QCOMPARE(wait("news"), Q_INT64_C(0));
}

void TestSchedule::skippedTimes_data()
{
    QTest::addColumn<QList<int>>("hours");
    QTest::addColumn<QStringList>("days");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("other hours") << QList<int>{11, 13} << QStringList() << Q_INT64_C(0);
    QTest::newRow("this hour") << QList<int>{12, 13} << QStringList() << qint64(90 * minute);
    QTest::newRow("this day") << QList<int>() << QStringList{"Sunday"} << qint64(11 * hour + 30 * minute);
    QTest::newRow("both") << QList<int>{0} << QStringList{"Sunday"} << qint64(12 * hour + 30 * minute);
    QTest::newRow("all days") << QList<int>() << QStringList{"Monday", "Tuesday",  "Wednesday", "Thursday",
                                                             "Friday", "Saturday", "Sunday"}
                              << Q_INT64_C(0);
}

void TestSchedule::skippedTimes()
{
    QFETCH(QList<int>, hours);
    QFETCH(QStringList, days);
    QFETCH(qint64, expected);
    ChannelDetails details;
    details.skipHours = hours;
    details.skipDays = days;
    describe(details);
    QCOMPARE(wait("news"), expected);
}

void TestSchedule::files()
{
    const FeedChannel file = channel("news");
    VERIFY_OK(Channels(reader()).edit(file, file.title(), "file:///feeds/a.xml"));
    FeedAnswer lost = failure(FeedDownloadNotFound, 600);
    lost.host.clear();
    for (int i = 0; i < 5; ++i)
        note(lost);
    QCOMPARE(wait("news"), Q_INT64_C(0));
    QCOMPARE(scheduleAt(now).notes(channelUri("news")).error, QString("reason"));
    QVERIFY(!scheduleAt(now).isRefused(channel("news")));
}

void TestSchedule::linkThatIsNoPlace()
{
    const FeedChannel salvaged = channel("news");
    VERIFY_OK(Channels(reader()).edit(salvaged, salvaged.title(), "urn:uuid:1"));
    QCOMPARE(wait("news"), Q_INT64_C(-1));
}

void TestSchedule::move()
{
    FeedAnswer moved = answer();
    moved.movedTo = Link::fromText("https://example.com/new");
    for (int i = 0; i < 2; ++i) {
        note(moved);
        const auto followed = feeds().followMove(channelUri("news"));
        VERIFY_OK(followed);
        QCOMPARE(*followed, QString());
        QCOMPARE(channel("news").link(), linkOf("news"));
    }
    note(moved);
    QCOMPARE(*feeds().followMove(channelUri("news")),
             QString("the feed has moved permanently to https://example.com/new, which is the link of the "
                     "channel now"));
    QCOMPARE(channel("news").link(), QString("https://example.com/new"));
    QCOMPARE(channel("news").title(), QString("news"));
    QCOMPARE(*feeds().followMove(channelUri("news")), QString());
}

void TestSchedule::moveBack()
{
    FeedAnswer moved = answer();
    moved.movedTo = Link::fromText("https://example.com/new");
    FeedAnswer elsewhere = answer();
    elsewhere.movedTo = Link::fromText("https://example.com/other");
    // Neither an answer in between nor another address counts. A failure does not interrupt.
    const QList<FeedAnswer> answers{moved, moved, answer(), moved, moved, elsewhere, moved, moved};
    for (const FeedAnswer &each : answers) {
        note(each);
        QCOMPARE(*feeds().followMove(channelUri("news")), QString());
    }
    QCOMPARE(channel("news").link(), linkOf("news"));
    note(failure(500));
    note(moved);
    QVERIFY(!feeds().followMove(channelUri("news"))->isEmpty());
}

void TestSchedule::moveToOtherChannel()
{
    FeedAnswer moved = answer();
    moved.movedTo = Link::fromText(linkOf("radio"));
    for (int i = 0; i < 3; ++i)
        note(moved);
    QCOMPARE(*feeds().followMove(channelUri("news")),
             QString("the feed has moved permanently to https://example.org/radio, but this is the link of "
                     "another channel, radio"));
    QCOMPARE(channel("news").link(), linkOf("news"));
    // This is told once.
    note(moved);
    QCOMPARE(*feeds().followMove(channelUri("news")), QString());
}

void TestSchedule::editForgets()
{
    note(failure(410));
    VERIFY_OK(Channels(reader()).setInterval(channelUri("news"), hour));
    const FeedChannel news = channel("news");
    VERIFY_OK(Channels(reader()).edit(news, "New title", news.link()));
    QCOMPARE(wait("news"), Q_INT64_C(-1));
    VERIFY_OK(Channels(reader()).edit(channel("news"), "New title", "https://example.com/new"));
    QCOMPARE(wait("news"), Q_INT64_C(0));
    note(answer());
    QCOMPARE(wait("news"), qint64(hour));
}

// One question tells about all channels, and an answer that says nothing new writes nothing.
void TestSchedule::costs()
{
    StatementGate::reset();
    scheduleAt(now);
    QCOMPARE(StatementGate::statements().size(), 1);
    note(answer());
    QCOMPARE(StatementGate::statements().size(), 2);
    note(answer(600));
    QCOMPARE(StatementGate::statements().size(), 4);
}

void TestSchedule::deletedChannel()
{
    const QStringList before = contents();
    VERIFY_OK(feeds().noteAnswer(channelUri("deleted"), failure(404, 60), now));
    QCOMPARE(contents(), before);
}

QTEST_GUILESS_MAIN(TestSchedule)
#include "tst_schedule.moc"
