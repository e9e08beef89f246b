// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statements.h"
#include "storetest.h"

#include <QtTest>

namespace S = Statements;

namespace {

const QString owner = "urn:m";

QString urlOf(int number) { return QString("http://example.org/%1.ogg").arg(number); }

FeedEnclosure enclosure(int number = 1)
{
    FeedEnclosure result("urn:ignored", urlOf(number), QString("file:///%1.ogg").arg(number), "media",
                         unsigned(4000 + number), FeedEnclosure::Essential, unsigned(number), true);
    result.setMimeType("audio/ogg");
    result.setTypeIcon("/icons/audio.png");
    return result;
}

/// Returns a stored enclosure, <urn:e:number>, without an owner.
QString insertStored(int number = 1)
{
    return QString("INSERT { <urn:e:%1> a mfo:Enclosure ; mfo:remoteLink <%2> ; nie:mimeType 'old/type' ; "
                   "nie:contentSize 1 ; mfo:image '/old.png' }")
        .arg(number)
        .arg(urlOf(number));
}

QStringList lookupThen(const QStringList &lines)
{
    return QStringList(selectLine(S::enclosureLookup(urlOf(1)))) + lines;
}

/// Returns the journal of updateEnclosure() for an enclosure with \a uri.
QStringList updateJournal(const FeedEnclosure &enclosure, const QString &uri)
{
    const QString lookup = S::enclosureToUpdate(enclosure.remoteUrl());
    const QString update = S::enclosureUpdate(enclosure, uri);
    return {debugLine("updateEnclosure", {quoted(lookup)}), selectLine(lookup),
            debugLine("updateEnclosure", {quoted(update)}), insertLine(update)};
}

} // namespace

class TestEnclosures : public StoreTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void newEnclosureIsInserted();
    void exactlyTheseStatementsAreWritten();
    void defaultsAreWrittenToo();
    void severalEnclosuresAreOneUpdate();
    void typesAreStored_data();
    void typesAreStored();
    void defaultFlagIsStored_data();
    void defaultFlagIsStored();
    void greatestLengthIsStored();

    void storedEnclosureIsOnlyLinked();
    void secondCallLinksAgain();
    void enclosureIsSharedByMessages();
    void urlFoundInAnotherSpellingIsLeftOut();
    void urlThatLookupEncodesIsNeverFound();
    void urlWithoutSchemeIsLookedUpAsItIs();
    void sameUrlTwiceInOneListIsStoredTwice();

    void enclosureWithoutRemoteUrlIsSkipped();
    void onlySkippedEnclosuresExecuteAnEmptyUpdate();
    void emptyListExecutesAnEmptyUpdate();
    void emptyOwnerIsNotRefused();
    void relativePathIsKept();

    void failure_data();
    void failure();
    void failingLookupSkipsThatEnclosureOnly_data();
    void failingLookupSkipsThatEnclosureOnly();
    void refusedUpdateWritesNothing();

    void updateReplacesThreeProperties();
    void updateLeavesTheRestAlone();
    void updateWithEmptyValues();
    void updateAddsMissingProperties();
    void updateWithTheSameValuesSucceeds();
    void updateKeepsOtherEnclosures();
    void greatestLengthIsUpdated();
    void updateTextsAreStoredAsTheyAre_data();
    void updateTextsAreStoredAsTheyAre();
    void updateWithoutRemoteUrlIsRefused();
    void updateOfAnUnknownUrlChangesNothing_data();
    void updateOfAnUnknownUrlChangesNothing();
    void updateBindsTheUrlEncoded();
    void updateFailure_data();
    void updateFailure();
};

void TestEnclosures::init()
{
    StoreTestCase::init();
    store().update("INSERT { <urn:m> a mfo:FeedMessage . <urn:m:2> a mfo:FeedMessage }");
}

void TestEnclosures::newEnclosureIsInserted()
{
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addEnclosures({enclosure()}, owner); }),
             lookupThen({insertLine(S::enclosureInsert(enclosure(), owner, "URN1"))}));
    QVERIFY(done);
    const QList<FeedEnclosure> stored = tracker()->enclosuresForMessage(owner);
    QCOMPARE(stored.size(), 1);
    QCOMPARE(patterned(stored.first().uri()), QString("URN1"));

    FeedEnclosure expected = enclosure();
    expected.setUri(stored.first().uri());
    expected.setsourceNamespace(QString());
    QCOMPARE(debugText(tracker()->enclosureForUri(expected.uri())), debugText(expected));
}

void TestEnclosures::exactlyTheseStatementsAreWritten()
{
    const QStringList before = everythingIn(store());
    tracker()->addEnclosures({enclosure()}, owner);
    QStringList added = everythingIn(store());
    for (const QString &line : before)
        added.removeOne(line);
    QCOMPARE(patterned(added.join('\n')).split('\n'),
             QStringList({"URN1 a mfo:Enclosure", "URN1 mfo:groupDefault true",
                          "URN1 mfo:image /icons/audio.png", "URN1 mfo:localLink file:///1.ogg",
                          "URN1 mfo:optional false", "URN1 mfo:remoteLink http://example.org/1.ogg",
                          "URN1 nie:contentSize 4001", "URN1 nie:identifier 1",
                          "URN1 nie:isLogicalPartOf urn:m", "URN1 nie:mimeType audio/ogg"}));
}

void TestEnclosures::defaultsAreWrittenToo()
{
    FeedEnclosure bare;
    bare.setRemoteUrl(urlOf(1));
    QCOMPARE(
        journalOf([&] { tracker()->addEnclosures({bare}, owner); }),
        lookupThen({insertLine("INSERT {<URN1> a mfo:Enclosure; mfo:remoteLink <http://example.org/1.ogg> "
                               "; mfo:localLink <>; mfo:optional true; nie:contentSize 0; "
                               "nie:mimeType \"\"; nie:identifier 0;mfo:groupDefault false; "
                               "mfo:image \"\"; nie:isLogicalPartOf <urn:m> } ")}));
    const QList<FeedEnclosure> stored = tracker()->enclosuresForMessage(owner);
    QCOMPARE(stored.size(), 1);
    QCOMPARE(stored.first().localUrl(), QString());
}

void TestEnclosures::severalEnclosuresAreOneUpdate()
{
    store().update(insertStored(2));
    QCOMPARE(journalOf([&] {
                 tracker()->addEnclosures({enclosure(1), enclosure(2), enclosure(3)}, owner);
             }),
             QStringList({selectLine(S::enclosureLookup(urlOf(1))), selectLine(S::enclosureLookup(urlOf(2))),
                          selectLine(S::enclosureLookup(urlOf(3))),
                          insertLine(S::enclosureInsert(enclosure(1), owner, "URN1")
                                     + S::enclosureLink("urn:e:2", owner)
                                     + S::enclosureInsert(enclosure(3), owner, "URN2"))}));
    QCOMPARE(store().count("?anything nie:isLogicalPartOf <urn:m>"), 3);
}

void TestEnclosures::typesAreStored_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("optional");
    QTest::newRow("essential") << 1 << "false";
    QTest::newRow("optional") << 2 << "true";
    QTest::newRow("none") << 0 << "true";
    QTest::newRow("unknown") << 7 << "true";
    QTest::newRow("negative") << -1 << "true";
}

void TestEnclosures::typesAreStored()
{
    QFETCH(int, type);
    QFETCH(QString, optional);
    FeedEnclosure value = enclosure();
    value.setType(FeedEnclosure::Type(type));
    tracker()->addEnclosures({value}, owner);
    QCOMPARE(store().texts("SELECT ?o { ?e mfo:optional ?o }"), QStringList(optional));
    QCOMPARE(int(tracker()->enclosuresForMessage(owner).first().type()), type == 1 ? 1 : 2);
}

void TestEnclosures::defaultFlagIsStored_data()
{
    QTest::addColumn<bool>("isDefault");
    QTest::newRow("set") << true;
    QTest::newRow("not set") << false;
}

void TestEnclosures::defaultFlagIsStored()
{
    QFETCH(bool, isDefault);
    FeedEnclosure value = enclosure();
    value.setDefault(isDefault);
    tracker()->addEnclosures({value}, owner);
    QCOMPARE(tracker()->enclosuresForMessage(owner).first().isDefault(), isDefault);
}

void TestEnclosures::greatestLengthIsStored()
{
    FeedEnclosure value = enclosure();
    value.setLength(4294967295u);
    value.setGroupId(4294967295u);
    QVERIFY(tracker()->addEnclosures({value}, owner));
    QCOMPARE(store().texts("SELECT ?s ?i { ?e nie:contentSize ?s ; nie:identifier ?i }"),
             QStringList("4294967295 4294967295"));
    // The numbers are read as signed ones and are too large.
    QCOMPARE(tracker()->enclosuresForMessage(owner).first().length(), 0u);
    QCOMPARE(tracker()->enclosuresForMessage(owner).first().groupId(), 0u);
}

void TestEnclosures::storedEnclosureIsOnlyLinked()
{
    store().update(insertStored());
    const QStringList before = propertiesOf(store(), "urn:e:1");
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addEnclosures({enclosure()}, owner); }),
             lookupThen({insertLine(S::enclosureLink("urn:e:1", owner))}));
    QVERIFY(done);
    QStringList after = propertiesOf(store(), "urn:e:1");
    QVERIFY(after.removeOne("nie:isLogicalPartOf urn:m"));
    QCOMPARE(after, before);
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 1);
}

void TestEnclosures::secondCallLinksAgain()
{
    QVERIFY(tracker()->addEnclosures({enclosure()}, owner));
    const QString uri = tracker()->enclosuresForMessage(owner).first().uri();
    const QStringList before = everythingIn(store());
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addEnclosures({enclosure()}, owner); }),
             lookupThen({insertLine(S::enclosureLink(patterned(uri), owner))}));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestEnclosures::enclosureIsSharedByMessages()
{
    QVERIFY(tracker()->addEnclosures({enclosure()}, owner));
    QVERIFY(tracker()->addEnclosures({enclosure()}, "urn:m:2"));
    QCOMPARE(store().count("?anything a mfo:Enclosure"), 1);
    const QString uri = tracker()->enclosuresForMessage(owner).first().uri();
    QCOMPARE(tracker()->enclosuresForMessage("urn:m:2").first().uri(), uri);
    QCOMPARE(propertiesOf(store(), uri).filter("nie:isLogicalPartOf"),
             QStringList({"nie:isLogicalPartOf urn:m", "nie:isLogicalPartOf urn:m:2"}));
}

void TestEnclosures::urlFoundInAnotherSpellingIsLeftOut()
{
    store().update(insertStored());
    const QStringList before = everythingIn(store());
    FeedEnclosure value = enclosure();
    value.setRemoteUrl("HTTP://Example.ORG/1.ogg");
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addEnclosures({value}, owner); }),
             lookupThen({insertLine("")}));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestEnclosures::urlThatLookupEncodesIsNeverFound()
{
    FeedEnclosure value = enclosure();
    value.setRemoteUrl(QString::fromUtf8("http://example.org/\u00e4.ogg"));
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(journalOf([&] { tracker()->addEnclosures({value}, owner); }),
                 QStringList({selectLine(S::enclosureLookup("http://example.org/%C3%A4.ogg")),
                              insertLine(S::enclosureInsert(value, owner, "URN1"))}));
    }
    QCOMPARE(tracker()->enclosuresForMessage(owner).size(), 2);
    QCOMPARE(tracker()->enclosuresForMessage(owner).first().remoteUrl(), value.remoteUrl());
}

void TestEnclosures::urlWithoutSchemeIsLookedUpAsItIs()
{
    FeedEnclosure value = enclosure();
    value.setRemoteUrl("example.org/1.ogg");
    QCOMPARE(journalOf([&] { tracker()->addEnclosures({value}, owner); }),
             QStringList({selectLine(S::enclosureLookup("example.org/1.ogg")),
                          insertLine(S::enclosureInsert(value, owner, "URN1"))}));
    // Links of channels and messages would not be found again.
    const QString uri = tracker()->enclosuresForMessage(owner).first().uri();
    QCOMPARE(journalOf([&] { tracker()->addEnclosures({value}, owner); }).last(),
             insertLine(S::enclosureLink(patterned(uri), owner)));
    QCOMPARE(journalOf([&] { tracker()->updateEnclosure(value); }), updateJournal(value, patterned(uri)));
}

void TestEnclosures::sameUrlTwiceInOneListIsStoredTwice()
{
    QCOMPARE(journalOf([&] {
                 tracker()->addEnclosures({enclosure(), enclosure()}, owner);
             }).last(),
             insertLine(S::enclosureInsert(enclosure(), owner, "URN1")
                        + S::enclosureInsert(enclosure(), owner, "URN2")));
    QCOMPARE(tracker()->enclosuresForMessage(owner).size(), 2);
}

void TestEnclosures::enclosureWithoutRemoteUrlIsSkipped()
{
    FeedEnclosure nameless = enclosure(2);
    nameless.setRemoteUrl(QString());
    bool done = false;
    QCOMPARE(journalOf([&] {
                 done = tracker()->addEnclosures({nameless, enclosure(1), nameless}, owner);
             }),
             QStringList({criticalLine("addEnclosures", {"remoteLink empty for message ", quoted(owner)}),
                          selectLine(S::enclosureLookup(urlOf(1))),
                          criticalLine("addEnclosures", {"remoteLink empty for message ", quoted(owner)}),
                          insertLine(S::enclosureInsert(enclosure(1), owner, "URN1"))}));
    QVERIFY(done);
    QCOMPARE(tracker()->enclosuresForMessage(owner).size(), 1);
}

void TestEnclosures::onlySkippedEnclosuresExecuteAnEmptyUpdate()
{
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addEnclosures({FeedEnclosure()}, ""); }),
             QStringList(
                 {criticalLine("addEnclosures", {"remoteLink empty for message ", "\"\""}), insertLine("")}));
    QVERIFY(done);
}

void TestEnclosures::emptyListExecutesAnEmptyUpdate()
{
    const QStringList before = everythingIn(store());
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addEnclosures({}, owner); }), QStringList(insertLine("")));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestEnclosures::emptyOwnerIsNotRefused()
{
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->addEnclosures({enclosure()}, ""); }),
             lookupThen({insertLine(S::enclosureInsert(enclosure(), "", "URN1"))}));
    QVERIFY(done);
    QCOMPARE(tracker()->enclosuresForMessage("").size(), 1);
}

void TestEnclosures::relativePathIsKept()
{
    FeedEnclosure value = enclosure();
    value.setLocalUrl("/home/me/1.ogg");
    QVERIFY(tracker()->addEnclosures({value}, owner));
    QCOMPARE(tracker()->enclosuresForMessage(owner).first().localUrl(), QString("/home/me/1.ogg"));
}

void TestEnclosures::failure_data()
{
    addFailureColumns();
    const auto row = [=](const QString &name, const Interventions &interventions,
                         const QStringList &journal) {
        addFailureRow(
            name, [=] { return !tracker()->addEnclosures({enclosure()}, owner); }, interventions, journal);
    };
    const QString update = S::enclosureInsert(enclosure(), owner, "URN1");
    row("update, no result", {{1, StatementGate::NoResult}},
        lookupThen({insertLine(update), criticalLine("addEnclosures", {"Query Execution failed"})}));
    row("update, refused", {{1, StatementGate::Refuse}},
        lookupThen(
            {insertLine(update), criticalLine("addEnclosures", {"Query Execution failed", quoted(update)})}));
    row("lookup and empty update, refused", {{0, StatementGate::Refuse}, {1, StatementGate::Refuse}},
        lookupThen(
            {criticalLine("addEnclosures", {"Query Execution Failed", quoted(S::enclosureLookup(urlOf(1)))}),
             insertLine(""), criticalLine("addEnclosures", {"Query Execution failed", "\"\""})}));
    row("lookup and empty update, no result", {{0, StatementGate::NoResult}, {1, StatementGate::NoResult}},
        lookupThen({criticalLine("addEnclosures", {"Query Execution failed"}), insertLine(""),
                    criticalLine("addEnclosures", {"Query Execution failed"})}));
}

void TestEnclosures::failure()
{
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
}

void TestEnclosures::failingLookupSkipsThatEnclosureOnly_data()
{
    QTest::addColumn<int>("verdict");
    QTest::addColumn<QString>("trace");
    QTest::newRow("no result") << int(StatementGate::NoResult)
                               << criticalLine("addEnclosures", {"Query Execution failed"});
    QTest::newRow("refused") << int(StatementGate::Refuse)
                             << criticalLine(
                                    "addEnclosures",
                                    {"Query Execution Failed", quoted(S::enclosureLookup(urlOf(2)))});
}

void TestEnclosures::failingLookupSkipsThatEnclosureOnly()
{
    QFETCH(int, verdict);
    QFETCH(QString, trace);
    bool done = false;
    QCOMPARE(journalOf(
                 [&] {
                     done = tracker()->addEnclosures({enclosure(1), enclosure(2), enclosure(3)}, owner);
                 },
                 {{1, StatementGate::Verdict(verdict)}}),
             QStringList({selectLine(S::enclosureLookup(urlOf(1))), selectLine(S::enclosureLookup(urlOf(2))),
                          trace, selectLine(S::enclosureLookup(urlOf(3))),
                          insertLine(S::enclosureInsert(enclosure(1), owner, "URN1")
                                     + S::enclosureInsert(enclosure(3), owner, "URN2"))}));
    QVERIFY(done);
    QCOMPARE(tracker()->enclosuresForMessage(owner).size(), 2);
}

void TestEnclosures::refusedUpdateWritesNothing()
{
    // The store refuses one value of one enclosure.
    FeedEnclosure bad = enclosure(2);
    bad.setLocalUrl("file:///a b.ogg");
    const QStringList before = everythingIn(store());
    const QString update =
        S::enclosureInsert(enclosure(1), owner, "URN1") + S::enclosureInsert(bad, owner, "URN2");
    bool done = true;
    QCOMPARE(journalOf([&] {
                 done = tracker()->addEnclosures({enclosure(1), bad}, owner);
             }),
             QStringList({selectLine(S::enclosureLookup(urlOf(1))), selectLine(S::enclosureLookup(urlOf(2))),
                          insertLine(update),
                          criticalLine("addEnclosures", {"Query Execution failed", quoted(update)})}));
    QVERIFY(!done);
    QCOMPARE(everythingIn(store()), before);
}

void TestEnclosures::updateReplacesThreeProperties()
{
    store().update(insertStored());
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->updateEnclosure(enclosure()); }),
             updateJournal(enclosure(), "urn:e:1"));
    QVERIFY(done);
    QCOMPARE(propertiesOf(store(), "urn:e:1"),
             QStringList({"a mfo:Enclosure", "mfo:image /icons/audio.png",
                          "mfo:remoteLink http://example.org/1.ogg", "nie:contentSize 4001",
                          "nie:mimeType audio/ogg"}));
}

void TestEnclosures::updateLeavesTheRestAlone()
{
    FeedEnclosure stored = enclosure();
    stored.setMimeType("old/type");
    QVERIFY(tracker()->addEnclosures({stored}, owner));
    const QString uri = tracker()->enclosuresForMessage(owner).first().uri();
    FeedEnclosure changed("urn:other", urlOf(1), "file:///other", "other", 5, FeedEnclosure::Optional, 77,
                          false);
    changed.setMimeType("new/type");
    changed.setTypeIcon("/new.png");
    QVERIFY(tracker()->updateEnclosure(changed));

    FeedEnclosure expected = enclosure();
    expected.setUri(uri);
    expected.setsourceNamespace(QString());
    expected.setLength(5);
    expected.setMimeType("new/type");
    expected.setTypeIcon("/new.png");
    QCOMPARE(debugText(tracker()->enclosureForUri(uri)), debugText(expected));
}

void TestEnclosures::updateWithEmptyValues()
{
    store().update(insertStored());
    FeedEnclosure bare;
    bare.setRemoteUrl(urlOf(1));
    QCOMPARE(journalOf([&] { tracker()->updateEnclosure(bare); }), updateJournal(bare, "urn:e:1"));
    QCOMPARE(propertiesOf(store(), "urn:e:1"),
             QStringList({"a mfo:Enclosure", "mfo:image ", "mfo:remoteLink http://example.org/1.ogg",
                          "nie:contentSize 0", "nie:mimeType "}));
}

void TestEnclosures::updateAddsMissingProperties()
{
    store().update("INSERT { <urn:e:1> a mfo:Enclosure ; mfo:remoteLink <http://example.org/1.ogg> }");
    QVERIFY(tracker()->updateEnclosure(enclosure()));
    QCOMPARE(propertiesOf(store(), "urn:e:1").filter("nie:mimeType"), QStringList("nie:mimeType audio/ogg"));
}

void TestEnclosures::updateWithTheSameValuesSucceeds()
{
    store().update(insertStored());
    QVERIFY(tracker()->updateEnclosure(enclosure()));
    const QStringList before = everythingIn(store());
    QCOMPARE(journalOf([&] { tracker()->updateEnclosure(enclosure()); }),
             updateJournal(enclosure(), "urn:e:1"));
    QCOMPARE(everythingIn(store()), before);
}

void TestEnclosures::updateKeepsOtherEnclosures()
{
    store().update(insertStored(1));
    store().update(insertStored(2));
    const QStringList before = propertiesOf(store(), "urn:e:2");
    QVERIFY(tracker()->updateEnclosure(enclosure(1)));
    QCOMPARE(propertiesOf(store(), "urn:e:2"), before);
}

void TestEnclosures::greatestLengthIsUpdated()
{
    store().update(insertStored());
    FeedEnclosure value = enclosure();
    value.setLength(4294967295u);
    QCOMPARE(journalOf([&] { tracker()->updateEnclosure(value); }), updateJournal(value, "urn:e:1"));
    QVERIFY(propertiesOf(store(), "urn:e:1").contains("nie:contentSize 4294967295"));
}

void TestEnclosures::updateTextsAreStoredAsTheyAre_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quotes") << QString("\" } DELETE { ?c a rdfs:Resource } WHERE { ?c a mfo:Enclosure } #");
    QTest::newRow("backslash") << QString("a\\");
    QTest::newRow("line break") << QString("a\nb");
    QTest::newRow("placeholder") << QString("?:icon ?:mime");
    QTest::newRow("non-ASCII") << QString::fromUtf8("\u00e4\u4f60");
}

void TestEnclosures::updateTextsAreStoredAsTheyAre()
{
    QFETCH(QString, text);
    store().update(insertStored());
    FeedEnclosure value = enclosure();
    value.setMimeType(text);
    value.setTypeIcon(text);
    QVERIFY(tracker()->updateEnclosure(value));
    const FeedEnclosure stored = tracker()->enclosureForUri("urn:e:1");
    QCOMPARE(stored.mimeType(), text);
    QCOMPARE(stored.typeIcon(), text);
    QCOMPARE(stored.length(), 4001u);
}

void TestEnclosures::updateWithoutRemoteUrlIsRefused()
{
    bool done = true;
    QCOMPARE(journalOf([&] { done = tracker()->updateEnclosure(FeedEnclosure()); }),
             QStringList(criticalLine("updateEnclosure", {"mfo:remoteLink is empty"})));
    QVERIFY(!done);
}

void TestEnclosures::updateOfAnUnknownUrlChangesNothing_data()
{
    QTest::addColumn<Operation>("preparation");
    const auto row = [](const char *name, const Operation &preparation) {
        QTest::newRow(name) << preparation;
    };
    row("another one is stored", [=] { return tracker()->addEnclosures({enclosure(2)}, owner); });
    row("the owner of another one is empty",
        [=] { return tracker()->addEnclosures({enclosure(2)}, QString()); });
    row("the local URL of another one is empty", [=] {
        FeedEnclosure other = enclosure(2);
        other.setLocalUrl(QString());
        return tracker()->addEnclosures({other}, owner);
    });
    row("the link of a channel is empty", [=] { return !tracker()->addChannel(FeedChannel()).isEmpty(); });
}

void TestEnclosures::updateOfAnUnknownUrlChangesNothing()
{
    QFETCH(Operation, preparation);
    QVERIFY(preparation());
    const QStringList before = everythingIn(store());
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->updateEnclosure(enclosure(1)); }),
             updateJournal(enclosure(1), ""));
    QVERIFY(done);
    QCOMPARE(everythingIn(store()), before);
}

void TestEnclosures::updateBindsTheUrlEncoded()
{
    store().update("INSERT { <urn:e:1> a mfo:Enclosure ; mfo:remoteLink <http://example.org/a%20b> }");
    FeedEnclosure value = enclosure();
    value.setRemoteUrl("http://example.org/a b");
    bool done = false;
    QCOMPARE(journalOf([&] { done = tracker()->updateEnclosure(value); }).at(1),
             selectLine(S::enclosureToUpdate("http://example.org/a%20b")));
    QVERIFY(done);
    QCOMPARE(tracker()->enclosureForUri("urn:e:1").mimeType(), QString("audio/ogg"));
}

void TestEnclosures::updateFailure_data()
{
    addFailureColumns();
    const auto row = [=](const QString &name, const Intervention &intervention, const QStringList &journal) {
        addFailureRow(
            name, [=] { return !tracker()->updateEnclosure(enclosure()); }, {intervention}, journal);
    };
    const QStringList all = updateJournal(enclosure(), "urn:e:1");
    row("lookup, no result", {0, StatementGate::NoResult},
        all.mid(0, 2) + QStringList(criticalLine("updateEnclosure", {"Query Execution failed"})));
    row("lookup, refused", {0, StatementGate::Refuse},
        all.mid(0, 2)
            + QStringList(criticalLine("updateEnclosure",
                                       {"Invalid mfo:remoteLink", quoted(S::enclosureToUpdate(urlOf(1)))})));
    row("update, no result", {1, StatementGate::NoResult},
        all + QStringList(criticalLine("updateEnclosure", {"Query Execution failed"})));
    row("update, refused", {1, StatementGate::Refuse},
        all
            + QStringList(criticalLine(
                "updateEnclosure",
                {"mfo:Enclosure updation failed", quoted(S::enclosureUpdate(enclosure(), "urn:e:1"))})));
}

void TestEnclosures::updateFailure()
{
    store().update(insertStored());
    const QStringList before = everythingIn(store());
    checkFailingOperation();
    QCOMPARE(everythingIn(store()), before);
}

QTEST_GUILESS_MAIN(TestEnclosures)
#include "tst_enclosures.moc"
