// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/storablemessage.h>

#include <QtTest>

#include <algorithm>

using namespace Tidel;

namespace {

const Link page = Link::fromText("https://example.org/1");
const Link file = Link::toFile("https://example.org/1.ogg");

FeedEnclosure enclosure(unsigned int length)
{
    FeedEnclosure result("urn:e", "https://example.org/other.ogg", "file:///files/1.ogg", QString(), length,
                         FeedEnclosure::Essential, 3, true);
    result.setMimeType("audio/ogg");
    result.setTypeIcon("/icons/audio.png");
    return result;
}

} // namespace

class TestStorableMessage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreTakenOver();
    void linkAndEnclosuresAreNotTakenOver();
    void enclosure();
    void nullLinkIsIgnored();
    void sameRemoteLinkReplaces();
    void nullLinkOfTheMessage();
    void copies();
    void weight();
};

void TestStorableMessage::textsAreTakenOver()
{
    const QDateTime published(QDate(2026, 11, 1), QTime(12, 0), Qt::UTC);
    const FeedMessage given("Title", "https://example.org/other", "id", "<p>Text</p>", "Summary", published,
                            {}, published.addDays(1), true);
    const FeedMessage message = StorableMessage(page, given).message();
    QCOMPARE(message.title(), QString("Title"));
    QCOMPARE(message.id(), QString("id"));
    QCOMPARE(message.description(), QString("<p>Text</p>"));
    QCOMPARE(message.summary(), QString("Summary"));
    QCOMPARE(message.publishedDate(), published);
}

void TestStorableMessage::linkAndEnclosuresAreNotTakenOver()
{
    FeedMessage given;
    given.setLink("> } DELETE { ?c a rdfs:Resource }");
    given.addEnclosure(::enclosure(1));
    const StorableMessage storable(page, given);
    QVERIFY(storable.link() == page);
    QCOMPARE(storable.message().link(), page.toString());
    QCOMPARE(storable.message().enclosures().size(), 0);
    QCOMPARE(given.enclosures().size(), 1);
}

void TestStorableMessage::enclosure()
{
    StorableMessage storable(page, FeedMessage());
    const FeedEnclosure given = ::enclosure(4000000000);
    storable.addEnclosure(file, given);
    QCOMPARE(storable.message().enclosures().size(), 1);
    const FeedEnclosure stored = storable.message().enclosures().constFirst();
    QCOMPARE(stored.remoteUrl(), file.toString());
    QCOMPARE(stored.localUrl(), QString());
    QCOMPARE(stored.length(), 4000000000U);
    QCOMPARE(stored.type(), FeedEnclosure::Essential);
    QCOMPARE(stored.groupId(), 3U);
    QVERIFY(stored.isDefault());
    QCOMPARE(stored.mimeType(), QString("audio/ogg"));
    QCOMPARE(stored.typeIcon(), QString("/icons/audio.png"));
    QCOMPARE(given.localUrl(), QString("file:///files/1.ogg"));
}

void TestStorableMessage::nullLinkIsIgnored()
{
    StorableMessage storable(page, FeedMessage());
    storable.addEnclosure(Link(), ::enclosure(1));
    QCOMPARE(storable.message().enclosures().size(), 0);
}

void TestStorableMessage::sameRemoteLinkReplaces()
{
    StorableMessage storable(page, FeedMessage());
    storable.addEnclosure(file, ::enclosure(1));
    storable.addEnclosure(Link::toFile("https://example.org/2.ogg"), ::enclosure(2));
    storable.addEnclosure(file, ::enclosure(3));
    QList<unsigned int> lengths;
    const QList<FeedEnclosure> enclosures = storable.message().enclosures();
    for (const FeedEnclosure &stored : enclosures)
        lengths.append(stored.length());
    std::sort(lengths.begin(), lengths.end());
    QCOMPARE(lengths, QList<unsigned int>({2, 3}));
}

void TestStorableMessage::nullLinkOfTheMessage()
{
    const StorableMessage storable{Link(), FeedMessage()};
    QVERIFY(storable.link().isNull());
    QCOMPARE(storable.message().link(), QString());
}

void TestStorableMessage::copies()
{
    const StorableMessage first(page, FeedMessage());
    StorableMessage second = first;
    second.addEnclosure(file, ::enclosure(1));
    QCOMPARE(first.message().enclosures().size(), 0);
    QCOMPARE(second.message().enclosures().size(), 1);
    StorableMessage third = std::move(second);
    second = first;
    QCOMPARE(second.message().enclosures().size(), 0);
    QCOMPARE(third.message().enclosures().size(), 1);
}

void TestStorableMessage::weight()
{
    FeedMessage text;
    const int empty = StorableMessage(page, text).weight();
    text.setDescription(QString(1000, 'x'));
    StorableMessage message(page, text);
    QCOMPARE(message.weight(), empty + 1000);
    MessageDetails details;
    details.authors = QStringList{QString(10000, QLatin1Char('a')), "b"};
    message.setDetails(details);
    QCOMPARE(message.weight(), empty + 1000 + 4000 + 1);
    const int before = message.weight();
    message.addEnclosure(file, FeedEnclosure());
    QVERIFY(message.weight() > before + file.toString().size());
}

QTEST_GUILESS_MAIN(TestStorableMessage)
#include "tst_storablemessage.moc"
