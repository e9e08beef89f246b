// SPDX-License-Identifier: LGPL-2.1-or-later
#include "windowtest.h"

#include <keysdialog.h>
#include <soon.h>

#include <TidelReader/channelmodel.h>
#include <TidelReader/folders.h>

#include <QAction>
#include <QLineEdit>
#include <QSettings>
#include <QTreeWidget>

using namespace Tidel;

/// Searches that the user saves.
class TestDesktopSearches : public WindowTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void save();
    void saveByTheButton();
    void onlyWhileSearching();
    void sameSearchTwice();
    void inAFolder();
    void inAChannelThatIsGone();
    void inFavorites();
    void searchInASearch();
    void newMessages();
    void rename();
    void remove();
    void comesThroughARestart();
    void unknownSettings();
    void accessible();

private:
    void search(const QString &words);
    void saveSearch(const QString &words);
    QModelIndex row(int index) const { return channels()->model()->index(index, 0); }
    QLineEdit *line() const { return messages()->parentWidget()->findChild<QLineEdit *>(); }
};

void TestDesktopSearches::init()
{
    WindowTestCase::init();
    addChannel("news");
    addChannel("music");
    addMessages({"tea", "milk"}, "news", 1);
    addMessages({"song"}, "music", 10);
    VERIFY_OK(Folders(reader()).move(channelUri("music"), "Arts"));
    openWindow();
    COMPARE_SOON(channelTitles(),
                 QStringList({"All messages", "Unread", "Favorites", "Arts", " music", "news"}));
    COMPARE_SOON(titles().size(), 3);
}

void TestDesktopSearches::search(const QString &words)
{
    press(Qt::Key_Slash);
    QTest::keyClicks(line(), words);
}

void TestDesktopSearches::saveSearch(const QString &words)
{
    search(words);
    press(QKeySequence("Ctrl+S"));
    COMPARE_SOON(channels()->title(), words);
}

void TestDesktopSearches::save()
{
    saveSearch("tea");
    QCOMPARE(channelTitles(),
             QStringList({"All messages", "Unread", "Favorites", "tea", "Arts", " music", "news"}));
    QCOMPARE(channels()->kind(), ChannelModel::SearchKind);
    COMPARE_SOON(titles(), QStringList("Title of tea"));
    QCOMPARE(line()->text(), QString());
    QVERIFY(!line()->actions().constFirst()->isVisible());
    QVERIFY(messages()->hasFocus());
    channels()->setCurrentIndex(row(0));
    COMPARE_SOON(titles().size(), 3);
    channels()->setCurrentIndex(row(3));
    COMPARE_SOON(titles(), QStringList("Title of tea"));
}

void TestDesktopSearches::saveByTheButton()
{
    search("milk");
    const QList<QAction *> actions = line()->actions();
    const auto isShown = [](const QAction *action) { return action->isVisible() && action->isEnabled(); };
    QCOMPARE(std::count_if(actions.begin(), actions.end(), isShown), 1);
    actions.constFirst()->trigger();
    COMPARE_SOON(channels()->title(), QString("milk"));
}

void TestDesktopSearches::onlyWhileSearching()
{
    press(QKeySequence("Ctrl+S"));
    search(" ");
    press(QKeySequence("Ctrl+S"));
    QVERIFY(!line()->actions().constFirst()->isVisible());
    press(Qt::Key_Escape);
    QTest::qWait(100);
    QCOMPARE(channelTitles().size(), 6);
}

void TestDesktopSearches::sameSearchTwice()
{
    saveSearch("tea");
    channels()->setCurrentIndex(row(0));
    saveSearch("tea");
    QCOMPARE(channelTitles().size(), 7);
    channels()->select(channelUri("news"));
    saveSearch("tea");
    COMPARE_SOON(channelTitles().size(), 8);
}

void TestDesktopSearches::inAFolder()
{
    channels()->select("Arts");
    COMPARE_SOON(titles(), QStringList("Title of song"));
    saveSearch("Title");
    COMPARE_SOON(titles(), QStringList("Title of song"));
    // It is the folder that counts, not the channels that were in it.
    VERIFY_OK(Folders(reader()).move(channelUri("news"), "Arts"));
    COMPARE_SOON(channelTitles().mid(4), QStringList({"Arts", " music", " news"}));
    channels()->setCurrentIndex(row(0));
    channels()->setCurrentIndex(row(3));
    COMPARE_SOON(titles().size(), 3);
}

void TestDesktopSearches::inAChannelThatIsGone()
{
    channels()->select("Arts");
    saveSearch("Title");
    VERIFY_OK(Folders(reader()).move(channelUri("music"), {}));
    COMPARE_SOON(channelTitles().size(), 6);
    channels()->setCurrentIndex(row(0));
    COMPARE_SOON(titles().size(), 3);
    channels()->setCurrentIndex(row(3));
    VERIFY_SOON(!messages()->messages()->isLoading());
    QCOMPARE(titles(), QStringList());
    QVERIFY(!messages()->messages()->error());
}

void TestDesktopSearches::inFavorites()
{
    addFavorite("milk");
    channels()->setCurrentIndex(row(2));
    COMPARE_SOON(titles(), QStringList("Title of milk"));
    saveSearch("Title");
    COMPARE_SOON(titles(), QStringList("Title of milk"));
}

/// Both are searched for, and can be saved together.
void TestDesktopSearches::searchInASearch()
{
    saveSearch("Title");
    COMPARE_SOON(titles().size(), 3);
    search("tea");
    COMPARE_SOON(titles(), QStringList("Title of tea"));
    press(Qt::Key_Escape);
    COMPARE_SOON(titles().size(), 3);
    search("milk");
    press(QKeySequence("Ctrl+S"));
    COMPARE_SOON(channels()->title(), QString("Title milk"));
    COMPARE_SOON(titles(), QStringList("Title of milk"));
}

void TestDesktopSearches::newMessages()
{
    saveSearch("Title");
    COMPARE_SOON(titles().size(), 3);
    addMessages({"coffee"}, "news", 20);
    COMPARE_SOON(titles().size(), 4);
}

void TestDesktopSearches::rename()
{
    saveSearch("tea");
    channels()->setFocus();
    press(Qt::Key_F2);
    auto *editor = channels()->findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->setText("Drinks");
    QTest::keyClick(editor, Qt::Key_Return);
    COMPARE_SOON(channels()->title(), QString("Drinks"));
    COMPARE_SOON(titles(), QStringList("Title of tea"));
}

void TestDesktopSearches::remove()
{
    saveSearch("tea");
    channels()->setCurrentIndex(row(0));
    saveSearch("milk");
    channels()->setCurrentIndex(row(3));
    channels()->setFocus();
    press(QKeySequence("Ctrl+Del"));
    COMPARE_SOON(channelTitles().mid(2, 3), QStringList({"Favorites", "milk", "Arts"}));
    QCOMPARE(notice()->text(), QString("Removed the search “tea”"));
    press(QKeySequence::Undo);
    COMPARE_SOON(channelTitles().mid(2, 3), QStringList({"Favorites", "tea", "milk"}));
}

/// The current row, too, even a search in a folder, whose channels are not known at once.
void TestDesktopSearches::comesThroughARestart()
{
    channels()->select("Arts");
    saveSearch("Title");
    channels()->select("Arts");
    saveSearch("Title song");
    closeWindow();
    openWindow();
    COMPARE_SOON(channels()->title(), QString("Title song"));
    COMPARE_SOON(titles(), QStringList("Title of song"));
    QCOMPARE(channelTitles().mid(2, 4), QStringList({"Favorites", "Title", "Title song", "Arts"}));
}

/// Another version of the program may know other places.
void TestDesktopSearches::unknownSettings()
{
    saveSearch("tea");
    channels()->setCurrentIndex(row(0));
    saveSearch("tea milk");
    closeWindow();
    QSettings().setValue("searches/1/in", "ElsewhereKind");
    QSettings().setValue("searches/size", 5);
    openWindow();
    COMPARE_SOON(channelTitles().mid(2, 3), QStringList({"Favorites", "tea milk", "Arts"}));
}

void TestDesktopSearches::accessible()
{
    search("tea");
    QCOMPARE(line()->actions().constFirst()->text().remove('&'), QString("Save Search"));
    press(QKeySequence("Ctrl+S"));
    COMPARE_SOON(channels()->title(), QString("tea"));
    QCOMPARE(channels()->currentIndex().data(Qt::AccessibleTextRole).toString(), QString("Search: tea"));
    KeysDialog keys(window());
    auto *list = keys.findChild<QTreeWidget *>();
    for (const char *name : {"Save Search", "Remove Search", "Delete", "Unsubscribe"})
        QCOMPARE(list->findItems(name, Qt::MatchExactly).size(), 1);
}

QTEST_MAIN(TestDesktopSearches)
#include "tst_desktopsearches.moc"
