// SPDX-License-Identifier: LGPL-2.1-or-later
#include "readertest.h"

#include <TidelReader/orphans.h>

using namespace Tidel;

class TestOrphanRemoval : public ReaderTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void nothingToRemove();
    void orphansAreDeleted();
    void whatBelongsToSomethingStays();
    void bareResourcesStay();
    void manyOrphans();
    void failureInALaterStep();

private:
    Result<void> remove() { return Orphans(reader()).remove(m_steps.listener()); }

    StepLog m_steps;
};

void TestOrphanRemoval::init()
{
    ReaderTestCase::init();
    m_steps = StepLog();
    addChannel("news");
    addMessages({"a"}, "news", 1);
    addEnclosure("a.ogg", messageUri("a"));
    addEnclosure("icon.png", channelUri("news"));
}

void TestOrphanRemoval::nothingToRemove()
{
    const QStringList before = contents();
    VERIFY_OK(remove());
    QCOMPARE(m_steps.lines(), QStringList());
    QCOMPARE(contents(), before);
}

void TestOrphanRemoval::orphansAreDeleted()
{
    addMessages({"favorite"}, "gone", 1);
    addFavorite("favorite");
    const QStringList before = contents();
    addMessages({"orphan"}, "gone", 1);
    addEnclosure("orphan.ogg", messageUri("orphan"));
    addEnclosure("lost.ogg", messageUri("gone"));
    addEnclosure("nobody.ogg", channelUri("gone"));
    VERIFY_OK(remove());
    QCOMPARE(
        m_steps.lines(),
        QStringList({"1 urn:enclosure:orphan.ogg", "0 urn:enclosure:lost.ogg urn:enclosure:nobody.ogg"}));
    for (const FeedEnclosure &enclosure : m_steps.enclosures()) {
        const QString name = enclosure.uri().section(':', 2);
        QCOMPARE(enclosure.remoteUrl(), linkOf(name));
        QCOMPARE(enclosure.localUrl(), "file:///files/" + name);
    }
    QCOMPARE(contents(), before);
}

void TestOrphanRemoval::whatBelongsToSomethingStays()
{
    share("a", "gone");
    addEnclosure("both.ogg", messageUri("orphan"));
    store().update("INSERT { <urn:enclosure:both.ogg> nie:isLogicalPartOf <urn:message:a> }");
    const QStringList before = contents();
    addMessages({"orphan"}, "gone");
    VERIFY_OK(remove());
    QCOMPARE(m_steps.lines(), QStringList("1"));
    QCOMPARE(contents(), before);
}

void TestOrphanRemoval::bareResourcesStay()
{
    store().update("INSERT { <urn:message:bare> a mfo:FeedMessage . "
                   "<urn:remote> a mfo:Enclosure ; mfo:remoteLink <https://example.org/x> . "
                   "<urn:local> a mfo:Enclosure ; mfo:localLink <file:///x> }");
    const QStringList before = contents();
    VERIFY_OK(remove());
    QCOMPARE(m_steps.lines(), QStringList());
    QCOMPARE(contents(), before);
}

void TestOrphanRemoval::manyOrphans()
{
    const QStringList before = contents();
    addMessages(numberedNames("m", 250), "gone");
    for (const QString &name : numberedNames("e", 120))
        addEnclosure(name, "urn:nobody");
    VERIFY_OK(remove());
    QCOMPARE(m_steps.lines().mid(0, 3), QStringList({"100", "100", "50"}));
    QCOMPARE(m_steps.lines().size(), 5);
    QCOMPARE(m_steps.enclosures().size(), 120);
    QCOMPARE(contents(), before);
}

void TestOrphanRemoval::failureInALaterStep()
{
    const QStringList before = contents();
    for (const QString &name : numberedNames("e", 120))
        addEnclosure(name, "urn:nobody");
    int deletions = 0;
    StatementGate::setJudge([&deletions](const QString &statement) {
        const bool isSecond = statement.startsWith("DELETE") && ++deletions == 2;
        return isSecond ? StatementGate::NoResult : StatementGate::Pass;
    });
    const auto failed = remove();
    StatementGate::reset();
    QVERIFY(!failed);
    QCOMPARE(failed.error().attempt(), QString("delete enclosures from the store"));
    QCOMPARE(m_steps.enclosures().size(), 100);
    VERIFY_OK(remove());
    QCOMPARE(m_steps.enclosures().size(), 120);
    QCOMPARE(contents(), before);
}

QTEST_GUILESS_MAIN(TestOrphanRemoval)
#include "tst_orphanremoval.moc"
