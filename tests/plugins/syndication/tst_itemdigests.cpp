// SPDX-License-Identifier: LGPL-2.1-or-later
#include "plugintest.h"

#include <TidelReader/messages.h>
#include <TidelReader/retention.h>

#include <QtTest>

#include <random>

using namespace Tidel;

namespace {

/// An item of a feed; an empty id is none.
struct Item
{
    QByteArray id;
    QByteArray link;
    QByteArray text;
};

QByteArray xml(const Item &item)
{
    const QByteArray guid =
        item.id.isEmpty() ? QByteArray() : "<guid isPermaLink='false'>" + item.id + "</guid>";
    return "<item>" + guid + "<link>" + item.link + "</link><title>Title " + item.text
        + "</title><description>Text " + item.text + "</description><enclosure url='" + item.text
        + ".mp3' length='1' type='audio/mpeg'/></item>";
}

QByteArray feedOf(const QVector<Item> &items, const QByteArray &website = "https://example.org/")
{
    QByteArray text = "<rss version='2.0'><channel><title>Feed</title><link>" + website + "</link>";
    for (const Item &item : items)
        text += xml(item);
    return text + "</channel></rss>";
}

const QString forgetDigests = "DELETE { ?m tidel:digest ?d } WHERE { ?m tidel:digest ?d }";
const QString forgetNotes = "DELETE { ?c tidel:itemDigests ?n } WHERE { ?c tidel:itemDigests ?n }";

} // namespace

/// Items that did not change since the last reading are not read again.
class TestItemDigests : public PluginTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(prepare()); }
    void init() { QVERIFY(begin()); }
    void cleanup() { end(); }

    void unchangedItemsAreNotRead();
    void everythingIsRead_data();
    void everythingIsRead();
    void changeAndBack();
    void textOfAnotherFeed();
    void manyItems();
    void sameAsWithoutDigests_data();
    void sameAsWithoutDigests();

private:
    /// Writes a feed and reads it.
    void read(const QByteArray &document, const QString &name = "feed.xml")
    {
        const QString path = write(name, document);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(--m_age),
                                 QFileDevice::FileModificationTime));
        const QString link = "file://" + path;
        const bool isNew = channelUri(link).isEmpty();
        VERIFY_ENDING(isNew ? subscribe(link) : refresh({channelUri(link)}), "downloadFeedsFinished");
    }
    QStringList last(const char *property) const { return downloader().property(property).toStringList(); }
    /// How many messages have a digest. A message without one gets it when its item is read.
    int digests() const { return m_store->count("?m tidel:digest ?d"); }
    void drop(const QString &link) const;
    QString randomDocument();
    void doSomethingElse();
    QStringList contents() const;
    QStringList story(unsigned seed, bool isPlain);

    int m_age = -7200;
    std::mt19937 m_random;
};

void TestItemDigests::drop(const QString &link) const
{
    const Result<Store> store = Store::open();
    QVERIFY(store);
    const QString uri = *Messages(*store).uri(link);
    const QStringList channels =
        m_store->texts("SELECT ?c { <" + uri + "> nie:isLogicalPartOf ?c . ?c nie:title ?t } ORDER BY ?t");
    for (const QString &channel : channels)
        QVERIFY(
            Retention(*store).drop(channel, {uri}, {0, {}, true}, [](int, const QList<FeedEnclosure> &) {}));
}

void TestItemDigests::unchangedItemsAreNotRead()
{
    read(feedOf({{"1", "a", "1"}, {"2", "b", "2"}}));
    m_store->update(forgetDigests);
    read(feedOf({{"3", "c", "3"}, {"2", "b", "2"}, {"1", "a", "1"}}));
    QCOMPARE(last("newMessages"), QStringList("https://example.org/c"));
    QCOMPARE(digests(), 1);
    read(feedOf({{"3", "c", "3"}, {"2", "b", "Other"}, {"1", "a", "1"}}));
    QCOMPARE(digests(), 2);
    // What has changed is recognized from the next reading on.
    read(feedOf({{"2", "b", "Other"}, {"1", "a", "1"}}));
    m_store->update(forgetDigests);
    read(feedOf({{"1", "a", "1"}, {"2", "b", "Other"}}));
    QCOMPARE(digests(), 0);
}

void TestItemDigests::everythingIsRead_data()
{
    QTest::addColumn<QString>("update");
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("digests");
    const QByteArray same = feedOf({{"1", "a", "1"}, {"2", "b", "2"}, {"3", "c", "3"}});
    QTest::newRow("nothing changed") << QString() << same << 0;
    QTest::newRow("no note") << forgetNotes << same << 3;
    QTest::newRow("note of another version")
        << "DELETE { ?c tidel:itemDigests ?n } INSERT { ?c tidel:itemDigests ?o } WHERE { "
           "?c tidel:itemDigests ?n BIND(REPLACE(?n, ' [0-9]+[.][0-9]+[.][0-9]+ ', ' 0.0.1 ') AS ?o) }"
        << same << 3;
    QTest::newRow("deleted message")
        << "DELETE { ?m a rdfs:Resource } WHERE { ?m nie:links <https://example.org/a> }" << same << 1 + 2;
    QTest::newRow("read by another program")
        << "DELETE { ?c nie:contentLastModified ?t } WHERE { ?c nie:contentLastModified ?t } "
           "INSERT { ?c nie:contentLastModified '2020-01-01T00:00:00' } WHERE { ?c a mfo:FeedChannel }"
        << same << 3;
    QTest::newRow("dropped link")
        << "INSERT { ?c tidel:droppedLink 'https://example.org/x' } WHERE { ?c a mfo:FeedChannel }" << same
        << 3;
    QTest::newRow("dropped key")
        << "INSERT { ?c tidel:droppedKey ?k } WHERE { ?m nie:links <https://example.org/a> ; "
           "tidel:itemKey ?k ; nie:isLogicalPartOf ?c }"
        << same << 2;
    QTest::newRow("other base") << QString()
                                << feedOf({{"1", "a", "1"}, {"2", "b", "2"}, {"3", "c", "3"}},
                                          "https://www.example.org/")
                                << 3;
    QTest::newRow("repeated identifier")
        << QString() << feedOf({{"1", "a", "1"}, {"2", "b", "2"}, {"3", "c", "3"}, {"1", "d", "4"}}) << 4;
    QTest::newRow("item without identifier")
        << QString() << feedOf({{"1", "a", "1"}, {"2", "b", "2"}, {"3", "c", "3"}, {"", "d", "4"}}) << 4;
}

void TestItemDigests::everythingIsRead()
{
    QFETCH(QString, update);
    QFETCH(QByteArray, document);
    QFETCH(int, digests);
    read(feedOf({{"1", "a", "1"}, {"2", "b", "2"}, {"3", "c", "3"}}));
    QCOMPARE(m_store->count("?c tidel:itemDigests ?n"), 1);
    m_store->update(forgetDigests + ' ' + update);
    read(document);
    QCOMPARE(this->digests(), digests);
}

// The note of the first reading must not count for the third one.
void TestItemDigests::changeAndBack()
{
    for (const char *text : {"first", "second", "first"}) {
        read(feedOf({{"1", "a", text}}));
        QCOMPARE(m_store->texts("SELECT ?t { ?m a mfo:FeedMessage ; nie:title ?t }"),
                 QStringList(QString("Title ") + text));
    }
}

// When the feed that has brought the text is gone, the other one replaces it.
void TestItemDigests::textOfAnotherFeed()
{
    const QString text = "SELECT ?d { ?m a mfo:FeedMessage ; nie:links <https://example.org/a> ; "
                         "nie:description ?d }";
    read(feedOf({{"1", "a", "Same"}}), "first.xml");
    for (int round = 0; round < 2; ++round)
        read(feedOf({{"x", "a", "Same"}}), "second.xml");
    read(feedOf({{"1", "a", "Other"}}), "first.xml");
    QCOMPARE(m_store->texts(text), QStringList("Text Other"));
    m_store->update("DELETE { ?m nie:isLogicalPartOf ?c } WHERE { ?m nie:isLogicalPartOf ?c . ?c nie:links "
                    "<file://"
                    + m_folder->filePath("first.xml") + "> }");
    read(feedOf({{"x", "a", "Same"}}), "second.xml");
    QCOMPARE(m_store->texts(text), QStringList("Text Same"));
}

void TestItemDigests::manyItems()
{
    QVector<Item> items;
    for (int i = 0; i < 4001; ++i)
        items.append({QByteArray::number(i), QByteArray::number(i), "Text"});
    read(feedOf(items));
    QCOMPARE(m_store->count("?c tidel:itemDigests ?n"), 0);
    items.removeLast();
    read(feedOf(items));
    QCOMPARE(m_store->count("?c tidel:itemDigests ?n"), 1);
}

/// A feed of few identifiers, links and texts, so that items change, move, repeat and share often.
QString TestItemDigests::randomDocument()
{
    const auto pick = [this](unsigned count) { return int(m_random() % count); };
    QVector<Item> items;
    for (int id = 1; id <= 6; ++id) {
        if (pick(4) > 0)
            items.append({QByteArray::number(id), QByteArray::number(pick(8) > 0 ? id : pick(6)),
                          QByteArray::number(pick(6) > 0 ? id : id * 10 + pick(3))});
    }
    std::shuffle(items.begin(), items.end(), m_random);
    if (!items.isEmpty() && pick(8) == 0)
        items.append(items.first());
    if (pick(8) == 0)
        items.append({pick(2) > 0 ? "1" : "", QByteArray::number(pick(7)), "odd"});
    const bool isOther = pick(8) == 0;
    QByteArray document = feedOf(items, isOther ? "https://www.example.org/" : "https://example.org/");
    if (pick(8) == 0)
        document.replace("</channel>", "");
    return QString::fromUtf8(document);
}

/// Does now and then what others do to the store.
void TestItemDigests::doSomethingElse()
{
    const QStringList links = messageLinks();
    if (links.isEmpty())
        return;
    const QString link = links.at(int(m_random() % unsigned(links.size())));
    switch (m_random() % 8) {
    case 0: m_store->update("DELETE { ?m a rdfs:Resource } WHERE { ?m nie:links <" + link + "> }"); break;
    case 1: drop(link); break;
    default: break;
    }
}

/// What the store has, without what differs by chance.
QStringList TestItemDigests::contents() const
{
    const QString hash = "REPLACE(?v, '^[^-]*-', '')";
    QStringList rows = m_store->texts(
        "SELECT ?l ?t ?d ?s { ?m a mfo:FeedMessage ; nie:links ?l ; nie:title ?t ; nie:description ?d ; "
        "nie:subject ?s } ORDER BY ?l");
    for (const char *property : {"itemKey", "digest"})
        rows += m_store->texts("SELECT ?l (" + hash + " AS ?h) { ?m a mfo:FeedMessage ; nie:links ?l ; tidel:"
                               + property + " ?v } ORDER BY ?l ?h");
    rows += m_store->texts("SELECT (" + hash + " AS ?h) { ?c tidel:droppedKey ?v } ORDER BY ?h");
    rows += m_store->texts("SELECT ?v { ?c tidel:droppedLink ?v } ORDER BY ?v");
    rows += m_store->texts("SELECT ?v { ?c tidel:note ?v } ORDER BY ?v");
    rows += m_store->texts("SELECT ?l ?r { ?e a mfo:Enclosure ; mfo:remoteLink ?r ; nie:isLogicalPartOf ?m . "
                           "?m nie:links ?l } ORDER BY ?l ?r");
    rows += m_store->texts("SELECT ?l ?f { ?m a mfo:FeedMessage ; nie:links ?l ; nie:isLogicalPartOf ?c . "
                           "?c nie:title ?f } ORDER BY ?l ?f");
    return rows;
}

/// What a sequence of readings has told and stored. If \a isPlain is true, nothing is recognized.
QStringList TestItemDigests::story(unsigned seed, bool isPlain)
{
    m_random.seed(seed);
    QStringList told;
    for (int step = 0; step < 12; ++step) {
        const QString document = randomDocument();
        read(document.toUtf8(), m_random() % 5 > 0 ? "feed.xml" : "other.xml");
        for (const char *property : {"newMessages", "changedMessages", "newNotes"})
            told.append(QString(property) + ": " + last(property).join(' '));
        told += contents();
        doSomethingElse();
        if (isPlain)
            m_store->update(forgetNotes);
    }
    return told;
}

void TestItemDigests::sameAsWithoutDigests_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 10; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void TestItemDigests::sameAsWithoutDigests()
{
    QFETCH(unsigned, seed);
    const QStringList plain = story(seed, true);
    end();
    QVERIFY(begin());
    const QStringList quick = story(seed, false);
    for (int i = 0; i < std::min(plain.size(), quick.size()); ++i)
        QCOMPARE(quick.at(i), plain.at(i));
    QCOMPARE(quick.size(), plain.size());
}

QTEST_GUILESS_MAIN(TestItemDigests)
#include "tst_itemdigests.moc"
