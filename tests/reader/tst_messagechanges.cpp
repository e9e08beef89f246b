// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/enclosures.h>
#include <TidelReader/feeds.h>
#include <TidelReader/itemkey.h>
#include <TidelReader/knownitems.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>

using namespace Tidel;

namespace {

struct Text
{
    QString title;
    QString text;
    QString summary;
};

StorableMessage said(const QString &name, const Text &text, const QStringList &files = {},
                     const QString &id = {}, const QString &channel = "news")
{
    FeedMessage message;
    message.setTitle(text.title);
    message.setDescription(text.text);
    message.setSummary(text.summary);
    StorableMessage result(Link::fromText(linkOf(name)), message);
    for (const QString &file : files)
        result.addEnclosure(Link::toFile(linkOf(file)), FeedEnclosure());
    if (!id.isEmpty())
        result.setKey(itemKey(channelUri(channel), id));
    return result;
}

} // namespace

Q_DECLARE_METATYPE(Text)

class TestMessageChanges : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void whatCounts_data();
    void whatCounts();
    void changesEndTheItemNote();
    void files_data();
    void files();
    void changedInPlace();
    void earlierVersionsAreKept();
    void unchangedMessagesCostNothing();
    void newAndChangedInOneUpdate();
    void otherNameOfTheFile();
    void filesThatAreNotNamedAnyMore();
    void foundByKey();
    void keysOfChannelsDiffer();
    void olderMessageIsAdopted();
    void olderSharedMessageIsAdoptedOnce();
    void textFollowsTheFirstChannel();
    void textFollowsTheRemainingChannel();
    void failures_data();
    void failures();

private:
    Result<WrittenMessages> tryWrite(const QList<StorableMessage> &messages, const QString &channel = "news")
    {
        QList<Link> links;
        QStringList keys;
        for (const StorableMessage &message : messages) {
            links.append(message.link());
            if (!message.key().isEmpty())
                keys.append(message.key());
        }
        const QString uri = channelUri(channel);
        return KnownItems::of(reader(), keys, uri).and_then([&](const KnownItems &items) {
            return LinkUse::of(reader(), links, uri).and_then([&](const LinkUse &use) {
                WrittenMessages written;
                return MessageWriter(reader()).write(messages, uri, use, items, &written).map([&] {
                    return written;
                });
            });
        });
    }
    WrittenMessages write(const QList<StorableMessage> &messages, const QString &channel = "news")
    {
        const Result<WrittenMessages> written = tryWrite(messages, channel);
        if (!written)
            QTest::qFail(qPrintable(written.error().text()), __FILE__, __LINE__);
        return written.value_or(WrittenMessages());
    }
    QString uriOf(const QString &name) const
    {
        return Messages(reader()).uri(linkOf(name)).value_or(QString());
    }
    QStringList storedTexts() const
    {
        return store().texts("SELECT ?t ?d ?s { ?m a mfo:FeedMessage ; nie:title ?t ; nie:description ?d ; "
                             "nie:subject ?s } ORDER BY ?t");
    }
    QStringList storedFiles(const QString &name) const
    {
        return store().texts(QString("SELECT ?r { ?m nie:links <%1> . ?e nie:isLogicalPartOf ?m ; "
                                     "mfo:remoteLink ?r } ORDER BY ?r")
                                 .arg(linkOf(name)));
    }
};

void TestMessageChanges::init()
{
    ReaderTestCase::init();
    addChannel("news");
    addChannel("radio");
    StatementGate::reset();
}

void TestMessageChanges::whatCounts_data()
{
    QTest::addColumn<Text>("before");
    QTest::addColumn<Text>("after");
    QTest::addColumn<bool>("isChanged");
    const auto row = [](const char *name, const Text &before, const Text &after, bool isChanged) {
        QTest::newRow(name) << before << after << isChanged;
    };
    row("same", {"a", "b", "c"}, {"a", "b", "c"}, false);
    row("title", {"a", "b", "c"}, {"A", "b", "c"}, true);
    row("text", {"a", "b", "c"}, {"a", "b.", "c"}, true);
    row("summary", {"a", "b", "c"}, {"a", "b", ""}, true);
    row("title that looks like markup", {"use <b>", {}, {}}, {"use <i>", {}, {}}, true);
    row("markup", {"a", "<p>b</p>", {}}, {"a", "<div class='x'>b</div>", {}}, false);
    row("address of an image", {"a", "b <img src='/1.png'>", {}}, {"a", "b <img src='/2.png'>", {}}, false);
    row("address of a link", {"a", "<a href='/?u=1'>b</a>", {}}, {"a", "<a href='/?u=2'>b</a>", {}}, false);
    row("white space", {"a", "b c", {}}, {" a", "b\n\n c ", {}}, false);
    row("views", {"a", "b 1,234 views", {}}, {"a", "b 1,301 views", {}}, false);
    row("one comment", {"a", "b (9 comments)", {}}, {"a", "b (10 comments)", {}}, false);
    row("number behind the word", {"a", "Aufrufe: 5", {}}, {"a", "Aufrufe: 6", {}}, false);
    row("in thousands", {"a", "b 9.9k likes", {}}, {"a", "b 10k likes", {}}, false);
    row("in other letters", {"a", {}, QString::fromUtf8("12 комментариев")},
        {"a", {}, QString::fromUtf8("13 комментариев")}, false);
    row("counter of the title", {"a (3 comments)", {}, {}}, {"a (4 comments)", {}, {}}, false);
    row("number that counts nothing", {"a", "b 5 dead", {}}, {"a", "b 6 dead", {}}, true);
    row("number within a word", {"a", "b X5 views", {}}, {"a", "b X6 views", {}}, true);
    row("word that begins like a counter", {"a", "5 viewers", {}}, {"a", "6 viewers", {}}, true);
}

void TestMessageChanges::whatCounts()
{
    QFETCH(Text, before);
    QFETCH(Text, after);
    QFETCH(bool, isChanged);
    write({said("a", before)});
    const QStringList contentsBefore = contents();
    const WrittenMessages written = write({said("a", after)});
    QCOMPARE(written.added, QStringList());
    QCOMPARE(written.changed, isChanged ? linksOf({"a"}) : QStringList());
    QCOMPARE(contents() != contentsBefore, isChanged);
}

// A plug-in that ends before its next note must not find what it noted of the text before.
void TestMessageChanges::changesEndTheItemNote()
{
    const auto note = [this] { return Feeds(reader()).itemNote(channelUri("news"))->text; };
    write({said("a", {"Title", "Text", {}})});
    const int parts = Feeds(reader()).itemNote(channelUri("news"))->parts;
    VERIFY_OK(Feeds(reader()).noteReading(channelUri("news"), {{}, {}, {}, {"items", parts}, {}}));
    write({said("a", {"Title", "Text", {}})});
    QCOMPARE(note(), QString("items"));
    write({said("a", {"Title", "Other text", {}})});
    QCOMPARE(note(), QString());
}

void TestMessageChanges::files_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<bool>("isChanged");
    QTest::newRow("another file") << QStringList("1.mp3") << QStringList("2.mp3") << true;
    QTest::newRow("one more") << QStringList("1.mp3") << QStringList{"1.mp3", "2.mp3"} << true;
    QTest::newRow("one less") << QStringList("1.mp3") << QStringList() << true;
    QTest::newRow("another order") << QStringList{"1.mp3", "2.mp3"} << QStringList{"2.mp3", "1.mp3"} << false;
    QTest::newRow("another query") << QStringList("1.mp3?t=1") << QStringList("1.mp3?t=2") << false;
}

void TestMessageChanges::files()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    QFETCH(bool, isChanged);
    write({said("a", {"a", "b", {}}, before)});
    const WrittenMessages written = write({said("a", {"a", "b", {}}, after)});
    QCOMPARE(written.changed, isChanged ? linksOf({"a"}) : QStringList());
    QCOMPARE(storedFiles("a"), linksOf(isChanged ? after : before));
}

void TestMessageChanges::changedInPlace()
{
    StorableMessage before = said("a", {"a", "b", "c"});
    MessageDetails details;
    details.authors = QStringList{"Ada"};
    details.language = "en";
    before.setDetails(details);
    write({before, said("other", {"x", "y", "z"})});
    const QString uri = uriOf("a");
    VERIFY_OK(Messages(reader()).setFavorite(uri, true));
    const QStringList other = propertiesOf(store(), uriOf("other"));

    StorableMessage after = said("a", {"A", "B", "C"});
    details.authors = QStringList{"Bob", "Cem"};
    details.language = QString();
    after.setDetails(details);
    write({after, said("other", {"x", "y", "z"})});
    QCOMPARE(uriOf("a"), uri);
    QCOMPARE(storedTexts(), QStringList({"A B C", "x y z"}));
    QVERIFY(store().count("<" + uri + "> nao:hasTag nao:predefined-tag-favorite") == 1);
    const MessageDetails read = Messages(reader()).details({uri})->value(uri);
    QCOMPARE(read.authors, QStringList({"Bob", "Cem"}));
    QCOMPARE(read.language, QString());
    QCOMPARE(propertiesOf(store(), uriOf("other")), other);
}

void TestMessageChanges::earlierVersionsAreKept()
{
    write({said("a", {"0", "\"<b>0</b>\"", "s0"})});
    QCOMPARE(Messages(reader()).earlierVersions(uriOf("a"))->size(), 0);
    for (const char *title : {"1", "2", "3", "4"})
        write({said("a", {title, QString("text ") + title, {}})});
    const auto versions = Messages(reader()).earlierVersions(uriOf("a"));
    VERIFY_OK(versions);
    QCOMPARE(versions->size(), 3);
    QCOMPARE(versions->at(0).title, QString("3"));
    QCOMPARE(versions->at(2).title, QString("1"));
    QCOMPARE(versions->at(0).text, QString("text 3"));
    QVERIFY(qAbs(versions->at(0).replaced.secsTo(QDateTime::currentDateTimeUtc())) < 60);
    QCOMPARE(versions->at(0).replaced.timeSpec(), Qt::UTC);
    QCOMPARE(storedTexts(), QStringList("4 text 4 "));
}

void TestMessageChanges::unchangedMessagesCostNothing()
{
    QList<StorableMessage> messages;
    for (const QString &name : numberedNames("m", 50))
        messages.append(said(name, {name, "b", {}}, {name + ".mp3"}, name));
    write(messages);
    StatementGate::reset();
    write(messages);
    // Which keys and links are used, and for what. A plug-in does not ask for links of items whose key is
    // known.
    QCOMPARE(StatementGate::statements().size(), 4);
}

void TestMessageChanges::newAndChangedInOneUpdate()
{
    QList<StorableMessage> before;
    QList<StorableMessage> after;
    for (const QString &name : numberedNames("m", 50)) {
        before.append(said(name, {name, "b", {}}, {name + ".mp3"}));
        after.append(said(name, {name, "c", {}}, {name + ".mp3"}));
    }
    after.append(said("new", {"n", "c", {}}, {"new.mp3"}));
    write(before);
    StatementGate::reset();
    const WrittenMessages written = write(after);
    QCOMPARE(written.changed.size(), 50);
    QCOMPARE(written.added, linksOf({"new"}));
    QCOMPARE(StatementGate::types().count(QSparqlQuery::InsertStatement), 1);
    // Which links are used, and for what, the texts, the files of the messages, and which files the store
    // has.
    QCOMPARE(StatementGate::statements().size(), 6);
}

// A signature in the address of a file changes at each refresh. When the text changes, the new address
// counts.
void TestMessageChanges::otherNameOfTheFile()
{
    write({said("a", {"a", "b", {}}, {"1.mp3?t=1"})});
    write({said("a", {"a", "c", {}}, {"1.mp3?t=2"})});
    QCOMPARE(storedFiles("a"), linksOf({"1.mp3?t=2"}));
    QCOMPARE(store().count("?e a mfo:Enclosure"), 1);
}

void TestMessageChanges::filesThatAreNotNamedAnyMore()
{
    write({said("a", {"a", "b", {}}, {"gone.mp3", "got.mp3", "shared.mp3"}),
           said("other", {"x", "y", {}}, {"shared.mp3"})});
    const auto files = Enclosures(reader()).uris(linkOf("got.mp3"));
    VERIFY_OK(files);
    FeedEnclosure got = *Enclosures(reader()).get(files->first());
    got.setLocalUrl("file:///files/got.mp3");
    VERIFY_OK(Enclosures(reader()).setFile(got));
    write({said("a", {"a", "c", {}}, {"new.mp3"})});
    QCOMPARE(storedFiles("a"), linksOf({"got.mp3", "new.mp3"}));
    QCOMPARE(storedFiles("other"), linksOf({"shared.mp3"}));
    QCOMPARE(store().count("?e a mfo:Enclosure"), 3);
}

// The link of an item may change. Its message keeps the one under which it is stored.
void TestMessageChanges::foundByKey()
{
    write({said("a", {"a", "b", {}}, {}, "id 1")});
    const QString key = itemKey(channelUri("news"), "id 1");
    const auto known =
        KnownItems::of(reader(), {key, itemKey(channelUri("news"), "id 2")}, channelUri("news"));
    VERIFY_OK(known);
    QCOMPARE(known->link(key).toString(), linkOf("a"));
    QVERIFY(known->link(itemKey(channelUri("news"), "id 2")).isNull());
    QVERIFY(KnownItems().link(key).isNull());
    const auto use =
        LinkUse::of(reader(), {Link::fromText(linkOf("a")), Link::fromText(linkOf("x"))}, channelUri("news"));
    QVERIFY(use->isOfKnownItem(Link::fromText(linkOf("a"))));
    QVERIFY(!use->isOfKnownItem(Link::fromText(linkOf("x"))));
}

void TestMessageChanges::keysOfChannelsDiffer()
{
    write({said("a", {"a", "b", {}}, {}, "1")});
    write({said("b", {"x", "y", {}}, {}, "1", "radio")}, "radio");
    QCOMPARE(storedTexts(), QStringList({"a b ", "x y "}));
    // A message of both channels is known by two keys.
    const WrittenMessages joined = write({said("a", {"a", "b", {}}, {}, "2", "radio")}, "radio");
    QCOMPARE(joined.added, linksOf({"a"}));
    const QString key = itemKey(channelUri("radio"), "2");
    QCOMPARE(KnownItems::of(reader(), {key}, channelUri("radio"))->link(key).toString(), linkOf("a"));
    const auto use = LinkUse::of(reader(), {Link::fromText(linkOf("b"))}, channelUri("news"));
    QVERIFY(!use->isOfKnownItem(Link::fromText(linkOf("b"))));
}

// Older versions stored neither keys nor digests, and mended texts in another way.
void TestMessageChanges::olderMessageIsAdopted()
{
    addMessages({"a"}, "news", 1);
    addFavorite("a");
    StorableMessage now = said("a", {"New", "B", "C"}, {"a.mp3"}, "id 1");
    MessageDetails details;
    details.authors = QStringList{"Ada"};
    now.setDetails(details);
    const WrittenMessages written = write({now});
    QCOMPARE(written.added + written.changed, QStringList());
    QCOMPARE(uriOf("a"), messageUri("a"));
    QCOMPARE(storedTexts(), QStringList("New B C"));
    // It may have been another item with the same link.
    QCOMPARE(Messages(reader()).earlierVersions(messageUri("a"))->value(0).title, QString("Title of a"));
    QCOMPARE(Messages(reader()).details({messageUri("a")})->value(messageUri("a")).authors,
             QStringList("Ada"));
    QCOMPARE(storedFiles("a"), linksOf({"a.mp3"}));
    QCOMPARE(store().count("?m nao:hasTag nao:predefined-tag-favorite"), 1);

    const QString key = itemKey(channelUri("news"), "id 1");
    QCOMPARE(KnownItems::of(reader(), {key}, channelUri("news"))->link(key).toString(), linkOf("a"));
    QCOMPARE(write({said("a", {"Newer", "B", "C"}, {"a.mp3"}, "id 1")}).changed, linksOf({"a"}));
}

void TestMessageChanges::olderSharedMessageIsAdoptedOnce()
{
    addMessages({"a"}, "news", 1);
    share("a", "radio");
    write({said("a", {"Title of a", "Of the radio", {}})}, "radio");
    QCOMPARE(Messages(reader()).earlierVersions(messageUri("a"))->size(), 0);
    QCOMPARE(write({said("a", {"Of the news", {}, {}})}, "news").changed, QStringList());
    QCOMPARE(storedTexts(), QStringList("Title of a Of the radio "));
}

void TestMessageChanges::textFollowsTheFirstChannel()
{
    write({said("a", {"Of the news", {}, {}})});
    QCOMPARE(write({said("a", {"Of the radio", {}, {}}, {"a.mp3"})}, "radio").added, linksOf({"a"}));
    QCOMPARE(write({said("a", {"Of the radio", {}, {}}, {"a.mp3"})}, "radio").changed, QStringList());
    QCOMPARE(storedTexts(), QStringList("Of the news  "));
    QCOMPARE(storedFiles("a"), linksOf({"a.mp3"}));
    QCOMPARE(write({said("a", {"Of the news again", {}, {}})}).changed, linksOf({"a"}));
}

void TestMessageChanges::textFollowsTheRemainingChannel()
{
    write({said("a", {"Of the news", {}, {}})});
    write({said("a", {"Of the radio", {}, {}})}, "radio");
    store().update(QString("DELETE { <%1> nie:isLogicalPartOf <%2> }").arg(uriOf("a"), channelUri("news")));
    QCOMPARE(write({said("a", {"Of the radio", {}, {}})}, "radio").changed, linksOf({"a"}));
    QCOMPARE(storedTexts(), QStringList("Of the radio  "));
}

void TestMessageChanges::failures_data()
{
    QTest::addColumn<int>("statement");
    for (int i = 0; i < 6; ++i)
        QTest::addRow("%d", i) << i;
}

/// A change is stored as a whole or not at all, and is stored by the next refresh.
void TestMessageChanges::failures()
{
    QFETCH(int, statement);
    const StorableMessage after = said("a", {"a", "c", {}}, {"new.mp3"}, "id");
    write({said("a", {"a", "b", {}}, {"old.mp3"}, "id")});
    const QStringList before = contents();
    StatementGate::reset();
    StatementGate::failAt(statement, StatementGate::NoResult);
    const auto failed = tryWrite({after});
    const int asked = int(StatementGate::statements().size());
    StatementGate::reset();
    QVERIFY(!failed);
    QCOMPARE(asked, statement + 1);
    QCOMPARE(contents(), before);
    QCOMPARE(write({after}).changed, linksOf({"a"}));
    QCOMPARE(storedFiles("a"), linksOf({"new.mp3"}));
}

QTEST_GUILESS_MAIN(TestMessageChanges)
#include "tst_messagechanges.moc"
