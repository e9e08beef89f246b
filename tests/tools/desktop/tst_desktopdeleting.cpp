// SPDX-License-Identifier: LGPL-2.1-or-later
#include "windowtest.h"

#include <soon.h>

#include <TidelReader/channelmodel.h>
#include <TidelReader/channels.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

using namespace Tidel;

/// Messages that the user deletes, and undoing in general.
class TestDesktopDeleting : public WindowTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void deletesTheCurrentMessage();
    void deletesSeveral();
    void lastMessageOfTheList();
    void onlyMessage();
    void undo();
    void undoByTheNotice();
    void redo();
    void hiddenInAllLists();
    void countsAsRead();
    void deletedOnClosing();
    void nothingIsLostWithoutClosing();
    void undoneIsNotDeleted();
    void lastThingIsUndoneFirst();
    void noticeGoesWithWhatItSays();
    void keyInTheChannelList();
    void lastChannelUnsubscribed();

private:
    void select(int row);
    void unsubscribe(const QString &channel);
    QString undoText() const;
    QStringList stored() const { return sorted(messagesIn("news") + messagesIn("music")); }
    int unreadOfNews() const
    {
        return channels()->channels()->indexOf(channelUri("news")).data(ChannelModel::UnreadRole).toInt();
    }
};

void TestDesktopDeleting::init()
{
    WindowTestCase::init();
    addChannel("news");
    addChannel("music");
    addMessages({"a", "b", "c"}, "news", 1);
    addMessages({"d"}, "music", 10);
    openWindow();
    COMPARE_SOON(titles(), QStringList({"Title of d", "Title of c", "Title of b", "Title of a"}));
}

void TestDesktopDeleting::select(int row)
{
    messages()->setFocus();
    messages()->setCurrentIndex(messages()->model()->index(row, 2));
}

void TestDesktopDeleting::unsubscribe(const QString &channel)
{
    channels()->select(channelUri(channel));
    press(QKeySequence("Ctrl+Del"));
    VERIFY_SOON(dialog<QMessageBox>());
    const QMessageBox *box = dialog<QMessageBox>();
    const QList<QAbstractButton *> buttons = box->buttons();
    for (QAbstractButton *button : buttons) {
        if (box->buttonRole(button) == QMessageBox::AcceptRole)
            button->click();
    }
    VERIFY_SOON(!window()->findChild<QMessageBox *>());
}

QString TestDesktopDeleting::undoText() const
{
    const QList<QAction *> menus = window()->menuBar()->actions();
    return menus.at(1)->menu()->actions().constFirst()->text();
}

void TestDesktopDeleting::deletesTheCurrentMessage()
{
    select(1);
    press(Qt::Key_Delete);
    QCOMPARE(titles(), QStringList({"Title of d", "Title of b", "Title of a"}));
    QCOMPARE(messages()->message(), messageUri("b"));
    QCOMPARE(messages()->selected(), messageUris({"b"}));
    COMPARE_SOON(shown(), messageUri("b"));
    QCOMPARE(notice()->text(), QString("Deleted 1 message(s)"));
    QCOMPARE(stored(), QStringList({"a", "b", "c", "d"}));
}

void TestDesktopDeleting::deletesSeveral()
{
    select(1);
    QTest::keyClick(messages(), Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Delete);
    QCOMPARE(titles(), QStringList({"Title of d", "Title of a"}));
    QCOMPARE(messages()->message(), messageUri("a"));
    QVERIFY2(undoText().contains("Delete 2 Message"), qPrintable(undoText()));
}

void TestDesktopDeleting::lastMessageOfTheList()
{
    select(3);
    press(Qt::Key_Delete);
    QCOMPARE(messages()->message(), messageUri("b"));
}

void TestDesktopDeleting::onlyMessage()
{
    channels()->select(channelUri("music"));
    COMPARE_SOON(titles(), QStringList("Title of d"));
    select(0);
    COMPARE_SOON(shown(), messageUri("d"));
    press(Qt::Key_Delete);
    QCOMPARE(titles(), QStringList());
    QCOMPARE(messages()->message(), QString());
    COMPARE_SOON(shown(), QString());
    // There is nothing to delete.
    press(Qt::Key_Delete);
    press(QKeySequence::Undo);
    COMPARE_SOON(titles(), QStringList("Title of d"));
    QVERIFY(!undoText().contains("Delete"));
}

void TestDesktopDeleting::undo()
{
    select(1);
    press(Qt::Key_Delete);
    press(Qt::Key_Delete);
    QCOMPARE(titles(), QStringList({"Title of d", "Title of a"}));
    press(QKeySequence::Undo);
    COMPARE_SOON(titles(), QStringList({"Title of d", "Title of b", "Title of a"}));
    QCOMPARE(messages()->message(), messageUri("a"));
    press(QKeySequence::Undo);
    COMPARE_SOON(titles().size(), 4);
    QCOMPARE(notice()->text(), QString());
}

void TestDesktopDeleting::undoByTheNotice()
{
    select(0);
    press(Qt::Key_Delete);
    for (QToolButton *button : notice()->findChildren<QToolButton *>()) {
        if (button->text() == "Undo")
            button->click();
    }
    COMPARE_SOON(titles().size(), 4);
}

void TestDesktopDeleting::redo()
{
    select(0);
    press(Qt::Key_Delete);
    press(QKeySequence::Undo);
    COMPARE_SOON(titles().size(), 4);
    press(QKeySequence::Redo);
    QCOMPARE(titles(), QStringList({"Title of c", "Title of b", "Title of a"}));
    closeWindow();
    QCOMPARE(stored(), QStringList({"a", "b", "c"}));
}

/// Also in lists that are read later, and when messages come.
void TestDesktopDeleting::hiddenInAllLists()
{
    select(1);
    press(Qt::Key_Delete);
    channels()->select(channelUri("news"));
    COMPARE_SOON(titles(), QStringList({"Title of b", "Title of a"}));
    addMessages({"e"}, "news", 20);
    COMPARE_SOON(titles(), QStringList({"Title of e", "Title of b", "Title of a"}));
    press(QKeySequence::Undo);
    COMPARE_SOON(titles(), QStringList({"Title of e", "Title of c", "Title of b", "Title of a"}));
}

void TestDesktopDeleting::countsAsRead()
{
    COMPARE_SOON(unreadOfNews(), 3);
    VERIFY_OK(ReadState(reader()).set({messageUri("b")}, true));
    COMPARE_SOON(unreadOfNews(), 2);
    select(1);
    QTest::keyClick(messages(), Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Delete);
    COMPARE_SOON(unreadOfNews(), 1);
    press(QKeySequence::Undo);
    COMPARE_SOON(unreadOfNews(), 2);
    QVERIFY(isRead("b"));
    QVERIFY(!isRead("c"));
}

void TestDesktopDeleting::deletedOnClosing()
{
    select(1);
    press(Qt::Key_Delete);
    closeWindow();
    QCOMPARE(stored(), QStringList({"a", "b", "d"}));
    QCOMPARE(droppedFrom("news"), linksOf({"c"}));
}

void TestDesktopDeleting::nothingIsLostWithoutClosing()
{
    select(1);
    press(Qt::Key_Delete);
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    QCOMPARE(stored(), QStringList({"a", "b", "c", "d"}));
}

void TestDesktopDeleting::undoneIsNotDeleted()
{
    select(1);
    press(Qt::Key_Delete);
    press(QKeySequence::Undo);
    closeWindow();
    QCOMPARE(stored(), QStringList({"a", "b", "c", "d"}));
}

void TestDesktopDeleting::lastThingIsUndoneFirst()
{
    select(3);
    press(Qt::Key_Delete);
    unsubscribe("music");
    COMPARE_SOON(titles(), QStringList({"Title of c", "Title of b"}));
    press(QKeySequence("Shift+A"));
    QTRY_VERIFY2(undoText().contains("Mark 2 Message"), qPrintable(undoText()));
    press(QKeySequence::Undo);
    VERIFY_SOON(!isRead("b"));
    QVERIFY2(undoText().contains("Unsubscribe from “music”"), qPrintable(undoText()));
    press(QKeySequence::Undo);
    COMPARE_SOON(titles(), QStringList("Title of d"));
    QVERIFY2(undoText().contains("Delete 1 Message"), qPrintable(undoText()));
    press(QKeySequence::Undo);
    channels()->setCurrentIndex(channels()->model()->index(0, 0));
    COMPARE_SOON(titles().size(), 4);
}

/// The button of a notice never undoes something else.
void TestDesktopDeleting::noticeGoesWithWhatItSays()
{
    select(0);
    press(Qt::Key_Delete);
    press(QKeySequence("Shift+A"));
    COMPARE_SOON(notice()->text(), QString("Marked 3 message(s) as read"));
    press(QKeySequence::Undo);
    QCOMPARE(notice()->text(), QString());
}

void TestDesktopDeleting::keyInTheChannelList()
{
    select(1);
    channels()->setFocus();
    press(Qt::Key_Delete);
    QCOMPARE(titles().size(), 4);
    article()->setFocus();
    press(Qt::Key_Delete);
    QCOMPARE(titles().size(), 3);
}

void TestDesktopDeleting::lastChannelUnsubscribed()
{
    unsubscribe("music");
    unsubscribe("news");
    VERIFY_SOON(!messages()->messages()->isLoading());
    QCOMPARE(titles(), QStringList());
    press(QKeySequence::Undo);
    COMPARE_SOON(titles().size(), 3);
}

QTEST_MAIN(TestDesktopDeleting)
#include "tst_desktopdeleting.moc"
