// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/downloadfolder.h>
#include <TidelReader/enclosurequeue.h>
#include <TidelReader/storecheck.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Tidel;

/// What a check finds in a store, and what a repair makes of it.
class TestStoreCheck : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void soundStore();
    void eachKindOnce();
    void sameMessages();
    void olderMessageTakesWhatItLacks();
    void sameEnclosures();
    void sameChannels();
    void missingValues();
    void severalValues();
    void orphans();
    void missingFiles();
    void filesOfTheDownloadFolder();
    void failures();

private:
    /// The places of a kind.
    QStringList found(Finding::Kind kind) const;
    void repair();
    QString writeFile(const QString &name, int ageInDays = 0) const;

    QTemporaryDir m_home;
    StepLog m_steps;
};

void TestStoreCheck::init()
{
    qputenv("HOME", m_home.path().toLocal8Bit());
    ReaderTestCase::init();
    QDir(DownloadFolder::path()).removeRecursively();
    m_steps = StepLog();
    addChannel("news");
    addChannel("radio");
    addMessages({"a", "b"}, "news", 1);
    addEnclosure("a.ogg", messageUri("a"));
    store().update(
        "DELETE { ?e mfo:localLink ?l } INSERT { ?e mfo:localLink <> } WHERE { ?e mfo:localLink ?l }");
}

QStringList TestStoreCheck::found(Finding::Kind kind) const
{
    const auto findings = StoreCheck(reader()).find();
    if (!findings)
        return {findings.error().text()};
    QStringList places;
    for (const Finding &finding : *findings) {
        if (finding.kind == kind)
            places = finding.places;
        else if (!finding.places.isEmpty())
            places.append("other: " + finding.places.join(' '));
    }
    return places;
}

/// Repairs the store, after which nothing is found that can be mended.
void TestStoreCheck::repair()
{
    StoreCheck check(reader());
    const auto before = check.find();
    VERIFY_OK(before);
    VERIFY_OK(check.repair(*before, m_steps.listener()));
    const auto after = check.find();
    VERIFY_OK(after);
    for (const Finding &finding : *after)
        QVERIFY2(finding.places.isEmpty() || !finding.isMendable(), qPrintable(finding.places.join(' ')));
}

QString TestStoreCheck::writeFile(const QString &name, int ageInDays) const
{
    QDir().mkpath(DownloadFolder::path());
    QFile file(DownloadFolder::path() + '/' + name);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("could not write a file");
    file.write("x");
    file.flush();
    file.setFileTime(QDateTime::currentDateTime().addDays(-ageInDays).addSecs(-60),
                     QFileDevice::FileModificationTime);
    return file.fileName();
}

void TestStoreCheck::soundStore()
{
    const QStringList before = contents();
    for (int kind = Finding::SameChannels; kind <= Finding::UnknownFiles; ++kind)
        QCOMPARE(found(Finding::Kind(kind)), QStringList());
    repair();
    QCOMPARE(contents(), before);
}

void TestStoreCheck::eachKindOnce()
{
    QStringList steps;
    const auto findings = StoreCheck(reader()).find(
        [&](int done, int all) { steps.append(QString("%1/%2").arg(done).arg(all)); });
    VERIFY_OK(findings);
    QCOMPARE(findings->size(), 10);
    QCOMPARE(steps.size(), 10);
    QCOMPARE(steps.first(), QString("0/10"));
    for (int i = 0; i < findings->size(); ++i)
        QCOMPARE(int(findings->at(i).kind), i);
}

void TestStoreCheck::sameMessages()
{
    store().update(
        "INSERT { <urn:message:second> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:radio> ; "
        "nie:links <https://example.org/a> ; nie:title 'Other' ; nie:description '' ; nie:subject '' ; "
        "mfo:downloadedTime '2026-11-21T10:00:00Z' ; tidel:itemKey 'key' ; "
        "nao:hasTag nao:predefined-tag-favorite , <urn:tag> } INSERT { <urn:tag> a nao:Tag }");
    addEnclosure("b.ogg", "urn:message:second");
    store().update("DELETE { ?e mfo:localLink ?l } INSERT { ?e mfo:localLink <> } "
                   "WHERE { ?e mfo:localLink ?l ; mfo:remoteLink <https://example.org/b.ogg> }");
    QCOMPARE(found(Finding::SameMessages), QStringList(linkOf("a")));
    repair();
    QCOMPARE(store().texts("SELECT ?m { ?m nie:links <https://example.org/a> }"),
             QStringList(messageUri("a")));
    QCOMPARE(store().texts("SELECT ?t { <urn:message:a> nie:title ?t }"), QStringList("Title of a"));
    QCOMPARE(store().count("<urn:message:a> nie:isLogicalPartOf ?c"), 2);
    QCOMPARE(store().count("<urn:message:a> nao:hasTag ?t"), 2);
    QCOMPARE(store().count("<urn:message:a> nao:hasTag nao:predefined-tag-favorite"), 1);
    QCOMPARE(store().count("<urn:message:a> tidel:itemKey 'key'"), 1);
    QCOMPARE(store().count("?e a mfo:Enclosure ; nie:isLogicalPartOf <urn:message:a>"), 2);
    QCOMPARE(store().count("<urn:message:second> ?p ?v"), 0);
}

void TestStoreCheck::olderMessageTakesWhatItLacks()
{
    store().update(
        "DELETE { <urn:message:a> nie:contentCreated ?t ; nie:description ?d } "
        "WHERE { <urn:message:a> nie:contentCreated ?t ; nie:description ?d } "
        "INSERT { <urn:message:a> nie:description '' } "
        "INSERT { <urn:message:second> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:news> ; "
        "nie:links <https://example.org/a> ; nie:title '' ; nie:description 'Text \"of\" second' ; "
        "nie:subject 'Other' ; mfo:downloadedTime '2026-11-21T10:00:00Z' ; "
        "nie:contentCreated '2026-11-02T12:00:00Z' ; tidel:digest 'd' ; tidel:language 'pt-BR' ; "
        "tidel:category 'One' , 'Two' }");
    repair();
    QCOMPARE(store().texts("SELECT ?t ?d ?s ?l ?g { <urn:message:a> nie:title ?t ; nie:description ?d ; "
                           "nie:subject ?s ; tidel:language ?l ; tidel:digest ?g }"),
             QStringList("Title of a Text \"of\" second Summary of a pt-BR d"));
    QCOMPARE(store().count("<urn:message:a> tidel:category ?c"), 2);
    QCOMPARE(store().count("<urn:message:a> mfo:downloadedTime ?t"), 1);
    QCOMPARE(store().texts("SELECT ?t { <urn:message:a> nie:contentCreated ?t }").value(0).left(16),
             QString("2026-11-02T12:00"));
}

void TestStoreCheck::sameEnclosures()
{
    store().update(
        "INSERT { <urn:enclosure:second> a mfo:Enclosure ; mfo:remoteLink <https://example.org/a.ogg> ; "
        "mfo:localLink <file:///elsewhere/a.ogg> ; nie:contentSize 99 ; "
        "nie:isLogicalPartOf <urn:message:b> }");
    QCOMPARE(found(Finding::SameEnclosures), QStringList(linkOf("a.ogg")));
    repair();
    QCOMPARE(store().texts("SELECT ?e ?l ?n { ?e mfo:remoteLink <https://example.org/a.ogg> ; "
                           "mfo:localLink ?l ; nie:contentSize ?n }"),
             QStringList(enclosureUri("a.ogg") + " file:///elsewhere/a.ogg 77"));
    QCOMPARE(store().count("<urn:enclosure:a.ogg> nie:isLogicalPartOf ?m"), 2);
}

void TestStoreCheck::sameChannels()
{
    store().update("INSERT { <urn:channel:second> a mfo:FeedChannel ; nie:links <https://example.org/news> ; "
                   "nie:title 'Other' ; nie:characterSet 'rss' ; tidel:droppedLink 'x' }");
    addMessages({"c"}, "second");
    addEnclosure("icon.png", "urn:channel:second");
    store().update(
        "DELETE { ?e mfo:localLink ?l } INSERT { ?e mfo:localLink <> } WHERE { ?e mfo:localLink ?l }");
    QCOMPARE(found(Finding::SameChannels), QStringList(linkOf("news")));
    repair();
    QCOMPARE(store().texts("SELECT ?c ?t { ?c nie:links <https://example.org/news> ; nie:title ?t }"),
             QStringList(channelUri("news") + " news"));
    QCOMPARE(messagesIn("news"), QStringList({"a", "b", "c"}));
    QCOMPARE(store().count("<urn:enclosure:icon.png> nie:isLogicalPartOf <urn:channel:news>"), 1);
    QCOMPARE(droppedFrom("news"), QStringList("x"));
}

void TestStoreCheck::missingValues()
{
    store().update("INSERT { <urn:bare> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:news> . "
                   "<urn:channel:bare> a mfo:FeedChannel }");
    QCOMPARE(sorted(found(Finding::MissingValues)), QStringList({"urn:bare", "urn:channel:bare"}));
    repair();
    QCOMPARE(store().count("<urn:bare> nie:title '' ; nie:description '' ; nie:subject '' ; nie:links ?l ; "
                           "mfo:downloadedTime ?t"),
             1);
    QCOMPARE(store().count("<urn:channel:bare> nie:title ?t ; nie:links ?l . ?l nie:created ?time "
                           "FILTER(?t = STR(?l))"),
             1);
    QCOMPARE(store().texts("SELECT ?t { <urn:message:a> nie:title ?t }"), QStringList("Title of a"));
}

void TestStoreCheck::severalValues()
{
    store().update(
        "INSERT { <urn:message:b> nie:title 'Another' } INSERT { <urn:channel:news> nie:title 'Same' }");
    QCOMPARE(sorted(found(Finding::SeveralValues)), QStringList({channelUri("news"), messageUri("b")}));
    repair();
    QCOMPARE(store().count("<urn:message:b> nie:title ?t"), 2);
}

void TestStoreCheck::orphans()
{
    const QStringList before = contents();
    addMessages({"lost"}, "gone");
    addEnclosure("lost.ogg", messageUri("lost"));
    QCOMPARE(found(Finding::OrphanMessages), QStringList(messageUri("lost")));
    store().update("DELETE { <urn:message:lost> a rdfs:Resource }");
    QCOMPARE(found(Finding::OrphanEnclosures), QStringList(linkOf("lost.ogg")));
    repair();
    QCOMPARE(m_steps.lines(), QStringList("0 " + enclosureUri("lost.ogg")));
    QCOMPARE(contents(), before);
}

void TestStoreCheck::missingFiles()
{
    const QString there = writeFile("there.ogg");
    const QString gone = DownloadFolder::path() + "/gone \u00fc.ogg";
    const auto setFile = [&](const QString &name, const QString &path) {
        addEnclosure(name, messageUri("a"));
        store().update(QString("DELETE { <%1> mfo:localLink ?l } INSERT { <%1> mfo:localLink <%2> } "
                               "WHERE { <%1> mfo:localLink ?l }")
                           .arg(enclosureUri(name), QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)));
    };
    setFile("there.ogg", there);
    setFile("gone.ogg", gone);
    setFile("disk.ogg", m_home.filePath("no/such/folder/disk.ogg"));
    QCOMPARE(found(Finding::MissingFiles), QStringList(gone));
    repair();
    QCOMPARE(store().count("<urn:enclosure:gone.ogg> mfo:localLink <>"), 1);
    QCOMPARE(store().count("<urn:enclosure:gone.ogg> mfo:localLink ?l"), 1);
    QCOMPARE(store().count("<urn:enclosure:there.ogg> mfo:localLink <>"), 0);
    QCOMPARE(store().count("<urn:enclosure:disk.ogg> mfo:localLink <>"), 0);
}

void TestStoreCheck::filesOfTheDownloadFolder()
{
    const QString old = writeFile(".tidel-abcdef.part", 2);
    const QString young = writeFile(".tidel-ghijkl.part");
    const QString wanted = writeFile(DownloadFolder::partName(linkOf("wanted.ogg")), 30);
    addEnclosure("wanted.ogg", messageUri("a"));
    VERIFY_OK(EnclosureQueue(reader()).add({enclosureUri("wanted.ogg")}));
    const QString continuable = writeFile(".tidel-b.part", 6);
    writeFile(".tidel-b.part.json", 6);
    const QString forgotten = writeFile(".tidel-c.part", 8);
    const QString note = writeFile(".tidel-c.part.json", 30);
    const QString loneNote = writeFile(".tidel-d.part.json", 2);
    QCOMPARE(found(Finding::UnfinishedFiles), QStringList({old, forgotten, loneNote}));
    repair();
    for (const QString &path : {old, forgotten, note, loneNote})
        QVERIFY2(!QFile::exists(path), qPrintable(path));
    for (const QString &path : {young, wanted, continuable, continuable + ".json"})
        QVERIFY2(QFile::exists(path), qPrintable(path));
    const QString unknown = writeFile("unknown.ogg", 2);
    QCOMPARE(found(Finding::UnknownFiles), QStringList(unknown));
    repair();
    QVERIFY(QFile::exists(unknown));
}

/// A repair that fails anywhere loses nothing, and the next one completes it.
void TestStoreCheck::failures()
{
    const auto fill = [this] {
        cleanup();
        init();
        store().update(
            "INSERT { <urn:message:second> a mfo:FeedMessage ; nie:links <https://example.org/a> ; "
            "nie:isLogicalPartOf <urn:channel:radio> ; nao:hasTag nao:predefined-tag-favorite . "
            "<urn:bare> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:channel:news> }");
        addMessages({"lost"}, "gone");
        addEnclosure("lost.ogg", messageUri("lost"));
        StatementGate::reset();
    };
    fill();
    const auto findings = StoreCheck(reader()).find();
    VERIFY_OK(findings);
    StatementGate::reset();
    VERIFY_OK(StoreCheck(reader()).repair(*findings, m_steps.listener()));
    const int statements = int(StatementGate::statements().size());
    for (int at = 0; at < statements; ++at) {
        fill();
        StatementGate::failAt(at, StatementGate::NoResult);
        QVERIFY(!StoreCheck(reader()).repair(*findings, m_steps.listener()));
        StatementGate::reset();
        repair();
        QCOMPARE(store().count("<urn:message:a> nao:hasTag nao:predefined-tag-favorite"), 1);
        QCOMPARE(store().count("?m a mfo:FeedMessage"), 3);
    }
}

QTEST_GUILESS_MAIN(TestStoreCheck)
#include "tst_storecheck.moc"
