// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/enclosures.h>

#include <algorithm>

using namespace Tidel;

class TestStoredEnclosures : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void allFields();
    void bareEnclosure();
    void largeSizes_data();
    void largeSizes();
    void ofMessage();
    void get();
    void uris_data();
    void uris();
    void messageBeforeEnclosure();
    void setFile();
    void setFileAgain();
    void setFileOfAnUnknownEnclosure();

private:
    Enclosures enclosures() const { return Enclosures(reader()); }
};

void TestStoredEnclosures::init()
{
    ReaderTestCase::init();
    addChannel("news");
    addMessages({"a", "b", "silent"}, "news", 1);
    addEnclosure("a.ogg", messageUri("a"));
    addEnclosure("a.mp3", messageUri("a"));
    addEnclosure("b.ogg", messageUri("b"));
    addEnclosure("icon.png", channelUri("news"));
    StatementGate::reset();
}

void TestStoredEnclosures::allFields()
{
    for (const FeedEnclosure &enclosure :
         {enclosures().ofMessage(messageUri("b"))->constFirst(), *enclosures().get(enclosureUri("b.ogg"))}) {
        QCOMPARE(enclosure.uri(), enclosureUri("b.ogg"));
        QCOMPARE(enclosure.remoteUrl(), linkOf("b.ogg"));
        QCOMPARE(enclosure.localUrl(), QString("file:///files/b.ogg"));
        QCOMPARE(enclosure.length(), 77U);
        QCOMPARE(enclosure.type(), FeedEnclosure::Optional);
        QCOMPARE(enclosure.groupId(), 3U);
        QVERIFY(enclosure.isDefault());
        QCOMPARE(enclosure.mimeType(), QString("audio/ogg"));
        QCOMPARE(enclosure.typeIcon(), QString("/icons/audio.png"));
        QCOMPARE(enclosure.sourceNamespace(), QString());
    }
}

void TestStoredEnclosures::bareEnclosure()
{
    store().update("INSERT { <urn:bare> a mfo:Enclosure ; nie:isLogicalPartOf <urn:message:silent> }");
    const auto found = enclosures().ofMessage(messageUri("silent"));
    VERIFY_OK(found);
    QCOMPARE(found->size(), 1);
    const FeedEnclosure enclosure = found->constFirst();
    QCOMPARE(enclosure.uri(), QString("urn:bare"));
    QCOMPARE(enclosure.remoteUrl(), QString());
    QCOMPARE(enclosure.length(), 0U);
    QCOMPARE(enclosure.type(), FeedEnclosure::Essential);
    QVERIFY(!enclosure.isDefault());
    QVERIFY(enclosures().get("urn:bare"));
}

void TestStoredEnclosures::largeSizes_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<unsigned int>("read");
    QTest::newRow("largest") << "2147483647" << 2147483647U;
    // The size is then unknown.
    QTest::newRow("2^31") << "2147483648" << 0U;
    QTest::newRow("4 GB") << "4000000000" << 0U;
}

void TestStoredEnclosures::largeSizes()
{
    QFETCH(QString, stored);
    QFETCH(unsigned int, read);
    FeedEnclosure enclosure;
    enclosure.setUri(enclosureUri("b.ogg"));
    enclosure.setLength(stored.toUInt());
    VERIFY_OK(enclosures().setFile(enclosure));
    QCOMPARE(store().texts("SELECT ?s { <urn:enclosure:b.ogg> nie:contentSize ?s }"), QStringList(stored));
    QCOMPARE(enclosures().get(enclosureUri("b.ogg"))->length(), read);
    QCOMPARE(enclosures().ofMessage(messageUri("b"))->constFirst().length(), read);
}

void TestStoredEnclosures::ofMessage()
{
    const auto found = enclosures().ofMessage(messageUri("a"));
    VERIFY_OK(found);
    QStringList uris;
    for (const FeedEnclosure &enclosure : *found)
        uris.append(enclosure.uri());
    uris.sort();
    QCOMPARE(uris, QStringList({enclosureUri("a.mp3"), enclosureUri("a.ogg")}));
    for (const QString &uri : {messageUri("silent"), messageUri("unknown"), QString(), QString("> } #")}) {
        const auto none = enclosures().ofMessage(uri);
        VERIFY_OK(none);
        QCOMPARE(none->size(), 0);
    }
}

void TestStoredEnclosures::get()
{
    QCOMPARE(enclosures().get(enclosureUri("icon.png"))->remoteUrl(), linkOf("icon.png"));
    for (const QString &uri :
         {messageUri("a"), linkOf("a.ogg"), enclosureUri("unknown"), QString(), QString("> } #")})
        VERIFY_ERROR(enclosures().get(uri), Error::NotFound, "no such enclosure");
}

void TestStoredEnclosures::uris_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("uris");
    const QStringList ofA{enclosureUri("a.mp3"), enclosureUri("a.ogg")};
    QTest::newRow("link of a message") << linkOf("a") << ofA;
    QTest::newRow("URI of a message") << messageUri("a") << ofA;
    QTest::newRow("message without enclosures") << linkOf("silent") << QStringList();
    QTest::newRow("remote URL") << linkOf("a.ogg") << QStringList(enclosureUri("a.ogg"));
    QTest::newRow("URI") << enclosureUri("a.ogg") << QStringList(enclosureUri("a.ogg"));
    QTest::newRow("image of a channel") << linkOf("icon.png") << QStringList(enclosureUri("icon.png"));
}

void TestStoredEnclosures::uris()
{
    QFETCH(QString, name);
    const auto found = enclosures().uris(name);
    VERIFY_OK(found);
    QTEST(*found, "uris");
    for (const QString &unknown : {linkOf("unknown"), channelUri("news"), linkOf("news"), QString(),
                                   QString("file:///files/a.ogg"), QString("> } #")})
        VERIFY_ERROR(enclosures().uris(unknown), Error::NotFound, "no such message or enclosure");
}

void TestStoredEnclosures::messageBeforeEnclosure()
{
    store().update("INSERT { <urn:enclosure:b.ogg> mfo:remoteLink <" + linkOf("a") + "> }");
    QCOMPARE(enclosures().uris(linkOf("a"))->size(), 2);
}

void TestStoredEnclosures::setFile()
{
    QStringList expected = contents();
    FeedEnclosure enclosure = *enclosures().get(enclosureUri("b.ogg"));
    enclosure.setLocalUrl("file:///files/100%25%20b.ogg");
    enclosure.setLength(4812345);
    enclosure.setMimeType("audio/\"mp3\"");
    enclosure.setTypeIcon("other");
    enclosure.setDefault(false);
    StatementGate::reset();
    VERIFY_OK(enclosures().setFile(enclosure));
    QCOMPARE(StatementGate::statements().size(), 1);
    for (const auto &[property, text] :
         {std::pair("mfo:localLink ", "file:///files/100%25%20b.ogg"),
          std::pair("nie:contentSize ", "4812345"), std::pair("nie:mimeType ", "audio/\"mp3\"")}) {
        const QString start = enclosureUri("b.ogg") + ' ' + property;
        const auto line = std::find_if(expected.begin(), expected.end(),
                                       [&](const QString &known) { return known.startsWith(start); });
        QVERIFY(line != expected.end());
        *line = start + text;
    }
    expected.sort();
    QStringList after = contents();
    after.sort();
    QCOMPARE(after, expected);
}

void TestStoredEnclosures::setFileAgain()
{
    store().update("INSERT { <urn:enclosure:b.ogg> mfo:localLink <file:///other> }");
    FeedEnclosure enclosure = *enclosures().get(enclosureUri("b.ogg"));
    enclosure.setLocalUrl(QString());
    enclosure.setLength(0);
    for (int i = 0; i < 2; ++i) {
        VERIFY_OK(enclosures().setFile(enclosure));
        QCOMPARE(enclosures().get(enclosureUri("b.ogg"))->localUrl(), QString());
        QCOMPARE(store().count("<urn:enclosure:b.ogg> mfo:localLink ?l ; nie:mimeType ?t"), 1);
    }
}

void TestStoredEnclosures::setFileOfAnUnknownEnclosure()
{
    const QStringList before = contents();
    FeedEnclosure enclosure;
    enclosure.setUri("urn:enclosure:unknown");
    enclosure.setLocalUrl("file:///files/x");
    const auto failed = enclosures().setFile(enclosure);
    QVERIFY(!failed);
    QCOMPARE(failed.error().kind(), Error::StoreRefused);
    QCOMPARE(contents(), before);
}

QTEST_GUILESS_MAIN(TestStoredEnclosures)
#include "tst_storedenclosures.moc"
