// SPDX-License-Identifier: LGPL-2.1-or-later
#include "commandtest.h"

#include <commands.h>

#include <QtTest>

using namespace Tidel;

/// Tests listings when the store fails. tst_tidel tests the rest.
class TestListings : public CommandTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void failures_data();
    void failures();
    void unreadableChannels_data();
    void unreadableChannels();
};

void TestListings::failures_data()
{
    QTest::addColumn<const Command *>("command");
    QTest::addColumn<QStringList>("names");

    QTest::newRow("channels") << &channelsCommand << QStringList();
    QTest::newRow("messages") << &messagesCommand << QStringList("News");
    QTest::newRow("queue") << &enclosuresCommand << QStringList();
    QTest::newRow("enclosures") << &enclosuresCommand << QStringList(linkOf("one"));
}

void TestListings::failures()
{
    QFETCH(const Command *, command);
    QFETCH(QStringList, names);
    failEverywhere(
        *command, names, {},
        [this] {
            addChannel("News", {message("one", day(1), {"file"})});
            store().update(
                "INSERT { ?e tidel:queuedTime '2026-11-20T10:00:00Z' } WHERE { ?e a mfo:Enclosure }");
        },
        [] {});
}

void TestListings::unreadableChannels_data()
{
    QTest::addColumn<const Command *>("command");
    QTest::addColumn<QStringList>("names");

    QTest::newRow("channels") << &channelsCommand << QStringList();
    QTest::newRow("messages") << &messagesCommand << QStringList("News");
    QTest::newRow("refresh") << &refreshCommand << QStringList();
    QTest::newRow("refresh one") << &refreshCommand << QStringList("News");
    QTest::newRow("unsubscribe") << &unsubscribeCommand << QStringList("News");
}

// The commands must not report that there is no channel, or no channel with this name.
void TestListings::unreadableChannels()
{
    QFETCH(const Command *, command);
    QFETCH(QStringList, names);
    addChannel("News");
    StatementGate::failAt(0, StatementGate::Refuse);
    const CommandResult result = runCommand(*command, names);
    StatementGate::reset();
    QVERIFY(!result.isFine);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains("could not read the channels from the store: "), qPrintable(result.err));
}

QTEST_GUILESS_MAIN(TestListings)
#include "tst_listings.moc"
