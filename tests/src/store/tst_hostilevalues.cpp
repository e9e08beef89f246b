// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QSparqlConnection>

#include <QRegularExpression>
#include <QUrl>
#include <QtTest>

Q_DECLARE_METATYPE(FeedEnclosure)

namespace S = Statements;

namespace {

/// The deletion that every attack attempts.
const QString deletion = "DELETE { ?c a rdfs:Resource } WHERE { ?c a mfo:FeedChannel }";

const QString owner = "urn:m";

const char channels[] = "INSERT { <urn:c:1> a mfo:FeedChannel ; nie:title 'One' . "
                        "<urn:c:2> a mfo:FeedChannel ; nie:title 'Two' . <urn:c:3> a mfo:FeedChannel . "
                        "<urn:m> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c:1> }";

FeedEnclosure enclosure(const QString &remoteUrl, const QString &localUrl, const QString &mimeType,
                        const QString &typeIcon)
{
    FeedEnclosure result;
    result.setRemoteUrl(remoteUrl);
    result.setLocalUrl(localUrl);
    result.setMimeType(mimeType);
    result.setTypeIcon(typeIcon);
    return result;
}

FeedEnclosure withRemoteUrl(const QString &url)
{
    return enclosure(url, "file:///1", "audio/ogg", "/icon.png");
}

FeedEnclosure withLocalUrl(const QString &url)
{
    return enclosure("http://example.org/1.ogg", url, "audio/ogg", "/icon.png");
}

FeedEnclosure withLiterals(const QString &mimeType, const QString &typeIcon,
                           const QString &remoteUrl = "http://example.org/1.ogg")
{
    return enclosure(remoteUrl, "file:///1", mimeType, typeIcon);
}

FeedEnclosure harmless() { return withRemoteUrl("http://example.org/harmless.ogg"); }

FeedMessage message(const QString &link) { return FeedMessage("Title", link, "Text", QDateTime()); }

/// Returns the link as the lookup of a stored message contains it.
QString lookedUp(const QString &link) { return QString::fromLatin1(QUrl::fromUserInput(link).toEncoded()); }

QString insertMessageWith(const QString &link)
{
    return QString("INSERT { _:m a mfo:FeedMessage ; nie:links <%1> }").arg(lookedUp(link));
}

/// Returns the update without any protection.
QString pasted(const QList<FeedEnclosure> &enclosures, const QString &ownerUri)
{
    QString update;
    for (const FeedEnclosure &value : enclosures) {
        const QString number = QString::number(update.size());
        update += S::enclosureInsert(value, ownerUri, "urn:pasted:" + number);
    }
    return update;
}

/// Returns attacks that end an IRI early. \a before is needed behind the IRI, and \a after may follow the
/// deletion.
QList<QPair<QString, QString>> iriAttacks(const QString &before, const QString &after)
{
    return {{"and a comment", "urn:x> " + before + deletion + " #"},
            {"and an operation", "urn:x> " + before + deletion + after},
            {"after a line break", "urn:x>\n" + before + '\n' + deletion + "\n#"},
            {"within an IRI that is encoded", "http://example.org/%3E> " + before + deletion + " #"},
            {"behind a comment", "urn:x> #\n" + before + deletion + " #"}};
}

} // namespace

class TestHostileValues : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void enclosures_data();
    void enclosures();
    void ownerOfAStoredEnclosure_data();
    void ownerOfAStoredEnclosure();
    void channelOfANewMessage_data();
    void channelOfANewMessage();
    void channelOfAStoredMessage_data();
    void channelOfAStoredMessage();
    void linkOfAStoredMessage_data();
    void linkOfAStoredMessage();
    void linksOfTwoStoredMessages();

    void brokenIri_data();
    void brokenIri();
    void brokenLiteral_data();
    void brokenLiteral();
    void characterCodesDoNotEndAPlace_data();
    void characterCodesDoNotEndAPlace();
    void textsReturnedToAHostAreRefusedToo_data();
    void textsReturnedToAHostAreRefusedToo();

    void messagesOfAList_data();
    void messagesOfAList();
    void storedMessage();

    void boundValuesAreHarmless_data();
    void boundValuesAreHarmless();
    void boundValuesChangeOneChannelOnly_data();
    void boundValuesChangeOneChannelOnly();
    void boundValuesDeleteNothing_data();
    void boundValuesDeleteNothing();
    void imageOfADeletedChannelIsHarmless_data();
    void imageOfADeletedChannelIsHarmless();
    void linkOfANewMessageIsHarmless();
    void harmlessIris_data();
    void harmlessIris();
    void harmlessLiterals_data();
    void harmlessLiterals();

private:
    QStringList channelUris() const;
    void checkRefusedEnclosures(const QList<FeedEnclosure> &enclosures, const QString &ownerUri);
    void checkRefusedMessages(const QList<FeedMessage> &messages, const QString &channelUri);
    void checkThatItWouldDelete(const QString &statement);
};

void TestHostileValues::init()
{
    StoreTestCase::init();
    store().update(channels);
}

QStringList TestHostileValues::channelUris() const
{
    QStringList uris = tracker()->allChannelUrls();
    uris.sort();
    return uris;
}

/// The store must refuse the statement and must not change.
void TestHostileValues::checkRefusedEnclosures(const QList<FeedEnclosure> &enclosures,
                                               const QString &ownerUri)
{
    const QStringList before = everythingIn(store());
    bool done = true;
    const QStringList journal = journalOf([&] { done = tracker()->addEnclosures(enclosures, ownerUri); });
    QVERIFY(!done);
    // The journal contains a lookup for each enclosure, the update and one trace.
    QCOMPARE(journal.size(), enclosures.size() + 2);
    QCOMPARE(journal.filter(QRegularExpression("^select: ")).size(), enclosures.size());
    const QString update = journal.at(enclosures.size());
    QVERIFY(update.startsWith("insert: "));
    QCOMPARE(journal.last(),
             criticalLine("addEnclosures", {"Query Execution failed", quoted(update.mid(8))}));
    QCOMPARE(everythingIn(store()), before);
    QCOMPARE(channelUris(), QStringList({"urn:c:1", "urn:c:2", "urn:c:3"}));
}

void TestHostileValues::checkRefusedMessages(const QList<FeedMessage> &messages, const QString &channelUri)
{
    const QStringList before = everythingIn(store());
    bool done = true;
    QString update;
    const QStringList journal = journalOf([&] {
        done = tracker()->addMessages(messages, channelUri);
        update = StatementGate::statements().constLast();
    });
    QVERIFY(!done);
    QCOMPARE(journal.filter(QRegularExpression("^(insert|critical)")), journal.mid(journal.size() - 2));
    QVERIFY(journal.at(journal.size() - 2).startsWith("insert: "));
    const auto unnumbered = [](QString text) {
        return patterned(text).replace(QRegularExpression("URN[0-9]+"), "URN");
    };
    QCOMPARE(unnumbered(journal.last()),
             unnumbered(criticalLine("addMessages", {"Failed: ", storeErrorOf(update)})));
    QCOMPARE(everythingIn(store()), before);
    QCOMPARE(channelUris(), QStringList({"urn:c:1", "urn:c:2", "urn:c:3"}));
}

/// Proves that the attack would work without the protection.
void TestHostileValues::checkThatItWouldDelete(const QString &statement)
{
    store().update(statement);
    QCOMPARE(channelUris(), QStringList());
}

void TestHostileValues::enclosures_data()
{
    QTest::addColumn<QList<FeedEnclosure>>("enclosures");
    QTest::addColumn<QString>("ownerUri");

    const auto row = [](const QString &name, const QList<FeedEnclosure> &list,
                        const QString &ownerUri = owner) {
        QTest::newRow(qPrintable(name)) << list << ownerUri;
    };
    const QString iriRest = " INSERT { <urn:y> a mfo:Enclosure ; mfo:remoteLink <urn:z";
    for (const auto &attack : iriAttacks("} ", iriRest)) {
        row("remote URL, " + attack.first, {withRemoteUrl(attack.second)});
        row("local URL, " + attack.first, {withLocalUrl(attack.second)});
        row("owner, " + attack.first, {harmless()}, attack.second);
        row("remote URL of the second, " + attack.first, {harmless(), withRemoteUrl(attack.second)});
        row("local URL of the first, " + attack.first, {withLocalUrl(attack.second), harmless()});
    }

    const QString literalRest = " INSERT { <urn:y> a mfo:Enclosure ; nie:mimeType \"x";
    const QList<QPair<QString, QString>> literalAttacks = {
        {"and a comment", "x\" } " + deletion + " #"},
        {"and an operation", "x\" } " + deletion + literalRest},
        {"after a line break", "x\" }\n" + deletion + "\n#"},
        {"typed", "x\"^^xsd:string } " + deletion + " #"},
        {"behind a property", "x\" ; nie:title \"t\" } " + deletion + " #"}};
    for (const auto &attack : literalAttacks) {
        row("MIME type, " + attack.first, {withLiterals(attack.second, "/icon.png")});
        row("type icon, " + attack.first, {withLiterals("audio/ogg", attack.second)});
        row("MIME type of the second, " + attack.first,
            {harmless(), withLiterals(attack.second, "/icon.png")});
        row("type icon of the first, " + attack.first,
            {withLiterals("audio/ogg", attack.second), harmless()});
    }

    const QString other = "http://example.org/2.ogg";
    row("backslash before the type icon", {withLiterals("x\\", " } " + deletion + " #")});
    row("three quotes from MIME type to type icon", {withLiterals("\"\"", "\"\" } " + deletion + " #")});
    row("comment from MIME type to type icon", {withLiterals("x\" } #", "\n" + deletion + " #")});
    row("comment from remote URL to local URL",
        {enclosure("urn:x> } #", "\n" + deletion + " #", "audio/ogg", "/icon.png")});
    row("comment from remote URL to MIME type",
        {enclosure("urn:x> } #", "file:///1", "\n" + deletion + " #", "/icon.png")});
    row("comment from MIME type to owner", {withLiterals("x\" } #", "/icon.png")}, "\n" + deletion + " #");
    row("backslash before the next enclosure",
        {withLiterals("audio/ogg", "x\\"), withLiterals(" } " + deletion + " #", "/icon.png", other)});
    row("three quotes before the next enclosure",
        {withLiterals("audio/ogg", "\"\""), withLiterals("\"\" } " + deletion + " #", "/icon.png", other)});
    row("comment before the next enclosure",
        {withLiterals("audio/ogg", "x\" } #"),
         withRemoteUrl("http://example.org/2.ogg\n" + deletion + " #")});
    row("comment from IRI to the next enclosure's literal",
        {withRemoteUrl("urn:x> } #"), withLiterals("audio/ogg", "\n" + deletion + " #", other)});
}

void TestHostileValues::enclosures()
{
    QFETCH(QList<FeedEnclosure>, enclosures);
    QFETCH(QString, ownerUri);
    checkRefusedEnclosures(enclosures, ownerUri);
    checkThatItWouldDelete(pasted(enclosures, ownerUri));
}

void TestHostileValues::ownerOfAStoredEnclosure_data()
{
    QTest::addColumn<QString>("ownerUri");
    for (const auto &attack : iriAttacks("} ", " INSERT { <urn:y> a mfo:Enclosure ; mfo:remoteLink <urn:z"))
        QTest::newRow(qPrintable(attack.first)) << attack.second;
}

void TestHostileValues::ownerOfAStoredEnclosure()
{
    QFETCH(QString, ownerUri);
    QVERIFY(tracker()->addEnclosures({harmless()}, owner));
    const QString uri = tracker()->enclosuresForMessage(owner).first().uri();
    checkRefusedEnclosures({harmless()}, ownerUri);
    checkThatItWouldDelete(S::enclosureLink(uri, ownerUri));
}

void TestHostileValues::channelOfANewMessage_data()
{
    QTest::addColumn<QString>("channelUri");
    for (const auto &attack : iriAttacks("} ", " INSERT { <urn:y> a mfo:FeedMessage ; nie:links <urn:z"))
        QTest::newRow(qPrintable(attack.first)) << attack.second;
}

void TestHostileValues::channelOfANewMessage()
{
    QFETCH(QString, channelUri);
    const FeedMessage value = message("http://example.org/1");
    checkRefusedMessages({value, message("http://example.org/2")}, channelUri);
    QString naive = S::messageInsert(value, QString(), channelUri, "urn:pasted");
    checkThatItWouldDelete(naive.replace("NOWZ", "2020-01-01T00:00:00Z"));
}

void TestHostileValues::channelOfAStoredMessage_data()
{
    QTest::addColumn<QString>("channelUri");
    const QString before = "} WHERE { ?u a mfo:FeedMessage } ";
    const QString after = " INSERT { ?u a mfo:FeedMessage ; nie:isLogicalPartOf <urn:c:1";
    for (const auto &attack : iriAttacks(before, after))
        QTest::newRow(qPrintable(attack.first)) << attack.second;
}

void TestHostileValues::channelOfAStoredMessage()
{
    QFETCH(QString, channelUri);
    const QString link = "http://example.org/1";
    store().update(insertMessageWith(link));
    checkRefusedMessages({message(link)}, channelUri);
    checkThatItWouldDelete(S::association(link, channelUri));
}

void TestHostileValues::linkOfAStoredMessage_data()
{
    QTest::addColumn<QString>("link");
    const QString start = "http://example.org/1> ";
    QTest::newRow("and a comment") << start + "} " + deletion + " #";
    QTest::newRow("and an operation")
        << start + "} " + deletion + " INSERT { <urn:y> a mfo:FeedMessage } WHERE { ?u nie:links <urn:z";
    QTest::newRow("after a line break") << start + "}\n" + deletion + "\n#";
    QTest::newRow("in another pattern") << start + ". ?u a mfo:FeedMessage } " + deletion + " #";
}

void TestHostileValues::linkOfAStoredMessage()
{
    QFETCH(QString, link);
    store().update(insertMessageWith(link));
    const FeedMessage value = message(link);
    QVERIFY(journalOf([&] {
                tracker()->addMessages({value}, "urn:c:1");
            }).contains(selectLine(S::messageLookup(lookedUp(link)))));
    checkRefusedMessages({value}, "urn:c:1");
    checkRefusedMessages({message("http://example.org/2"), value}, "urn:c:1");
    checkThatItWouldDelete(S::association(link, "urn:c:1"));
}

void TestHostileValues::linksOfTwoStoredMessages()
{
    const QString first = "http://example.org/1> } #";
    const QString second = "http://example.org/2\n" + deletion + " #";
    store().update(insertMessageWith(first));
    store().update(insertMessageWith(second));
    checkRefusedMessages({message(first), message(second)}, "urn:c:1");
    checkThatItWouldDelete(S::association(first, "urn:c:1") + S::association(second, "urn:c:1"));
}

void TestHostileValues::brokenIri_data()
{
    QTest::addColumn<QString>("character");
    for (const char *character :
         {" ", "\t", "\n", "\r", "\x01", "<", ">", "\"", "{", "}", "|", "\\", "^", "`"})
        QTest::newRow(qPrintable(quoted(character))) << QString(character);
    QTest::newRow("null") << QString(QChar(u'\0'));
}

void TestHostileValues::brokenIri()
{
    QFETCH(QString, character);
    const QString iri = "urn:a" + character + 'b';
    checkRefusedEnclosures({withRemoteUrl(iri)}, owner);
    checkRefusedEnclosures({harmless(), withLocalUrl(iri)}, owner);
    checkRefusedEnclosures({harmless()}, iri);
    checkRefusedMessages({message("http://example.org/1")}, iri);

    const QString link = "http://example.org/a" + character + 'b';
    QVERIFY(!lookedUp(link).isEmpty());
    store().update(insertMessageWith(link));
    checkRefusedMessages({message(link)}, "urn:c:1");
}

void TestHostileValues::brokenLiteral_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quote") << "audio/\"ogg\"";
    QTest::newRow("one quote") << "\"";
    QTest::newRow("backslash") << "audio\\ogg";
    QTest::newRow("escape") << "audio\\togg";
    QTest::newRow("backslash at the end") << "audio\\";
    QTest::newRow("escaped quote") << "\\\"";
    QTest::newRow("line feed") << "audio\nogg";
    QTest::newRow("carriage return") << "audio\rogg";
    QTest::newRow("null") << QString("audio") + QChar(u'\0') + "ogg";
}

void TestHostileValues::brokenLiteral()
{
    QFETCH(QString, text);
    checkRefusedEnclosures({withLiterals(text, "/icon.png")}, owner);
    checkRefusedEnclosures({harmless(), withLiterals("audio/ogg", text)}, owner);
}

void TestHostileValues::characterCodesDoNotEndAPlace_data()
{
    QTest::addColumn<QString>("greater");
    QTest::addColumn<QString>("quote");
    QTest::newRow("four digits") << "\\u003E"
                                 << "\\u0022";
    QTest::newRow("eight digits") << "\\U0000003E"
                                  << "\\U00000022";
}

void TestHostileValues::characterCodesDoNotEndAPlace()
{
    // A parser may decode these characters before it looks for the end of an IRI or literal.
    QFETCH(QString, greater);
    QFETCH(QString, quote);
    const QString iri = "urn:x" + greater + " } " + deletion + " #";
    const QString literal = 'x' + quote + " } " + deletion + " #";
    checkRefusedEnclosures({withRemoteUrl(iri)}, owner);
    checkRefusedEnclosures({withLocalUrl(iri)}, owner);
    checkRefusedEnclosures({harmless()}, iri);
    checkRefusedEnclosures({withLiterals(literal, literal)}, owner);
    checkRefusedMessages({message("http://example.org/1")}, iri);
    // The library itself must refuse them, without the parser of the store.
    QVERIFY(createAssociation(message("http://example.org/1" + greater), "urn:c:1").startsWith('"'));
    QVERIFY(createAssociation(message("http://example.org/1"), iri).startsWith('"'));
    QVERIFY(tracker()->addMessageQuery(message("http://example.org/1"), iri).startsWith('"'));
}

void TestHostileValues::textsReturnedToAHostAreRefusedToo_data()
{
    QTest::addColumn<QString>("statement");
    const FeedMessage innocent = message("http://example.org/1");
    const QString iri = "urn:x> } " + deletion + " #";
    QTest::newRow("link of an association") << createAssociation(message(iri), "urn:c:1");
    QTest::newRow("channel of an association") << createAssociation(innocent, iri);
    QTest::newRow("association before an operation")
        << createAssociation(message("urn:x> } #"), "urn:c:1") + '\n' + deletion;
}

void TestHostileValues::textsReturnedToAHostAreRefusedToo()
{
    QFETCH(QString, statement);
    const QStringList before = everythingIn(store());
    QVERIFY(storeErrorOf(statement) != debugText(QSparqlError()));
    QCOMPARE(everythingIn(store()), before);
}

void TestHostileValues::messagesOfAList_data()
{
    QTest::addColumn<QString>("attack");
    const QString rest = "nie:links ?l } WHERE {<urn:x> nie:links ?l } " + deletion;
    QTest::newRow("and a comment") << "urn:x> " + rest + " #";
    QTest::newRow("in a path") << "http://example.org/x> " + rest + " #";
    QTest::newRow("in a query") << "http://example.org/?q=x> " + rest + " #";
    QTest::newRow("in a fragment") << "http://example.org/#x> " + rest + " #";
    QTest::newRow("and an operation") << "urn:x> " + rest
            + " DELETE { ?c nie:title <urn:z> } WHERE { ?c "
              "nie:title <urn:y> } #";
}

void TestHostileValues::messagesOfAList()
{
    QFETCH(QString, attack);
    const QUrl uri(attack);
    QVERIFY(uri.isValid());
    const QStringList before = everythingIn(store());
    const QList<QList<QUrl>> lists = {{uri}, {QUrl("urn:m"), uri}, {uri, QUrl("urn:m")}};
    for (const QList<QUrl> &uris : lists) {
        QString update;
        const QStringList journal = journalOf([&] {
            tracker()->deleteMessages(uris);
            update = StatementGate::statements().constLast();
        });
        QCOMPARE(journal,
                 QStringList({deleteLine(update),
                              criticalLine("deleteMessages(QList<QUrl>)",
                                           {"Delete Query Failed", storeErrorOf(update)})}));
        QCOMPARE(everythingIn(store()), before);
    }
    checkThatItWouldDelete(S::messagePiece(attack));
}

void TestHostileValues::storedMessage()
{
    // Another program may have stored a message with such a URI.
    const QUrl uri("urn:x> nie:links ?l } WHERE {<urn:x> nie:links ?l } " + deletion + " #");
    store().update("INSERT { <" + QString::fromLatin1(uri.toEncoded()) + "> a mfo:FeedMessage }");
    const QStringList before = everythingIn(store());
    QVERIFY(tracker()->deleteMessages("urn:c:2"));
    tracker()->deleteMessage(QString::fromLatin1(uri.toEncoded()), "urn:c:2");
    QCOMPARE(everythingIn(store()), before);
}

void TestHostileValues::boundValuesAreHarmless_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("ends an IRI") << "urn:x> } " + deletion + " #";
    QTest::newRow("ends a condition") << "urn:x>)) } } " + deletion + " #";
    QTest::newRow("ends a literal") << "x\" } " + deletion + " #";
    QTest::newRow("ends a literal after a backslash") << "x\\\" } " + deletion + " #";
    QTest::newRow("line breaks") << "x\n} " + deletion + "\n#";
    QTest::newRow("backslash") << "x\\";
    QTest::newRow("placeholder") << "?:title ?:link";
}

void TestHostileValues::boundValuesAreHarmless()
{
    QFETCH(QString, value);
    const QStringList before = everythingIn(store());
    const QStringList journal = journalOf([&] {
        tracker()->channelForUri(value);
        tracker()->channelType(value);
        tracker()->messagesForChannel(value);
        tracker()->enclosuresForMessage(value);
        tracker()->enclosureForUri(value);
        tracker()->allMessageUrls(value);
        tracker()->messageLinksOfChannel(value);
        tracker()->latestPostPublishedTime(value);
        tracker()->deletableMessageCount(value);
        tracker()->deletableMessages(value, 10);
    });
    // The only failures are channels and enclosures that were not found.
    QCOMPARE(journal.filter("critical").size(), 3);
    QCOMPARE(journal.filter("critical").filter("Result not retrieved").size(), 3);
    QCOMPARE(everythingIn(store()), before);

    FeedEnclosure image = withRemoteUrl(value);
    tracker()->updateEnclosure(image);
    FeedChannel channel;
    channel.setLink("http://example.org/" + value);
    channel.setTitle(value);
    channel.setType(value);
    const QString uri = tracker()->addChannel(channel);
    QVERIFY(!uri.isEmpty());
    QCOMPARE(channelUris(), QStringList({"urn:c:1", "urn:c:2", "urn:c:3", uri}));
    QCOMPARE(tracker()->channelType(uri), value);
}

void TestHostileValues::boundValuesChangeOneChannelOnly_data() { boundValuesAreHarmless_data(); }

void TestHostileValues::boundValuesChangeOneChannelOnly()
{
    QFETCH(QString, value);
    const auto withoutTheFirst = [this] {
        QStringList lines = everythingIn(store());
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const QString &line) {
                                       return line.startsWith("urn:c:1 ") || line.startsWith("http:");
                                   }),
                    lines.end());
        return lines;
    };
    store().update("INSERT { <http://example.org/feed> a nie:DataObject ; "
                   "nie:created '2020-01-01T00:00:00Z'^^xsd:dateTime . "
                   "<urn:c:1> nie:links <http://example.org/feed> }");
    const QStringList before = everythingIn(store());
    const QStringList others = withoutTheFirst();

    FeedChannel unknown;
    unknown.setUri(value);
    QVERIFY(!tracker()->updateChannel(unknown));
    QVERIFY(!tracker()->editChannel(value, {{FeedTrackerSparql::TitleKey, value}}));
    QVERIFY(!tracker()->editChannel("urn:c:1", {{FeedTrackerSparql::LastModifiedTimeKey, value}}));
    QCOMPARE(everythingIn(store()), before);

    FeedChannel channel;
    channel.setUri("urn:c:1");
    channel.setTitle(value);
    channel.setLastModifiedTime(value);
    channel.setIcon(withLocalUrl(value));
    QVERIFY(tracker()->updateChannel(channel));
    QVERIFY(tracker()->editChannel(
        "urn:c:1",
        {{FeedTrackerSparql::TitleKey, value}, {FeedTrackerSparql::LinkKey, "http://example.org/" + value}}));
    QCOMPARE(store().texts("SELECT ?t { <urn:c:1> nie:title ?t }"), QStringList(value));
    QCOMPARE(store().count("<urn:c:1> nie:links ?anything"), 1);
    // Icons are pasted and have tests of their own.
    store().update("DELETE { ?e a rdfs:Resource } WHERE { ?e a mfo:Enclosure }");
    QCOMPARE(withoutTheFirst(), others);
}

void TestHostileValues::boundValuesDeleteNothing_data() { boundValuesAreHarmless_data(); }

void TestHostileValues::boundValuesDeleteNothing()
{
    QFETCH(QString, value);
    store().update("INSERT { <urn:e> a mfo:Enclosure ; mfo:remoteLink <urn:r> ; mfo:localLink <urn:l> ; "
                   "nie:isLogicalPartOf <urn:m> }");
    const QStringList before = everythingIn(store());
    tracker()->deleteChannel(value);
    tracker()->deleteMessage(value, "urn:c:1");
    tracker()->deleteMessage("urn:m", value);
    QVERIFY(tracker()->deleteMessages(value));
    tracker()->deleteEnclosures(value);
    tracker()->deleteEnclosures(QList<QUrl>({QUrl(value)}));
    tracker()->deleteChannelImage(value);
    tracker()->deleteChannelImageIfNotInUse(value, value);
    QCOMPARE(everythingIn(store()), before);
}

void TestHostileValues::imageOfADeletedChannelIsHarmless_data() { boundValuesAreHarmless_data(); }

void TestHostileValues::imageOfADeletedChannelIsHarmless()
{
    QFETCH(QString, value);
    const QStringList before = everythingIn(store());
    FeedChannel channel;
    channel.setLink("http://example.org/" + value);
    FeedEnclosure icon;
    icon.setLocalUrl(value);
    channel.setIcon(icon);
    const QString uri = tracker()->addChannel(channel);
    QVERIFY(!uri.isEmpty());
    tracker()->deleteChannel(uri);
    QCOMPARE(everythingIn(store()), before);
}

void TestHostileValues::linkOfANewMessageIsHarmless()
{
    const QString link = "http://example.org/1\" } " + deletion + " #";
    QVERIFY(tracker()->addMessages({message(link)}, "urn:c:1"));
    QCOMPARE(channelUris(), QStringList({"urn:c:1", "urn:c:2", "urn:c:3"}));
    QVERIFY(tracker()->messageLinksOfChannel("urn:c:1").contains(link));
}

void TestHostileValues::harmlessIris_data()
{
    QTest::addColumn<QString>("iri");
    QTest::newRow("escapes") << "http://example.org/%7Euser/%3E%22%5C?q=%7B%7D#%23";
    QTest::newRow("places of the template") << "http://example.org/%locLink/%type/%messageUri/%5/%";
    QTest::newRow("number sign") << "http://example.org/a#b#c";
    QTest::newRow("apostrophe and brackets") << "http://example.org/it's(1)[2]";
    QTest::newRow("placeholder") << "http://example.org/?:link&?_x&$_y";
    QTest::newRow("non-ASCII") << QString::fromUtf8("http://example.org/\u00e4\u4f60\U0001f4f0");
    QTest::newRow("relative") << "/home/me/file";
}

void TestHostileValues::harmlessIris()
{
    QFETCH(QString, iri);
    QVERIFY(tracker()->addEnclosures({withRemoteUrl(iri)}, iri));
    QCOMPARE(store().texts("SELECT ?r ?o { ?e mfo:remoteLink ?r ; nie:isLogicalPartOf ?o }"),
             QStringList(iri + ' ' + iri));
    QVERIFY(tracker()->addEnclosures({withLocalUrl(iri)}, owner));
    const QList<FeedEnclosure> stored = tracker()->enclosuresForMessage(owner);
    QCOMPARE(stored.size(), 1);
    QCOMPARE(stored.first().localUrl(), iri);
    QCOMPARE(channelUris().size(), 3);
}

void TestHostileValues::harmlessLiterals_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("escapes") << "%7E %22 %5C";
    QTest::newRow("places of the template") << "%5 %messageUri %image %type %id %size %enclosureUri %";
    QTest::newRow("apostrophe") << "it's";
    QTest::newRow("braces") << "} { DELETE {} WHERE {}";
    QTest::newRow("IRIs") << "<> <urn:x> > <";
    QTest::newRow("number sign") << "# comment";
    QTest::newRow("placeholder") << "?:link ?_x $_y";
    QTest::newRow("tab") << "a\tb";
    QTest::newRow("typed date") << "2020-01-01T10:00:00+02:00";
    QTest::newRow("non-ASCII") << QString::fromUtf8("\u00e4 \u4f60 \U0001f4f0 \u2028");
    QTest::newRow("blanks") << "  a  b  ";
    QTest::newRow("parameters") << "text/html; charset=utf-8; q=0.9";
}

void TestHostileValues::harmlessLiterals()
{
    QFETCH(QString, text);
    QVERIFY(tracker()->addEnclosures(
        {withLiterals(text, "/icon.png"), withLiterals("audio/ogg", text, "http://example.org/2.ogg")},
        owner));
    const auto rows = store().select("SELECT ?m ?i { ?e nie:mimeType ?m ; mfo:image ?i } ORDER BY ?i");
    QCOMPARE(rows.size(), size_t(2));
    QStringList found;
    for (const QSparqlResultRow &row : rows)
        found << row.value(0).toString() + " and " + row.value(1).toString();
    found.sort();
    QStringList expected = {text + " and /icon.png", "audio/ogg and " + text};
    expected.sort();
    QCOMPARE(found, expected);
    QCOMPARE(tracker()->enclosuresForMessage(owner).size(), 2);
    QCOMPARE(channelUris().size(), 3);
}

QTEST_GUILESS_MAIN(TestHostileValues)
#include "tst_hostilevalues.moc"
