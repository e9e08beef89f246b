// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/channelcontent.h>
#include <TidelReader/channels.h>
#include <TidelReader/enclosures.h>
#include <TidelReader/feeds.h>
#include <TidelReader/knownitems.h>
#include <TidelReader/linkuse.h>
#include <TidelReader/messages.h>
#include <TidelReader/messagewriter.h>
#include <TidelReader/retention.h>
#include <TidelReader/retentionrules.h>

#include <storable.h>

using namespace Tidel;

namespace {

/// Hands a hostile text to a function of the library. The function may fail.
using Use = std::function<void(const Store &, const QString &)>;

void ignoreStep(int, const QList<FeedEnclosure> &) { }

FeedChannel channel(const QString &uri, const QString &title, const QString &link)
{
    FeedChannel channel;
    channel.setUri(uri);
    channel.setTitle(title);
    channel.setLink(link);
    return channel;
}

FeedChannel news() { return channel(channelUri("news"), "news", linkOf("news")); }

/// The answer of the host \a text, which refuses more requests and says \a text.
FeedAnswer refusal(const QString &text)
{
    FeedAnswer answer;
    answer.error = 429;
    answer.reason = text;
    answer.wait = 60;
    answer.host = text;
    return answer;
}

FeedEnclosure enclosure(const QString &uri, const QString &localUrl, const QString &mimeType)
{
    FeedEnclosure enclosure;
    enclosure.setUri(uri);
    enclosure.setLocalUrl(localUrl);
    enclosure.setMimeType(mimeType);
    return enclosure;
}

void write(const Store &store, const StorableMessage &message, const QString &channel = channelUri("news"))
{
    const auto use = LinkUse::of(store, {message.link()}, channel);
    if (use)
        MessageWriter(store).write({message}, channel, *use);
}

} // namespace

Q_DECLARE_METATYPE(Use)

/// No text changes the structure of a statement.
class TestHostileTexts : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void structureStays_data();
    void structureStays();
    void linksOfNewChannels();
    void textsAreStoredAsTheyAre_data();
    void textsAreStoredAsTheyAre();

private:
    static QStringList attacks();
    static void addUse(const char *name, const Use &use) { QTest::newRow(name) << use; }
};

QStringList TestHostileTexts::attacks()
{
    const QString payload = "INSERT { <urn:attack> a mfo:FeedMessage } "
                            "DELETE { ?c a rdfs:Resource } WHERE { ?c a mfo:FeedChannel } ";
    QStringList attacks;
    for (const char *end :
         {"> } ", "\" } ", "' } ", "\\\" } ", "\\' } ", "\"\"\" } ", "\n } ", "\r\n\" } ", "} ", "> ) } ",
          "\\> } ", "\\u0022 } ", "%3E } ", "urn:x> } ", "https://x/> } "}) {
        attacks.append(end + payload + "#");
        attacks.append(end + payload);
    }
    return attacks;
}

void TestHostileTexts::structureStays_data()
{
    QTest::addColumn<Use>("use");
    using S = const Store &;
    using T = const QString &;
    addUse("Channels::uri", [](S s, T t) { Channels(s).uri(t); });
    addUse("Channels::title", [](S s, T t) { Channels(s).title(t); });
    addUse("Channels::edit, URI",
           [](S s, T t) { Channels(s).edit(channel(t, "x", linkOf("x")), "y", linkOf("y")); });
    addUse("Channels::edit, old link",
           [](S s, T t) { Channels(s).edit(channel("urn:x", "x", t), "y", linkOf("y")); });
    addUse("Channels::edit, title", [](S s, T t) { Channels(s).edit(news(), t, linkOf("news")); });
    addUse("Channels::edit, link", [](S s, T t) { Channels(s).edit(news(), "news", t); });
    addUse("Channels::remove, URI",
           [](S s, T t) { Channels(s).remove(channel(t, "x", linkOf("x")), ignoreStep); });
    addUse("Channels::remove, link",
           [](S s, T t) { Channels(s).remove(channel("urn:x", "x", t), ignoreStep); });
    addUse("Messages::ofChannel", [](S s, T t) { Messages(s).ofChannel(t); });
    addUse("Messages::headlines", [](S s, T t) { Messages(s).headlines({t, linkOf("a"), t}); });
    addUse("Messages::uri", [](S s, T t) { Messages(s).uri(t); });
    addUse("Messages::setFavorite, true", [](S s, T t) { Messages(s).setFavorite(t, true); });
    addUse("Messages::setFavorite, false", [](S s, T t) { Messages(s).setFavorite(t, false); });
    addUse("Enclosures::ofMessage", [](S s, T t) { Enclosures(s).ofMessage(t); });
    addUse("Enclosures::get", [](S s, T t) { Enclosures(s).get(t); });
    addUse("Enclosures::uris", [](S s, T t) { Enclosures(s).uris(t); });
    addUse("Enclosures::setFile, URI",
           [](S s, T t) { Enclosures(s).setFile(enclosure(t, "file:///x", "a/b")); });
    addUse("Enclosures::setFile, file",
           [](S s, T t) { Enclosures(s).setFile(enclosure(enclosureUri("a.ogg"), t, "a/b")); });
    addUse("Enclosures::setFile, type",
           [](S s, T t) { Enclosures(s).setFile(enclosure(enclosureUri("a.ogg"), "file:///x", t)); });
    addUse("Feeds::state", [](S s, T t) { Feeds(s).state(t); });
    addUse("Feeds::noteReading, URI", [](S s, T t) { Feeds(s).noteReading(t, {"tag", "then", {}, {}, {}}); });
    addUse("Feeds::noteReading, texts", [](S s, T t) {
        Feeds(s).noteReading(channelUri("news"), {t, t, {}, {}, {}});
    });
    addUse("Feeds::noteAnswer, URI",
           [](S s, T t) { Feeds(s).noteAnswer(t, refusal("reason"), QDateTime::currentDateTimeUtc()); });
    addUse("Feeds::noteAnswer, texts", [](S s, T t) {
        Feeds(s).noteAnswer(channelUri("news"), refusal(t), QDateTime::currentDateTimeUtc());
    });
    addUse("Feeds::followMove", [](S s, T t) { Feeds(s).followMove(t); });
    addUse("Channels::setInterval", [](S s, T t) { Channels(s).setInterval(t, 60); });
    addUse("Feeds::memory", [](S s, T t) { Feeds(s).memory(t); });
    addUse("Feeds::forgetDropped, URI", [](S s, T t) { Feeds(s).forgetDropped(t, {linkOf("x")}); });
    addUse("Feeds::forgetDropped, link", [](S s, T t) {
        Feeds(s).forgetDropped(channelUri("news"), {t, t});
    });
    addUse("Feeds::forgetDropped, key", [](S s, T t) {
        Feeds(s).forgetDropped(channelUri("news"), {}, {t, t});
    });
    addUse("Feeds::noteReading, details", [](S s, T t) {
        ChannelDetails details;
        details.description = t;
        details.notes = QStringList{t, t};
        Feeds(s).noteReading(channelUri("news"), {{}, {}, details, {}, {}});
    });
    addUse("Messages::details", [](S s, T t) { Messages(s).details({t, messageUri("a")}); });
    addUse("Messages::earlierVersions", [](S s, T t) { Messages(s).earlierVersions(t); });
    addUse("Enclosures::details", [](S s, T t) { Enclosures(s).details({t, enclosureUri("a.ogg")}); });
    addUse("Channels::details", [](S s, T t) { Channels(s).details({t, channelUri("news")}); });
    addUse("KnownItems::of, channel", [](S s, T t) { KnownItems::of(s, {"key"}, t); });
    addUse("KnownItems::of, key", [](S s, T t) { KnownItems::of(s, {t, t}, channelUri("news")); });
    addUse("MessageWriter::write, changed texts", [](S s, T t) {
        FeedMessage texts;
        texts.setTitle(t);
        texts.setDescription(t);
        StorableMessage message(Link::fromEncoded(linkOf("a")), texts);
        message.setKey(t);
        MessageDetails details;
        details.authors = QStringList{t};
        details.language = t;
        message.setDetails(details);
        EnclosureDetails file;
        file.title = t;
        message.addEnclosure(Link::fromEncoded(linkOf("a.ogg")), FeedEnclosure(), file);
        write(s, message, channelUri("news"));
        texts.setSummary(t);
        StorableMessage changed(Link::fromEncoded(linkOf("a")), texts);
        changed.addEnclosure(Link::fromEncoded(linkOf("a.ogg")), FeedEnclosure());
        write(s, changed, channelUri("news"));
    });
    addUse("LinkUse::of, channel", [](S s, T t) { LinkUse::of(s, {Link::fromEncoded(linkOf("a"))}, t); });
    addUse("LinkUse::of, link", [](S s, T t) {
        LinkUse::of(s, {Link::fromEncoded(t), Link::fromText(t, QUrl(linkOf("x")))}, channelUri("news"));
    });
    addUse("MessageWriter::write, channel",
           [](S s, T t) { write(s, StorableMessage(Link::fromEncoded(linkOf("x")), FeedMessage()), t); });
    addUse("RetentionRules::set", [](S s, T t) { RetentionRules(s).set(t, RetentionRule{1, {}, false}); });
    addUse("ChannelContent::of", [](S s, T t) { ChannelContent::of(s, t); });
    addUse("Retention::excess", [](S s, T t) { Retention(s).excess(t, {0, 0, true}); });
    addUse("Retention::headlines", [](S s, T t) { Retention(s).headlines({t, messageUri("a")}); });
    addUse("Retention::drop, channel",
           [](S s, T t) { Retention(s).drop(t, {"urn:message:x"}, {}, ignoreStep); });
    addUse("Retention::drop, message",
           [](S s, T t) { Retention(s).drop(channelUri("news"), {t}, {}, ignoreStep); });
}

void TestHostileTexts::structureStays()
{
    QFETCH(Use, use);
    addChannel("news");
    addChannel("radio");
    addMessages({"a", "b"}, "news", 1);
    addEnclosure("a.ogg", messageUri("a"));
    for (const QString &attack : attacks()) {
        use(reader(), attack);
        QVERIFY2(store().count("?c a mfo:FeedChannel") == 2 && store().count("?m a mfo:FeedMessage") == 2
                     && store().count("?e a mfo:Enclosure") == 1 && store().count("<urn:attack> ?p ?o") == 0
                     && messagesIn("news").size() == 2,
                 qPrintable(attack));
    }
}

void TestHostileTexts::linksOfNewChannels()
{
    addChannel("news");
    addMessages({"a"}, "news", 1);
    for (const QString &attack : attacks()) {
        FeedEnclosure icon;
        icon.setRemoteUrl(linkOf("icon") + attack);
        icon.setLocalUrl(attack);
        FeedChannel added = channel(QString(), "added", linkOf("added") + attack);
        added.setIcon(icon);
        const auto uri = Channels(reader()).add(added);
        QVERIFY2(store().count("<urn:channel:news> a mfo:FeedChannel") == 1
                     && store().count("<urn:attack> ?p ?o") == 0 && messagesIn("news").size() == 1,
                 qPrintable(attack));
        if (uri)
            store().update(QString("DELETE { <%1> a rdfs:Resource }").arg(*uri));
    }
}

void TestHostileTexts::textsAreStoredAsTheyAre_data()
{
    QTest::addColumn<QString>("text");
    const QStringList texts = attacks();
    for (int i = 0; i < texts.size(); ++i)
        QTest::addRow("attack %d", i) << texts.at(i);
    QTest::newRow("placeholders") << "?:link %1 ~x $y ?z";
    QTest::newRow("tab") << "a\tb\bc\fd";
    QTest::newRow("beyond the basic plane") << QString::fromUtf8("\xf0\x9f\x8e\xb5 \xc3\xbc");
}

void TestHostileTexts::textsAreStoredAsTheyAre()
{
    QFETCH(QString, text);
    FeedEnclosure icon = enclosure(QString(), text, text);
    icon.setRemoteUrl(linkOf("icon.png"));
    icon.setTypeIcon(text);
    FeedChannel added = channel(QString(), text, linkOf("added"));
    added.setType(text);
    added.setIcon(icon);
    const auto uri = Channels(reader()).add(added);
    VERIFY_OK(uri);
    FeedMessage message;
    message.setTitle(text);
    message.setDescription(text);
    message.setSummary(text);
    StorableMessage storable(Link::fromEncoded(linkOf("a")), message);
    storable.addEnclosure(Link::fromEncoded(linkOf("a.ogg")), icon);
    write(reader(), storable, *uri);

    const auto channels = Channels(reader()).all();
    QCOMPARE(channels->size(), 1);
    QCOMPARE(channels->constFirst().title(), text.simplified());
    QCOMPARE(channels->constFirst().type(), text);
    QCOMPARE(store().texts("SELECT ?i { ?c a mfo:FeedChannel ; mfo:image ?i }"), QStringList(text));
    const auto messages = Messages(reader()).ofChannel(*uri);
    QCOMPARE(messages->size(), 1);
    QCOMPARE(messages->constFirst().title(), text);
    QCOMPARE(messages->constFirst().description(), text);
    QCOMPARE(messages->constFirst().summary(), text);
    const auto enclosures = Enclosures(reader()).ofMessage(*Messages(reader()).uri(linkOf("a")));
    QCOMPARE(enclosures->size(), 1);
    QCOMPARE(enclosures->constFirst().mimeType(), text);
    QCOMPARE(enclosures->constFirst().typeIcon(), text);

    VERIFY_OK(Feeds(reader()).noteReading(*uri, {text, text + '2', {}, {}, {}}));
    QCOMPARE(Feeds(reader()).state(*uri)->entityTag(), text);
    QCOMPARE(Feeds(reader()).state(*uri)->lastModified(), text + '2');
}

QTEST_GUILESS_MAIN(TestHostileTexts)
#include "tst_hostiletexts.moc"
