// SPDX-License-Identifier: LGPL-2.1-or-later
#include "windowtest.h"

#include <messagecolumns.h>
#include <soon.h>

#include <TidelReader/folders.h>
#include <TidelReader/messages.h>
#include <TidelReader/readstate.h>

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QStatusBar>
#include <QTextBrowser>

using namespace Tidel;

/// What a user does to read.
class TestDesktopReading : public WindowTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void emptyArchive();
    void lists();
    void folders();
    void showsMessages();
    void walkingPastMarksNothing();
    void nextUnreadAndPrevious();
    void nextUnreadFarAway();
    void nextUnreadInAnotherChannel();
    void space();
    void marks();
    void clicks();
    void markAllReadAndUndo();
    void searchAsOneTypes();
    void stateIsRemembered();
    void widthOfTheChannels();
    void namesForScreenReaders();

private:
    void addTwoChannels();
};

/// News has a, b and c; music has d. The newest message comes first in lists.
void TestDesktopReading::addTwoChannels()
{
    addChannel("news");
    addChannel("music");
    addMessages({"a", "b", "c"}, "news", 1);
    addMessages({"d"}, "music", 10);
}

/// The list says how to begin.
void TestDesktopReading::emptyArchive()
{
    openWindow();
    const auto *hint = messages()->viewport()->findChild<QLabel *>();
    VERIFY_SOON(hint->isVisible() && hint->text().contains("Ctrl+N"));
    const QImage painted = messages()->viewport()->grab().toImage();
    QImage blank(painted);
    blank.fill(painted.pixelColor(0, 0));
    QVERIFY(painted != blank);
    addChannel("news");
    COMPARE_SOON(hint->text(), QString("No messages"));
    addMessages({"a"}, "news");
    VERIFY_SOON(!hint->isVisible());
}

void TestDesktopReading::lists()
{
    addTwoChannels();
    VERIFY_OK(Folders(reader()).move(channelUri("music"), "Arts"));
    openWindow();
    COMPARE_SOON(channelTitles(),
                 QStringList({"All messages", "Unread", "Favorites", "Arts", " music", "news"}));
    COMPARE_SOON(titles(), QStringList({"Title of d", "Title of c", "Title of b", "Title of a"}));
    QVERIFY(!messages()->isColumnHidden(MessageColumns::ChannelColumn));
    channels()->select(channelUri("news"));
    COMPARE_SOON(titles(), QStringList({"Title of c", "Title of b", "Title of a"}));
    QVERIFY(messages()->isColumnHidden(MessageColumns::ChannelColumn));
    QCOMPARE(window()->windowTitle(), QString("news"));
}

/// A folder shows its channels only, also when they come later than it does, or move.
void TestDesktopReading::folders()
{
    addTwoChannels();
    VERIFY_OK(Folders(reader()).move(channelUri("music"), "Arts"));
    openWindow();
    COMPARE_SOON(channelTitles().size(), 6);
    channels()->setCurrentIndex(channels()->model()->index(3, 0));
    COMPARE_SOON(titles(), QStringList("Title of d"));
    closeWindow();
    openWindow();
    COMPARE_SOON(window()->windowTitle(), QString("Arts"));
    COMPARE_SOON(titles(), QStringList("Title of d"));
    VERIFY_OK(Folders(reader()).move(channelUri("news"), "Arts"));
    COMPARE_SOON(titles().size(), 4);
    VERIFY_OK(Folders(reader()).move(channelUri("music"), {}));
    COMPARE_SOON(titles(), QStringList({"Title of c", "Title of b", "Title of a"}));
}

/// A message that is shown for a moment becomes read.
void TestDesktopReading::showsMessages()
{
    addTwoChannels();
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    messages()->setCurrentIndex(messages()->model()->index(1, 2));
    COMPARE_SOON(shown(), messageUri("c"));
    QVERIFY(shownText().contains("Text of c"));
    QVERIFY(shownText().contains("news"));
    VERIFY_SOON(isRead("c"));
    VERIFY_SOON(messages()->current(MessageModel::IsReadRole).toBool());
    QVERIFY(!isRead("d"));
}

/// A message that is left as soon as it is shown stays unread.
void TestDesktopReading::walkingPastMarksNothing()
{
    addTwoChannels();
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    messages()->setFocus();
    int shownMessages = 0;
    connect(article(), &ArticlePane::shown, this, [this, &shownMessages] {
        ++shownMessages;
        QTest::keyClick(messages(), Qt::Key_Down);
    });
    press(Qt::Key_Down);
    VERIFY_SOON(isRead("a"));
    QCOMPARE(shownMessages, 4);
    QVERIFY(!isRead("b") && !isRead("c") && !isRead("d"));
}

void TestDesktopReading::nextUnreadAndPrevious()
{
    addTwoChannels();
    VERIFY_OK(ReadState(reader()).set({messageUri("c")}, true));
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    press(Qt::Key_N);
    COMPARE_SOON(shown(), messageUri("d"));
    press(Qt::Key_N);
    COMPARE_SOON(shown(), messageUri("b"));
    press(Qt::Key_P);
    COMPARE_SOON(shown(), messageUri("c"));
}

void TestDesktopReading::nextUnreadFarAway()
{
    addChannel("news");
    const QStringList names = numberedNames("m", 200);
    addMessages(names, "news");
    VERIFY_OK(ReadState(reader()).set(messageUris(names), true));
    VERIFY_OK(ReadState(reader()).set({messageUri("m150")}, false));
    openWindow();
    COMPARE_SOON(titles().size(), 200);
    press(Qt::Key_N);
    COMPARE_SOON(shown(), messageUri("m150"));
    VERIFY_SOON(isRead("m150"));
    press(Qt::Key_N);
    COMPARE_SOON(window()->statusBar()->currentMessage(), QString("There are no unread messages"));
    QCOMPARE(shown(), messageUri("m150"));
}

/// Where all messages of a channel are read, the next unread one is in another channel.
void TestDesktopReading::nextUnreadInAnotherChannel()
{
    addTwoChannels();
    VERIFY_OK(ReadState(reader()).set({messageUri("d")}, true));
    openWindow();
    COMPARE_SOON(channelTitles().size(), 5);
    channels()->select(channelUri("music"));
    COMPARE_SOON(titles(), QStringList("Title of d"));
    press(Qt::Key_N);
    COMPARE_SOON(shown(), messageUri("c"));
    QCOMPARE(channels()->channel(), channelUri("news"));
}

/// Space scrolls a long message, and goes on at its end.
void TestDesktopReading::space()
{
    addTwoChannels();
    store().update(QString("DELETE { <%1> nie:description ?text } INSERT { <%1> nie:description '%2' } "
                           "WHERE { <%1> nie:description ?text }")
                       .arg(messageUri("d"), QString("<p>word</p>").repeated(200)));
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    press(Qt::Key_Space);
    COMPARE_SOON(shown(), messageUri("d"));
    const QScrollBar *bar = article()->findChild<QTextBrowser *>()->verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    press(Qt::Key_Space);
    QVERIFY(bar->value() > 0);
    QCOMPARE(shown(), messageUri("d"));
    for (int page = 0; page < 100 && bar->value() < bar->maximum(); ++page)
        press(Qt::Key_Space);
    press(Qt::Key_Space);
    COMPARE_SOON(shown(), messageUri("c"));
    QCOMPARE(bar->value(), 0);
    // Who reads on has read it, however quickly.
    press(Qt::Key_Space);
    COMPARE_SOON(shown(), messageUri("b"));
    VERIFY_SOON(isRead("c"));
}

void TestDesktopReading::marks()
{
    addTwoChannels();
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    press(Qt::Key_N);
    COMPARE_SOON(shown(), messageUri("d"));
    QSignalSpy changed(messages()->model(), &QAbstractItemModel::dataChanged);
    press(Qt::Key_S);
    VERIFY_SOON(Messages(reader()).get(messageUri("d"))->isFavorite());
    VERIFY_SOON(messages()->current(MessageModel::IsFavoriteRole).toBool());
    VERIFY_SOON(std::any_of(changed.cbegin(), changed.cend(), [](const QList<QVariant> &cells) {
        return cells.at(1).toModelIndex().column() == MessageColumns::DateColumn;
    }));
    press(Qt::Key_S);
    VERIFY_SOON(!Messages(reader()).get(messageUri("d"))->isFavorite());
    VERIFY_SOON(messages()->current(MessageModel::IsReadRole).toBool());
    press(Qt::Key_M);
    VERIFY_SOON(!isRead("d"));
}

/// A click on the star or on the dot marks, also another message than the one that is shown.
void TestDesktopReading::clicks()
{
    addTwoChannels();
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    const auto click = [this](int row, int column) {
        const QRect rect = messages()->visualRect(messages()->model()->index(row, column));
        QTest::mouseClick(messages()->viewport(), Qt::LeftButton, {}, rect.center());
    };
    click(2, MessageColumns::FavoriteColumn);
    VERIFY_SOON(Messages(reader()).get(messageUri("b"))->isFavorite());
    click(3, MessageColumns::ReadColumn);
    VERIFY_SOON(isRead("a"));
}

void TestDesktopReading::markAllReadAndUndo()
{
    addTwoChannels();
    VERIFY_OK(ReadState(reader()).set({messageUri("b")}, true));
    openWindow();
    COMPARE_SOON(channelTitles().size(), 5);
    channels()->select(channelUri("news"));
    COMPARE_SOON(titles().size(), 3);
    press(QKeySequence("Shift+A"));
    VERIFY_SOON(isRead("a") && isRead("c"));
    QVERIFY(!isRead("d"));
    VERIFY_SOON(notice()->text().contains("2"));
    press(QKeySequence::Undo);
    VERIFY_SOON(!isRead("a") && !isRead("c"));
    QVERIFY(isRead("b"));
    press(QKeySequence::Redo);
    VERIFY_SOON(isRead("a") && isRead("c"));
}

void TestDesktopReading::searchAsOneTypes()
{
    addTwoChannels();
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    press(Qt::Key_Slash);
    auto *words = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(words);
    QTest::keyClicks(words, "summary b");
    COMPARE_SOON(titles(), QStringList("Title of b"));
    QTest::keyClick(words, Qt::Key_Down);
    COMPARE_SOON(shown(), messageUri("b"));
    QCOMPARE(QApplication::focusWidget(), messages());
    press(Qt::Key_Slash);
    QTest::keyClick(words, Qt::Key_End);
    QTest::keyClick(words, Qt::Key_Backspace);
    QTest::keyClick(words, 'n');
    COMPARE_SOON(titles(), QStringList());
    press(Qt::Key_Escape);
    COMPARE_SOON(titles().size(), 4);
    QCOMPARE(QApplication::focusWidget(), messages());
    channels()->select(channelUri("music"));
    COMPARE_SOON(titles().size(), 1);
    press(Qt::Key_Slash);
    QTest::keyClicks(words, "summary");
    QTest::qWait(300);
    QCOMPARE(titles(), QStringList("Title of d"));
}

void TestDesktopReading::stateIsRemembered()
{
    addTwoChannels();
    VERIFY_OK(Folders(reader()).move(channelUri("music"), "Arts"));
    openWindow();
    COMPARE_SOON(channelTitles().size(), 6);
    channels()->collapse(channels()->model()->index(3, 0));
    channels()->select(channelUri("news"));
    window()->resize(777, 555);
    window()->findChild<QSplitter *>()->setSizes({300, 477});
    const QList<int> sizes = window()->findChild<QSplitter *>()->sizes();
    closeWindow();
    openWindow();
    COMPARE_SOON(channels()->channel(), channelUri("news"));
    QCOMPARE(window()->size(), QSize(777, 555));
    QCOMPARE(window()->findChild<QSplitter *>()->sizes(), sizes);
    QVERIFY(!channels()->isExpanded(channels()->model()->index(3, 0)));
    COMPARE_SOON(titles().size(), 3);
}

/// What takes the focus has a name, and so have the columns that show no text.
/// There is more room for the names of channels in a wide window, unless the user has chosen a width.
void TestDesktopReading::widthOfTheChannels()
{
    openWindow();
    const auto widthIn = [&](int windowWidth) {
        window()->resize(windowWidth, 700);
        QCoreApplication::processEvents();
        return messages()->header()->sectionSize(MessageColumns::ChannelColumn);
    };
    const int narrow = widthIn(700);
    const int wide = widthIn(1900);
    QVERIFY2(wide > narrow, qPrintable(QString::number(wide)));
    closeWindow();
    openWindow();
    QCOMPARE(widthIn(700), narrow);
    messages()->header()->resizeSection(MessageColumns::ChannelColumn, 333);
    QCOMPARE(widthIn(1900), 333);
    closeWindow();
    openWindow();
    QCOMPARE(widthIn(1800), 333);
}

void TestDesktopReading::namesForScreenReaders()
{
    addTwoChannels();
    openWindow();
    COMPARE_SOON(titles().size(), 4);
    const QList<QWidget *> widgets = window()->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const bool takesFocus = widget->focusPolicy() & Qt::TabFocus && widget->isVisible();
        QVERIFY2(!takesFocus || !widget->accessibleName().isEmpty() || widget->focusProxy(),
                 widget->metaObject()->className());
    }
    const QModelIndex dot = messages()->model()->index(0, MessageColumns::ReadColumn);
    QCOMPARE(dot.data(Qt::AccessibleTextRole).toString(), QString("unread"));
    const QModelIndex unread = channels()->model()->index(1, 0);
    COMPARE_SOON(unread.data(Qt::AccessibleTextRole).toString(), QString("Unread, 4 unread"));
}

QTEST_MAIN(TestDesktopReading)
#include "tst_desktopreading.moc"
