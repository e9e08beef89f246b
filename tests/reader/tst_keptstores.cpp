// SPDX-License-Identifier: LGPL-2.1-or-later
#include <TidelReader/channels.h>
#include <TidelReader/enclosurequeue.h>
#include <TidelReader/messagelist.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

#include <teststore.h>

#include <QDir>
#include <QProcess>
#include <QtTest>

using namespace Tidel;

/// Opens stores that earlier versions wrote. They are extended in place, and lose nothing.
class TestKeptStores : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readState_data();
    void readState();
};

void TestKeptStores::readState_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("messages");
    QTest::addColumn<int>("favorites");
    QTest::addColumn<int>("read");

    QTest::newRow("the first one") << "0.1" << 92 << 1 << 0;
    QTest::newRow("with details of messages") << "0.1-details" << 22 << 1 << 0;
    QTest::newRow("with the read state") << "0.1-readstate" << 22 << 1 << 3;
}

void TestKeptStores::readState()
{
    QFETCH(QString, name);
    QFETCH(int, messages);
    QFETCH(int, favorites);
    QFETCH(int, read);
    const TestStore kept;
    const QString folder = kept.dataFolder() + "/tidel";
    QVERIFY(QDir().mkpath(folder));
    const QString archive = QString(TIDEL_TEST_DATA "/stores/%1.tar.xz").arg(name);
    QCOMPARE(QProcess::execute("tar", {"-xJf", archive, "-C", folder}), 0);

    const Result<Store> store = Store::open();
    QVERIFY(store);
    const Result<QList<MessageHeadline>> list = MessageList(*store).find({});
    QVERIFY(list);
    QCOMPARE(list->size(), messages);
    QCOMPARE(std::count_if(list->begin(), list->end(), [](auto &message) { return message.isFavorite; }),
             favorites);
    QCOMPARE(std::count_if(list->begin(), list->end(), [](auto &message) { return message.isRead; }), read);

    QCOMPARE(EnclosureQueue(*store).uris().value(), QStringList());

    ReadState state(*store);
    const QStringList unread = state.unread({}).value();
    QCOMPARE(unread.size(), messages - read);
    QCOMPARE(state.set(unread.mid(0, 10), true).value(), 10);
    QCOMPARE(state.unread({})->size(), messages - read - 10);
    QCOMPARE(MessageList(*store).find({})->size(), messages);
}

QTEST_GUILESS_MAIN(TestKeptStores)
#include "tst_keptstores.moc"
