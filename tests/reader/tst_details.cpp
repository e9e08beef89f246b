// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channels.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/feeds.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>

using namespace Tidel;

namespace {

const QDateTime someTime(QDate(2026, 11, 3), QTime(10, 20, 30, 400), Qt::UTC);
const QDateTime storedTime(QDate(2026, 11, 3), QTime(10, 20, 30), Qt::UTC);

MessageDetails messageDetails()
{
    MessageDetails details;
    details.authors = QStringList{"Zoe \"Z\" O'Neil", "ada@example.org", "Zoe \"Z\" O'Neil"};
    details.categories = QStringList{"garden", "\u51ac"};
    details.updatedDate = someTime;
    details.comments = Link::fromText("https://example.org/comments");
    details.language = "pt-BR";
    details.thumbnail = Link::fromText("https://example.org/t.png");
    details.baseUrl = QUrl("https://example.org/base/");
    return details;
}

EnclosureDetails enclosureDetails()
{
    EnclosureDetails details;
    details.duration = 3723;
    details.title = "Part <one>";
    details.season = 2;
    details.episode = 7;
    details.chapters = Link::fromText("https://example.org/chapters.json");
    details.isExplicit = false;
    return details;
}

ChannelDetails channelDetails()
{
    ChannelDetails details;
    details.website = Link::fromText("https://example.org/");
    details.description = "<p>All of it</p>";
    details.language = "de";
    details.copyright = "\u00a9 2026";
    details.image = Link::fromText("https://example.org/i.png");
    details.minutesToLive = 60;
    details.skipHours = QList<int>{23, 0, 5};
    details.skipDays = QStringList{"Sunday", "Monday"};
    details.updatePeriod = "daily";
    details.updateFrequency = 2;
    details.updateBase = someTime;
    details.hub = Link::fromText("https://hub.example.org/");
    details.self = Link::fromText("https://example.org/feed.xml");
    details.notes = QStringList{"was not well-formed: line 66, a tag is not closed"};
    return details;
}

StorableMessage episode(const QString &name)
{
    StorableMessage message(Link::fromText(linkOf(name)), FeedMessage());
    message.addEnclosure(Link::toFile(linkOf(name + ".mp3")), FeedEnclosure(), enclosureDetails());
    message.setDetails(messageDetails());
    return message;
}

} // namespace

class TestDetails : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void ofMessages();
    void ofEnclosures();
    void ofChannels();
    void nothingIsWrittenWithoutDetails();
    void manyWithOneQuestion();
    void limits();
    void sameChannelDetailsAreNotWritten();
    void channelDetailsAreReplaced();
    void deletedWithTheirOwner();

private:
    void write(const QList<StorableMessage> &messages) const
    {
        QList<Link> links;
        for (const StorableMessage &message : messages)
            links.append(message.link());
        const auto use = LinkUse::of(reader(), links, channelUri("news"));
        VERIFY_OK(use);
        VERIFY_OK(MessageWriter(reader()).write(messages, channelUri("news"), *use));
    }
    QString uriOf(const QString &name) const
    {
        return Messages(reader()).uri(linkOf(name)).value_or(QString());
    }
};

void TestDetails::init()
{
    ReaderTestCase::init();
    addChannel("news");
    StatementGate::reset();
}

void TestDetails::ofMessages()
{
    write({episode("a")});
    const auto details = Messages(reader()).details({uriOf("a"), messageUri("unknown")});
    VERIFY_OK(details);
    QCOMPARE(details->size(), 1);
    const MessageDetails read = details->value(uriOf("a"));
    QCOMPARE(read.authors, QStringList({"Zoe \"Z\" O'Neil", "ada@example.org"}));
    QCOMPARE(read.categories, QStringList({"garden", "\u51ac"}));
    QCOMPARE(read.updatedDate, storedTime);
    QCOMPARE(read.comments, messageDetails().comments);
    QCOMPARE(read.language, QString("pt-BR"));
    QCOMPARE(read.thumbnail, messageDetails().thumbnail);
    QCOMPARE(read.baseUrl, messageDetails().baseUrl);
}

void TestDetails::ofEnclosures()
{
    write({episode("a")});
    const QString uri = Enclosures(reader()).ofMessage(uriOf("a"))->value(0).uri();
    const auto details = Enclosures(reader()).details({uri});
    VERIFY_OK(details);
    const EnclosureDetails read = details->value(uri);
    QCOMPARE(read.duration, 3723);
    QCOMPARE(read.title, QString("Part <one>"));
    QCOMPARE(read.season, 2);
    QCOMPARE(read.episode, 7);
    QCOMPARE(read.chapters, enclosureDetails().chapters);
    QCOMPARE(read.isExplicit, std::optional<bool>(false));
}

void TestDetails::ofChannels()
{
    VERIFY_OK(Feeds(reader()).noteReading(channelUri("news"), {{}, {}, channelDetails(), {}, {}}));
    const auto details = Channels(reader()).details({channelUri("news")});
    VERIFY_OK(details);
    const ChannelDetails read = details->value(channelUri("news"));
    QCOMPARE(read.website, channelDetails().website);
    QCOMPARE(read.description, channelDetails().description);
    QCOMPARE(read.language, QString("de"));
    QCOMPARE(read.copyright, channelDetails().copyright);
    QCOMPARE(read.image, channelDetails().image);
    QCOMPARE(read.minutesToLive, 60);
    QCOMPARE(read.skipHours, QList<int>({0, 5, 23}));
    QCOMPARE(read.skipDays, QStringList({"Monday", "Sunday"}));
    QCOMPARE(read.updatePeriod, QString("daily"));
    QCOMPARE(read.updateFrequency, 2);
    QCOMPARE(read.updateBase, storedTime);
    QCOMPARE(read.hub, channelDetails().hub);
    QCOMPARE(read.self, channelDetails().self);
    QCOMPARE(read.notes, channelDetails().notes);
}

void TestDetails::nothingIsWrittenWithoutDetails()
{
    StorableMessage bare(Link::fromText(linkOf("a")), FeedMessage());
    bare.addEnclosure(Link::toFile(linkOf("a.mp3")), FeedEnclosure());
    write({bare});
    QCOMPARE(Messages(reader()).details({uriOf("a")})->size(), 0);
    const QString uri = Enclosures(reader()).ofMessage(uriOf("a"))->value(0).uri();
    QCOMPARE(Enclosures(reader()).details({uri})->size(), 0);
    QCOMPARE(Channels(reader()).details({channelUri("news")})->size(), 0);
}

void TestDetails::manyWithOneQuestion()
{
    QList<StorableMessage> messages;
    for (const QString &name : numberedNames("m", 100))
        messages.append(episode(name));
    write(messages);
    const QStringList uris = store().texts("SELECT ?m { ?m a mfo:FeedMessage }");
    StatementGate::reset();
    const auto details = Messages(reader()).details(uris);
    VERIFY_OK(details);
    QCOMPARE(StatementGate::statements().size(), 1);
    QCOMPARE(details->size(), 100);
}

void TestDetails::limits()
{
    StorableMessage message = episode("a");
    MessageDetails details;
    details.categories = numberedNames("c", 51);
    details.authors = QStringList{QString(3999, 'x') + QString::fromUtf8("\U0001F605y")};
    details.baseUrl = QUrl("https://example.org/" + QString(4000, 'x'));
    message.setDetails(details);
    write({message});
    const MessageDetails read = Messages(reader()).details({uriOf("a")})->value(uriOf("a"));
    QCOMPARE(read.categories.size(), 50);
    QVERIFY(!read.categories.contains("c51"));
    QCOMPARE(read.authors, QStringList(QString(3999, 'x')));
    QCOMPARE(read.baseUrl, QUrl());
}

void TestDetails::sameChannelDetailsAreNotWritten()
{
    Feeds feeds(reader());
    VERIFY_OK(feeds.noteReading(channelUri("news"), {"1", {}, channelDetails(), {}, {}}));
    const auto memory = feeds.memory(channelUri("news"));
    VERIFY_OK(memory);
    StatementGate::reset();
    VERIFY_OK(feeds.noteReading(channelUri("news"), {"2", {}, channelDetails(), {}, memory->details}));
    QCOMPARE(StatementGate::statements().size(), 1);
    QVERIFY2(!StatementGate::statements().first().contains("tidel:website"),
             qPrintable(StatementGate::statements().first()));
    QCOMPARE(feeds.state(channelUri("news"))->entityTag(), QString("2"));
}

void TestDetails::channelDetailsAreReplaced()
{
    Feeds feeds(reader());
    VERIFY_OK(feeds.noteReading(channelUri("news"), {"1", {}, channelDetails(), {}, {}}));
    addDropped({"a"}, "news");
    ChannelDetails now;
    now.language = "en";
    StatementGate::reset();
    VERIFY_OK(
        feeds.noteReading(channelUri("news"), {"2", {}, now, {}, feeds.memory(channelUri("news"))->details}));
    QCOMPARE(StatementGate::statements().size(), 2);
    const ChannelDetails read = feeds.memory(channelUri("news"))->details;
    QCOMPARE(read.language, QString("en"));
    QVERIFY(read.website.isNull() && read.skipHours.isEmpty() && read.notes.isEmpty());
    QCOMPARE(droppedFrom("news"), linksOf({"a"}));
}

void TestDetails::deletedWithTheirOwner()
{
    VERIFY_OK(Feeds(reader()).noteReading(channelUri("news"), {"1", {}, channelDetails(), {}, {}}));
    write({episode("a")});
    const FeedChannel channel = *Channels::find(*Channels(reader()).all(), "news");
    VERIFY_OK(Channels(reader()).remove(channel, [](int, const QList<FeedEnclosure> &) {}));
    QCOMPARE(everythingIn(store()), QStringList());
}

QTEST_GUILESS_MAIN(TestDetails)
#include "tst_details.moc"
